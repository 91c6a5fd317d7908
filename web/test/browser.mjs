// SPDX-License-Identifier: MIT
//
// A headless browser without network, and pages that the tool writes.
import { execFileSync } from "node:child_process";
import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";
import { chromium } from "playwright-core";

export const sample = fileURLToPath(new URL("../../samples/scout.fbx", import.meta.url));

const flags = [
  "--no-sandbox", "--disable-gpu", "--use-angle=swiftshader", "--enable-unsafe-swiftshader", "--disable-quic",
  "--no-first-run", "--disable-background-networking", "--disable-component-update", "--disable-sync",
];

export async function startBrowser() {
  const folder = mkdtempSync(join(tmpdir(), "fbx2czp-page-"));
  const browser = await chromium.launch({ executablePath: process.env.CHROMIUM, args: flags });
  return {
    folder,
    /** Shows `model` on a page. @returns the page, and what went wrong on it so far */
    async open(model) {
      const file = join(folder, "page.html");
      execFileSync(process.env.FBX2CZP, ["preview", model, "-o", file]);
      const context = await browser.newContext({ viewport: { width: 1000, height: 700 }, offline: true });
      const page = await context.newPage();
      const problems = [];
      page.on("console", (message) => { if (message.type() === "error") problems.push(message.text()); });
      page.on("pageerror", (error) => problems.push(error.message));
      page.on("request", (request) => {
        if (!/^(file|data|blob):/.test(request.url())) problems.push(`asked for ${request.url()}`);
      });
      await page.goto(pathToFileURL(file).href);
      await page.waitForFunction(() => window.preview);
      return { page, problems };
    },
    async stop() {
      await browser.close();
      rmSync(folder, { recursive: true });
    },
  };
}

/** Draws the model anew and keeps its picture on the page, under `name`. */
export async function keepPicture(page, name) {
  await page.evaluate((key) => {
    const { stage } = window.preview;
    stage.drawNow();
    const copy = document.createElement("canvas");
    copy.width = stage.renderer.domElement.width;
    copy.height = stage.renderer.domElement.height;
    const context = copy.getContext("2d");
    context.drawImage(stage.renderer.domElement, 0, 0);
    window.pictures = { ...window.pictures, [key]: context.getImageData(0, 0, copy.width, copy.height).data };
  }, name);
}

/** Share of pixels, from 0 to 1, in which two pictures differ. */
export const difference = (page, first, second) => page.evaluate((names) => {
  const [a, b] = names.map((name) => window.pictures[name]);
  let differing = 0;
  for (let i = 0; i < a.length; i += 4) {
    if ([0, 1, 2].some((k) => Math.abs(a[i + k] - b[i + k]) > 8)) ++differing;
  }
  return differing / (a.length / 4);
}, [first, second]);

/** What a picture holds: the share of pixels unlike its first one, and the number of colours among them. */
export const contentOf = (page, name) => page.evaluate((key) => {
  const pixels = window.pictures[key];
  const colours = new Set();
  let drawn = 0;
  for (let i = 0; i < pixels.length; i += 4) {
    if ([0, 1, 2].every((k) => pixels[i + k] === pixels[k])) continue;
    ++drawn;
    colours.add([0, 1, 2].map((k) => pixels[i + k] >> 5).join());
  }
  return { share: drawn / (pixels.length / 4), colours: colours.size };
}, name);
