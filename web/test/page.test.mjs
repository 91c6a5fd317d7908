// SPDX-License-Identifier: MIT
//
// The page as a person sees and uses it.
import assert from "node:assert/strict";
import { copyFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { contentOf, difference, keepPicture, sample, startBrowser } from "./browser.mjs";

let browser, page, problems;

before(async () => {
  browser = await startBrowser();
  ({ page, problems } = await browser.open(sample));
});
after(() => browser.stop());

test("the model stands in the frame, in several colours, and nothing goes wrong", async () => {
  await page.waitForFunction(() => window.preview.meshes.looks.every(({ map }) => !map || map.image?.width > 0));
  await keepPicture(page, "start");
  const { share, colours } = await contentOf(page, "start");
  assert.ok(share > 0.1 && share < 0.6, `${share} of the picture is drawn`);
  assert.ok(colours > 20, `${colours} colours`);
  const [head, hips] = await page.evaluate(() => {
    const { bones, stage } = window.preview;
    const places = bones.project(stage.camera, stage.width, stage.height);
    return ["head", "Mobo"].map((name) => places[bones.bones.findIndex((bone) => bone.name === name)]);
  });
  assert.ok(head.y < hips.y - 100 && Math.abs(head.x - hips.x) < 20, "the head is above the hips");
  assert.deepEqual(problems, []);
});

for (const [name, selector, least] of [
  ["wireframe", "#wireframe", 0.05],
  ["bones", "#bones", 0.001],
  ["weights", "#weights", 0.05],
  ["the first mesh", "#meshes input", 0.005],
  ["the first material", "#materials input", 0.005],
]) {
  test(`switching ${name} changes the picture, and switching it back undoes it`, async () => {
    await keepPicture(page, "before");
    await page.click(selector);
    await keepPicture(page, "switched");
    await page.click(selector);
    await keepPicture(page, "after");
    assert.ok(await difference(page, "before", "switched") > least);
    assert.equal(await difference(page, "before", "after"), 0);
  });
}

/** How far each vertex is from where it was bound, and how much of it hangs on `bone` and those below it. */
const movesOf = (bone) => page.evaluate((name) => {
  const { actor, meshes } = window.preview;
  const below = actor.bones.map((b) => b.name === name);
  actor.bones.forEach(({ parent }, i) => { if (parent >= 0 && below[parent]) below[i] = true; });
  return actor.meshes.flatMap((mesh, m) => {
    const now = meshes.all[m].geometry.attributes.position.array;
    return Array.from({ length: mesh.positions.length / 3 }, (_, v) => {
      let weight = 0;
      for (let i = mesh.influenceStarts[v]; i < mesh.influenceStarts[v + 1]; ++i) {
        if (below[mesh.influenceBones[i]]) weight += mesh.influenceWeights[i];
      }
      const was = mesh.positions.subarray(3 * v, 3 * v + 3), is = now.subarray(3 * v, 3 * v + 3);
      const joint = window.preview.bones.joints[below.indexOf(true)].toArray();
      return { weight, moved: Math.hypot(...[0, 1, 2].map((k) => is[k] - was[k])),
        reachBefore: Math.hypot(...[0, 1, 2].map((k) => was[k] - joint[k])),
        reach: Math.hypot(...[0, 1, 2].map((k) => is[k] - joint[k])) };
    });
  });
}, bone);

test("the slider bends the chosen bone: what hangs on it turns about its joint, all else stays", async () => {
  await page.selectOption("#bone", { index: await page.evaluate(() =>
    window.preview.actor.bones.findIndex(({ name }) => name === "L_forearm")) });
  await page.click("input[name=axis][value='2']");
  await page.locator("#angle").fill("90");
  const vertices = await movesOf("L_forearm");
  const full = vertices.filter(({ weight }) => weight > 0.999), none = vertices.filter(({ weight }) => weight === 0);
  assert.ok(full.length > 20 && none.length > 200);
  for (const { moved, reach, reachBefore } of full) {
    assert.ok(Math.abs(reach - reachBefore) < 0.01, `${reachBefore} became ${reach}`);
    assert.ok(moved < 2 * reachBefore + 0.01);
  }
  assert.ok(full.some(({ moved }) => moved > 10));
  for (const { moved } of none) assert.ok(moved < 1e-3, `a vertex without weight moved by ${moved}`);
  await page.click("#straighten");
  for (const { moved } of await movesOf("L_forearm")) assert.ok(moved < 1e-3);
  assert.equal(await page.inputValue("#angle"), "0");
});

test("a click on a joint chooses its bone", async () => {
  const place = await page.evaluate(() => {
    const { bones, stage } = window.preview;
    return bones.project(stage.camera, stage.width, stage.height)[
      bones.bones.findIndex(({ name }) => name === "R_foot")];
  });
  await page.mouse.click(place.x, place.y);
  await page.waitForFunction(() => document.querySelector("#labels .chosen")?.textContent === "R_foot",
    null, { timeout: 5000 });
  assert.deepEqual(problems, []);
});

test("names that look like markup stay text", async () => {
  const name = "</script><img src=x onerror=alert(1)>.fbx".replaceAll("/", "\u2215");
  const model = join(browser.folder, name);
  copyFileSync(sample, model);
  const { page: other, problems: otherProblems } = await browser.open(model);
  assert.equal(await other.textContent("#title"), name);
  assert.equal(await other.locator("aside img").count(), 0);
  assert.deepEqual(otherProblems, []);
});
