// SPDX-License-Identifier: MIT
//
// Bones as lines with joints, drawn over the model, and their names.
import * as THREE from "three";

const kBone = new THREE.Color("#2f62d9");
const kJoint = new THREE.Color("#f08c00");
const kChosen = new THREE.Color("#d9261c");

/** A flat material that the model does not hide. */
const overlay = { depthTest: false, depthWrite: false, transparent: true, vertexColors: true };

function attribute(count) {
  return new THREE.BufferAttribute(new Float32Array(3 * count), 3);
}

export class Bones {
  constructor(bones, labels) {
    this.bones = bones;
    this.labels = labels;
    this.chosen = -1;
    this.allNames = false;
    this.joints = bones.map(() => new THREE.Vector3());
    this.lines = new THREE.LineSegments(new THREE.BufferGeometry(), new THREE.LineBasicMaterial(overlay));
    this.points = new THREE.Points(new THREE.BufferGeometry(),
      new THREE.PointsMaterial({ ...overlay, size: 7, sizeAttenuation: false }));
    for (const [shown, count] of [[this.lines, 2 * bones.length], [this.points, bones.length]]) {
      shown.geometry.setAttribute("position", attribute(count));
      shown.geometry.setAttribute("color", attribute(count));
      shown.frustumCulled = false;
      shown.renderOrder = 1;
    }
    this.group = new THREE.Group().add(this.lines, this.points);
    this.names = bones.map(({ name }) => {
      const label = document.createElement("span");
      label.textContent = name;
      labels.append(label);
      return label;
    });
  }

  follow(pose) {
    this.joints = this.bones.map((_, i) => pose.jointOf(i));
    const lines = this.lines.geometry.attributes.position, points = this.points.geometry.attributes.position;
    this.joints.forEach((joint, i) => {
      const { parent } = this.bones[i];
      points.setXYZ(i, ...joint);
      lines.setXYZ(2 * i, ...joint);
      lines.setXYZ(2 * i + 1, ...(parent >= 0 ? this.joints[parent] : joint));
    });
    lines.needsUpdate = points.needsUpdate = true;
    this.paint();
  }

  choose(bone) {
    this.chosen = bone;
    this.paint();
  }

  /** A line leads from a joint to its parent's, so the lines to the chosen bone's children are its own. */
  paint() {
    const lines = this.lines.geometry.attributes.color, points = this.points.geometry.attributes.color;
    this.bones.forEach(({ parent }, i) => {
      const line = parent >= 0 && parent === this.chosen ? kChosen : kBone;
      lines.setXYZ(2 * i, ...line);
      lines.setXYZ(2 * i + 1, ...line);
      points.setXYZ(i, ...(i === this.chosen ? kChosen : kJoint));
    });
    lines.needsUpdate = points.needsUpdate = true;
  }

  /** Places of the joints on the stage: [{x, y}] in pixels, null behind the viewer. */
  project(camera, width, height) {
    return this.joints.map((joint) => {
      const seen = this.group.localToWorld(joint.clone()).project(camera);
      return seen.z < 1 ? { x: (0.5 + seen.x / 2) * width, y: (0.5 - seen.y / 2) * height } : null;
    });
  }

  placeNames(camera, width, height) {
    const places = this.group.visible ? this.project(camera, width, height) : [];
    this.names.forEach((label, i) => {
      const place = (this.allNames || i === this.chosen) && places[i];
      label.hidden = !place;
      label.classList.toggle("chosen", i === this.chosen);
      if (place) label.style.transform = `translate(${place.x + 7}px, ${place.y - 9}px)`;
    });
  }

  /** @returns the bone whose joint is nearest to (x, y) on the stage, -1 when none is near */
  find(x, y, camera, width, height) {
    let best = -1, bestDistance = 12;
    this.project(camera, width, height).forEach((place, i) => {
      const distance = place ? Math.hypot(place.x - x, place.y - y) : Infinity;
      if (distance < bestDistance) [best, bestDistance] = [i, distance];
    });
    return best;
  }
}
