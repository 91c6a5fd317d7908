// SPDX-License-Identifier: MIT
//
// The renderer, the lights and the viewer. The model stands upright on it, whatever its own axes are.
import { toLight } from "page/colours.js";

// The library itself has no more than a plain power for the screen; this is the curve of sRGB.
THREE.ShaderChunk.encodings_fragment = "gl_FragColor = LinearTosRGB(gl_FragColor);";

function makeRenderer() {
  const canvas = document.createElement("canvas");
  const settings = { alpha: false, antialias: true };
  // WebGL 2 repeats pictures of any size. Where it is missing, null leads to WebGL 1.
  const context = canvas.getContext("webgl2", settings);
  const renderer = new THREE.WebGLRenderer({ ...settings, canvas, context });
  renderer.physicallyCorrectLights = true;
  renderer.setPixelRatio(Math.min(window.devicePixelRatio, 2));
  renderer.setClearColor("#f3f5f7");
  return renderer;
}

function makeControls(camera, element) {
  const controls = new THREE.OrbitControls(camera, element);
  controls.screenSpacePanning = true;
  controls.enableKeys = false; // arrow keys are for the panel
  return controls;
}

export class Stage {
  /** @param stand {side, up, front} of the model; they become x, y and z of the stage */
  constructor(element, stand, beforeDrawing) {
    this.element = element;
    this.beforeDrawing = beforeDrawing;
    this.renderer = makeRenderer();
    element.prepend(this.renderer.domElement);
    this.scene = new THREE.Scene();
    this.camera = new THREE.PerspectiveCamera(25, 1, 0.01, 100);
    this.addLights();
    this.model = new THREE.Group();
    const [side, up, front] = [stand.side, stand.up, stand.front].map((axis) => new THREE.Vector3(...axis));
    this.model.quaternion.setFromRotationMatrix(new THREE.Matrix4().makeBasis(side, up, front).transpose());
    this.scene.add(this.model, this.camera);
    this.controls = makeControls(this.camera, this.renderer.domElement);
    this.controls.addEventListener("change", () => this.draw());
    new ResizeObserver(() => this.resize()).observe(element);
    this.pending = false;
  }

  addLights() {
    const key = new THREE.DirectionalLight("#ffffff", 2.0);
    key.position.set(-0.5, 0.6, 1);
    const fill = new THREE.DirectionalLight("#ffffff", 0.6);
    fill.position.set(1, 0, 0.6);
    this.camera.add(key, key.target, fill, fill.target); // the lights move along with the viewer
    this.scene.add(new THREE.HemisphereLight("#ffffff", toLight("#c8ccd4"), 1.3));
  }

  /** Brings `box` into the frame, seen from the front at an angle. */
  frame(box, degrees) {
    const sphere = box.getBoundingSphere(new THREE.Sphere());
    const radius = Math.max(sphere.radius, 1e-6);
    const angle = (degrees * Math.PI) / 180;
    const direction = new THREE.Vector3(Math.sin(angle), 0.18, Math.cos(angle)).normalize();
    const narrow = Math.min(1, this.camera.aspect);
    const distance = radius / Math.sin((this.camera.fov * Math.PI) / 360) / narrow;
    this.camera.position.copy(sphere.center).addScaledVector(direction, distance);
    this.camera.near = distance / 200;
    this.camera.far = distance * 20;
    this.camera.updateProjectionMatrix();
    this.controls.target.copy(sphere.center);
    this.controls.update();
    this.draw();
  }

  get width() {
    return Math.max(this.element.clientWidth, 1);
  }

  get height() {
    return Math.max(this.element.clientHeight, 1);
  }

  resize() {
    this.renderer.setSize(this.width, this.height);
    this.camera.aspect = this.width / this.height;
    this.camera.updateProjectionMatrix();
    this.drawNow();
  }

  /** Draws with the next frame. */
  draw() {
    if (this.pending) return;
    this.pending = true;
    requestAnimationFrame(() => this.drawNow());
  }

  drawNow() {
    this.pending = false;
    this.scene.updateMatrixWorld();
    this.beforeDrawing();
    this.renderer.render(this.scene, this.camera);
  }
}
