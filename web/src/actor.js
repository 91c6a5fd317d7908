// SPDX-License-Identifier: MIT
//
// Reads the actor that the tool put into the page; src/preview/page_data.h says what is in it.

function toBuffer(base64) {
  const text = atob(base64);
  const bytes = new Uint8Array(text.length);
  for (let i = 0; i < text.length; ++i) bytes[i] = text.charCodeAt(i);
  return bytes.buffer;
}

/** Where each vertex's influences begin; one number more than there are vertices. */
function startsOf(counts) {
  const starts = new Uint32Array(counts.length + 1);
  for (let i = 0; i < counts.length; ++i) starts[i + 1] = starts[i] + counts[i];
  return starts;
}

function readMesh(mesh) {
  return {
    name: mesh.name,
    material: mesh.material,
    positions: new Float32Array(toBuffer(mesh.positions)),
    normals: new Float32Array(toBuffer(mesh.normals)),
    uvs: new Float32Array(toBuffer(mesh.uvs)),
    faces: new Uint32Array(toBuffer(mesh.faces)),
    influenceStarts: startsOf(new Uint16Array(toBuffer(mesh.influenceCounts))),
    influenceBones: new Uint32Array(toBuffer(mesh.influenceBones)),
    influenceWeights: new Float32Array(toBuffer(mesh.influenceWeights)),
  };
}

/** @returns the actor with its lists of numbers as typed arrays */
export function readActor(text) {
  const data = JSON.parse(text);
  return { ...data, meshes: data.meshes.map(readMesh) };
}
