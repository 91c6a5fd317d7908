// SPDX-License-Identifier: MIT
//
// Takes the picture of the page for docs/gallery.md: FBX2CZP=... CHROMIUM=... node test/screenshot.mjs OUT.jpg
import { sample, startBrowser } from "./browser.mjs";

const browser = await startBrowser();
const { page } = await browser.open(sample);
await page.setViewportSize({ width: 900, height: 600 });
await page.selectOption("#bone", { index: await page.evaluate(() =>
  window.preview.actor.bones.findIndex(({ name }) => name === "L_forearm")) });
await page.click("#weights");
await page.click("input[name=axis][value='2']");
await page.locator("#angle").fill("-70");
await page.waitForTimeout(500); // the last frame
await page.screenshot({ path: process.argv[2], type: "jpeg", quality: 70 });
await browser.stop();
