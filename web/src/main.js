// SPDX-License-Identifier: MIT
import { readActor } from "page/actor.js";
import { Bones } from "page/bones.js";
import { Meshes } from "page/meshes.js";
import { Panel } from "page/panel.js";
import { Pose } from "page/pose.js";
import { Stage } from "page/stage.js";

const kViewAngle = 32; // degrees, as in the tool's pictures

function start() {
  const actor = readActor(document.getElementById("actor").textContent);
  const element = document.getElementById("stage");
  const stage = new Stage(element, actor.stand, () => bones.placeNames(stage.camera, stage.width, stage.height));
  const meshes = new Meshes(actor, () => stage.draw());
  const pose = new Pose(actor.bones);
  // Not the box around the meshes: a few of their points may lie far from all others.
  const bulk = new THREE.Box3(new THREE.Vector3(...actor.bounds.low), new THREE.Vector3(...actor.bounds.high));
  const size = bulk.getSize(new THREE.Vector3()).length();
  const bones = new Bones(actor.bones, document.getElementById("labels"), size);
  stage.model.add(meshes.group, bones.group);
  stage.scene.updateMatrixWorld();

  const bend = (bone, axis, degrees) => {
    if (bone < 0) return;
    pose.bend(bone, axis, degrees);
    follow();
  };
  const follow = () => {
    meshes.follow(pose);
    bones.follow(pose);
    panel.show(panel.bone, panel.bone < 0 ? 0 : pose.bends[panel.bone][panel.axis]);
    stage.draw();
  };
  const choose = (bone) => {
    bones.choose(bone);
    meshes.showWeights(panel.showsWeights ? bone : -1);
    panel.show(bone, bone < 0 ? 0 : pose.bends[bone][panel.axis]);
    stage.draw();
  };
  /** Runs a change and draws the result. */
  const drawn = (change) => (...values) => {
    change(...values);
    stage.draw();
  };

  const panel = new Panel(actor, {
    wireframe: drawn((on) => meshes.setWireframe(on)),
    bones: drawn((on) => { bones.group.visible = on; }),
    names: drawn((on) => { bones.allNames = on; }),
    front: () => stage.frame(box, 0),
    weights: () => choose(panel.bone),
    choose,
    bend,
    straighten: () => { pose.straighten(); follow(); },
    mesh: drawn((mesh, on) => meshes.show(mesh, on)),
    material: drawn((material, on) => meshes.switchMaterial(material, on)),
  });
  chooseByClick(stage, bones, choose);
  stage.resize();
  follow();
  choose(actor.bones.length > 0 ? 0 : -1);
  const box = bulk.clone().applyMatrix4(meshes.group.matrixWorld).union(boundsOf([bones.points]));
  stage.frame(box, kViewAngle);
  // For tests and for the browser's console.
  window.preview = { actor, pose, meshes, bones, stage, bend, choose };
}

/** Bounds of the vertices of `objects` on the stage; the library's own are boundless where one has none. */
function boundsOf(objects) {
  return objects.reduce((bounds, { geometry, matrixWorld }) => bounds.union(
    new THREE.Box3().setFromBufferAttribute(geometry.attributes.position).applyMatrix4(matrixWorld)), new THREE.Box3());
}

/** A click that does not turn the model chooses the bone under it. */
function chooseByClick(stage, bones, choose) {
  const canvas = stage.renderer.domElement;
  let down = null;
  canvas.addEventListener("pointerdown", (event) => { down = [event.clientX, event.clientY]; });
  canvas.addEventListener("pointerup", (event) => {
    if (!down || Math.hypot(event.clientX - down[0], event.clientY - down[1]) > 4) return;
    const { left, top } = canvas.getBoundingClientRect();
    const bone = bones.find(event.clientX - left, event.clientY - top, stage.camera, stage.width, stage.height);
    if (bone >= 0) choose(bone);
  });
}

try {
  start();
} catch (error) {
  const problem = document.getElementById("problem");
  problem.textContent = `The model cannot be shown: ${error.message}`;
  problem.hidden = false;
  throw error;
}
