// SPDX-License-Identifier: MIT
//
// Bent bones, and the vertices that follow them: linear skinning as the host does it.

const { Matrix3, Matrix4, Quaternion, Vector3 } = THREE;
const axes = [new Vector3(1, 0, 0), new Vector3(0, 1, 0), new Vector3(0, 0, 1)];

export class Pose {
  /** @param bones as readActor gives them, parents before children */
  constructor(bones) {
    this.bones = bones;
    this.bends = bones.map(() => [0, 0, 0]); // degrees about the bone's own axes
    this.moves = bones.map(() => new Matrix4()); // from where the bone was bound to where it is
    this.binds = bones.map(({ origin, rotation }) =>
      new Matrix4().compose(new Vector3(...origin), new Quaternion(...rotation), new Vector3(1, 1, 1)));
  }

  bend(bone, axis, degrees) {
    this.bends[bone][axis] = degrees;
    this.update();
  }

  straighten() {
    for (const bend of this.bends) bend.fill(0);
    this.update();
  }

  /** Where the joint of `bone` is now. */
  jointOf(bone) {
    return new Vector3(...this.bones[bone].origin).applyMatrix4(this.moves[bone]);
  }

  update() {
    this.bones.forEach(({ parent }, i) => {
      const move = this.moves[i].identity();
      if (parent >= 0) move.copy(this.moves[parent]);
      if (this.bends[i].some((degrees) => degrees !== 0)) move.multiply(this.ownMove(i));
    });
  }

  /** The turn of one bone about its joint, in the model's space. */
  ownMove(bone) {
    const turn = new Quaternion();
    this.bends[bone].forEach((degrees, axis) => {
      turn.multiply(new Quaternion().setFromAxisAngle(axes[axis], (degrees * Math.PI) / 180));
    });
    const bind = this.binds[bone];
    const inverse = new Matrix4().getInverse(bind);
    return bind.clone().multiply(new Matrix4().makeRotationFromQuaternion(turn)).multiply(inverse);
  }

  /** Writes the vertices of `mesh` as they are now. Those without influences stay where they are. */
  skin(mesh, positions, normals) {
    const turns = this.moves.map((move) => new Matrix3().setFromMatrix4(move));
    const point = new Vector3(), normal = new Vector3(), part = new Vector3();
    const pointSum = new Vector3(), normalSum = new Vector3();
    for (let vertex = 0; 3 * vertex < mesh.positions.length; ++vertex) {
      point.fromArray(mesh.positions, 3 * vertex);
      normal.fromArray(mesh.normals, 3 * vertex);
      const first = mesh.influenceStarts[vertex], end = mesh.influenceStarts[vertex + 1];
      if (first < end) {
        pointSum.set(0, 0, 0);
        normalSum.set(0, 0, 0);
        for (let i = first; i < end; ++i) {
          const bone = mesh.influenceBones[i], weight = mesh.influenceWeights[i];
          pointSum.addScaledVector(part.copy(point).applyMatrix4(this.moves[bone]), weight);
          normalSum.addScaledVector(part.copy(normal).applyMatrix3(turns[bone]), weight);
        }
        point.copy(pointSum);
        normal.copy(normalSum).normalize();
      }
      point.toArray(positions, 3 * vertex);
      normal.toArray(normals, 3 * vertex);
    }
  }
}
