// SPDX-License-Identifier: MIT
//
// The weights of one bone as colours; page.css shows the same scale.
import { toLight } from "page/colours.js";

const scale = ["#d2d6e4", "#3aa6dc", "#4bbf4f", "#f2c230", "#e03a2a"].map((text) => toLight(text));

function colourOf(weight, into) {
  const place = Math.min(Math.max(weight, 0), 1) * (scale.length - 1);
  const first = Math.min(Math.floor(place), scale.length - 2);
  return into.copy(scale[first]).lerp(scale[first + 1], place - first);
}

/** The weight that `bone` has in each vertex of `mesh`. */
export function weightsOf(mesh, bone) {
  const weights = new Float32Array(mesh.positions.length / 3);
  for (let vertex = 0; vertex < weights.length; ++vertex) {
    for (let i = mesh.influenceStarts[vertex]; i < mesh.influenceStarts[vertex + 1]; ++i) {
      if (mesh.influenceBones[i] === bone) weights[vertex] += mesh.influenceWeights[i];
    }
  }
  return weights;
}

/** Writes a colour for each vertex. */
export function paintWeights(mesh, bone, colours) {
  const colour = new THREE.Color();
  weightsOf(mesh, bone).forEach((weight, vertex) => colourOf(weight, colour).toArray(colours, 3 * vertex));
}
