// SPDX-License-Identifier: MIT
//
// The controls beside the stage. Names come from the package: they are set as text only.

const byId = (id) => document.getElementById(id);

function addSwitch(list, text, swatch, onChange) {
  const label = document.createElement("label");
  const box = document.createElement("input");
  box.type = "checkbox";
  box.checked = true;
  box.addEventListener("change", () => onChange(box.checked));
  label.append(box, " ");
  if (swatch) {
    const mark = document.createElement("i");
    mark.className = "swatch";
    mark.style.background = swatch;
    label.append(mark);
  }
  label.append(text);
  list.append(label);
}

function depthOf(bones, bone) {
  let depth = 0;
  for (let at = bones[bone].parent; at >= 0; at = bones[at].parent) ++depth;
  return depth;
}

function fillBones(select, bones) {
  bones.forEach(({ name }, i) => {
    const option = document.createElement("option");
    option.value = i;
    option.textContent = "\u00a0".repeat(Math.min(depthOf(bones, i), 12)) + (name || "(no name)");
    select.append(option);
  });
}

function count(number, one, many) {
  return `${number.toLocaleString("en")} ${number === 1 ? one : many}`;
}

function describe(actor) {
  const sum = (size) => actor.meshes.reduce((total, mesh) => total + size(mesh), 0);
  return [
    count(sum((mesh) => mesh.positions.length / 3), "vertex", "vertices"),
    count(sum((mesh) => mesh.faces.length / 3), "triangle", "triangles"),
    count(actor.bones.length, "bone", "bones"),
  ].join(", ");
}

export class Panel {
  /** @param on what to call: wireframe, bones, names, front, choose, weights, bend, straighten, mesh, material */
  constructor(actor, on) {
    document.title = actor.title;
    byId("title").textContent = actor.title;
    byId("numbers").textContent = describe(actor);
    for (const id of ["wireframe", "bones", "names", "weights"]) {
      byId(id).addEventListener("change", (event) => on[id](event.target.checked));
    }
    byId("weights").addEventListener("change", (event) => { byId("scale").hidden = !event.target.checked; });
    byId("front").addEventListener("click", () => on.front());
    byId("straighten").addEventListener("click", () => on.straighten());
    this.select = byId("bone");
    fillBones(this.select, actor.bones);
    this.select.addEventListener("change", () => on.choose(this.bone));
    byId("angle").addEventListener("input", (event) => on.bend(this.bone, this.axis, Number(event.target.value)));
    for (const radio of document.getElementsByName("axis")) {
      radio.addEventListener("change", () => on.choose(this.bone));
    }
    actor.meshes.forEach(({ name }, i) => addSwitch(byId("meshes"), name, null, (shown) => on.mesh(i, shown)));
    actor.materials.forEach((look, i) => {
      const swatch = look.texture < 0 ? `rgb(${look.colour.join()})` : null;
      addSwitch(byId("materials"), look.name, swatch, (shown) => on.material(i, shown));
    });
  }

  get bone() {
    return this.select.selectedIndex;
  }

  get axis() {
    return Number(document.querySelector("input[name=axis]:checked").value);
  }

  get showsWeights() {
    return byId("weights").checked;
  }

  show(bone, degrees) {
    this.select.selectedIndex = bone;
    byId("angle").value = degrees;
    byId("degrees").textContent = `${degrees}\u00b0`;
  }
}
