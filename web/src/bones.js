// SPDX-License-Identifier: MIT
//
// Bones as long octahedra with joints, drawn over the model, and their names.
import { toLight } from "page/colours.js";

const kBone = toLight("#2f62d9");
const kJoint = toLight("#f08c00");
const kChosen = toLight("#d9261c");
const kUp = new THREE.Vector3(0, 1, 0);

/** A flat material in colours of its own that the model does not hide. */
const overlay = { depthTest: false, depthWrite: false, transparent: true, vertexColors: THREE.VertexColors };

/** An octahedron from 0 to 1 along y, broadest near 0. */
function makeBoneGeometry() {
  const geometry = new THREE.BufferGeometry();
  const corners = [0, 0, 0, 0, 1, 0, 1, 0.18, 0, 0, 0.18, 1, -1, 0.18, 0, 0, 0.18, -1];
  geometry.setAttribute("position", new THREE.Float32BufferAttribute(corners, 3));
  geometry.setIndex([2, 3, 4, 5].flatMap((corner, i) => {
    const next = 2 + ((i + 1) % 4);
    return [0, corner, next, 1, next, corner];
  }));
  return geometry;
}

function makeShapes(count) {
  const material = new THREE.MeshBasicMaterial({ ...overlay, opacity: 0.8, side: THREE.DoubleSide });
  const geometry = makeBoneGeometry();
  geometry.setAttribute("color", new THREE.InstancedBufferAttribute(new Float32Array(3 * count), 3));
  return new THREE.InstancedMesh(geometry, material, count);
}

function makePoints(count) {
  const geometry = new THREE.BufferGeometry();
  for (const name of ["position", "color"]) {
    geometry.setAttribute(name, new THREE.BufferAttribute(new Float32Array(3 * count), 3));
  }
  return new THREE.Points(geometry, new THREE.PointsMaterial({ ...overlay, size: 7, sizeAttenuation: false }));
}

export class Bones {
  /** @param size of the model: the widest bones are a small part of it */
  constructor(bones, labels, size) {
    this.bones = bones;
    this.size = size;
    this.chosen = -1;
    this.allNames = false;
    this.joints = bones.map(() => new THREE.Vector3());
    this.shapes = makeShapes(bones.length);
    this.points = makePoints(bones.length);
    this.shapes.frustumCulled = this.points.frustumCulled = false; // they move
    this.shapes.renderOrder = 1;
    this.points.renderOrder = 2;
    this.group = new THREE.Group().add(this.shapes, this.points);
    this.names = bones.map(({ name }) => {
      const label = document.createElement("span");
      label.textContent = name;
      labels.append(label);
      return label;
    });
  }

  follow(pose) {
    this.joints = this.bones.map((_, i) => pose.jointOf(i));
    const points = this.points.geometry.attributes.position;
    this.joints.forEach((joint, i) => {
      points.setXYZ(i, joint.x, joint.y, joint.z);
      this.shapes.setMatrixAt(i, this.shapeMatrix(i));
    });
    points.needsUpdate = this.shapes.instanceMatrix.needsUpdate = true;
    this.paint();
  }

  /** Puts the shape between the joint of a bone's parent and its own; a top bone has none. */
  shapeMatrix(bone) {
    const { parent } = this.bones[bone];
    const to = this.joints[bone], from = parent >= 0 ? this.joints[parent] : to;
    const along = to.clone().sub(from), length = along.length();
    if (length === 0) return new THREE.Matrix4().makeScale(0, 0, 0);
    const turn = new THREE.Quaternion().setFromUnitVectors(kUp, along.divideScalar(length));
    const width = THREE.Math.clamp(0.1 * length, 0.003 * this.size, 0.017 * this.size);
    return new THREE.Matrix4().compose(from, turn, new THREE.Vector3(width, length, width));
  }

  choose(bone) {
    this.chosen = bone;
    this.paint();
  }

  /** A shape ends at the joint of a child, so those of the chosen bone's children are its own. */
  paint() {
    const [shapes, points] = [this.shapes, this.points].map(({ geometry }) => geometry.attributes.color);
    this.bones.forEach(({ parent }, i) => {
      (parent >= 0 && parent === this.chosen ? kChosen : kBone).toArray(shapes.array, 3 * i);
      (i === this.chosen ? kChosen : kJoint).toArray(points.array, 3 * i);
    });
    shapes.needsUpdate = points.needsUpdate = true;
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
