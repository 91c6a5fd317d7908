// SPDX-License-Identifier: MIT
//
// The meshes of an actor as the stage draws them.
import { toLight } from "page/colours.js";
import { paintWeights } from "page/weights.js";

const kPlain = toLight("#b8bcc2"); // a mesh whose material is missing or switched off

function makeMaterial(look, textures) {
  const material = new THREE.MeshStandardMaterial({
    side: THREE.DoubleSide, roughness: 0.75, metalness: 0, alphaTest: 0.5,
  });
  if (!look) material.color.copy(kPlain);
  else if (look.texture >= 0) material.map = textures[look.texture];
  else material.color.copy(toLight(...look.colour.map((part) => part / 255)));
  return material;
}

function loadTextures(textures, whenLoaded) {
  return textures.map(({ url }) => {
    const texture = new THREE.TextureLoader().load(url, whenLoaded);
    texture.encoding = THREE.sRGBEncoding;
    texture.flipY = false; // v counts from the top
    texture.wrapS = texture.wrapT = THREE.RepeatWrapping;
    texture.anisotropy = 4;
    return texture;
  });
}

function makeGeometry(mesh) {
  const geometry = new THREE.BufferGeometry();
  geometry.setIndex(new THREE.BufferAttribute(mesh.faces, 1));
  geometry.setAttribute("position", new THREE.BufferAttribute(mesh.positions.slice(), 3));
  geometry.setAttribute("normal", new THREE.BufferAttribute(mesh.normals.slice(), 3));
  geometry.setAttribute("uv", new THREE.BufferAttribute(mesh.uvs, 2));
  geometry.setAttribute("color", new THREE.BufferAttribute(new Float32Array(mesh.positions.length), 3));
  return geometry;
}

export class Meshes {
  constructor(actor, whenLoaded) {
    this.actor = actor;
    this.group = new THREE.Group();
    const textures = loadTextures(actor.textures, whenLoaded);
    this.looks = actor.materials.map((look) => makeMaterial(look, textures));
    this.plain = makeMaterial(null, textures);
    this.painted = makeMaterial(null, textures);
    this.painted.vertexColors = THREE.VertexColors;
    this.painted.color.set("#ffffff");
    this.off = new Set(); // numbers of the materials that are switched off
    this.weightBone = -1;
    for (const mesh of actor.meshes) {
      const shown = new THREE.Mesh(makeGeometry(mesh), this.plain);
      shown.frustumCulled = false; // bending moves vertices out of the bounds
      this.group.add(shown);
    }
    this.dress();
  }

  get all() {
    return this.group.children;
  }

  follow(pose) {
    this.all.forEach((shown, i) => {
      const { position, normal } = shown.geometry.attributes;
      pose.skin(this.actor.meshes[i], position.array, normal.array);
      position.needsUpdate = normal.needsUpdate = true;
    });
  }

  show(mesh, on) {
    this.all[mesh].visible = on;
  }

  switchMaterial(material, on) {
    if (on) this.off.delete(material);
    else this.off.add(material);
    this.dress();
  }

  setWireframe(on) {
    for (const material of [...this.looks, this.plain, this.painted]) material.wireframe = on;
  }

  /** Paints the weights of `bone`, or materials again for -1. */
  showWeights(bone) {
    this.weightBone = bone;
    if (bone >= 0) {
      this.all.forEach((shown, i) => {
        const { color } = shown.geometry.attributes;
        paintWeights(this.actor.meshes[i], bone, color.array);
        color.needsUpdate = true;
      });
    }
    this.dress();
  }

  dress() {
    this.all.forEach((shown, i) => {
      const { material } = this.actor.meshes[i];
      const isPlain = material < 0 || this.off.has(material);
      shown.material = this.weightBone >= 0 ? this.painted : isPlain ? this.plain : this.looks[material];
    });
  }
}
