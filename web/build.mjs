// SPDX-License-Identifier: MIT
//
// Builds the page: one HTML file with styles and program inside. "ACTOR_DATA" marks where the tool puts an actor.
//   node build.mjs [OUT.html] [OUT.cpp]    OUT.cpp: the same for the tool to compile in
import { build } from "esbuild";
import { mkdir, readFile, writeFile } from "node:fs/promises";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

const folder = dirname(fileURLToPath(import.meta.url));
const html = process.argv[2] ?? join(folder, "dist", "page.html");
const source = process.argv[3];

async function bundle() {
  const result = await build({
    entryPoints: [join(folder, "src", "main.js")],
    bundle: true,
    minify: true,
    write: false,
    format: "iife",
    target: "es2020",
    charset: "ascii",
    legalComments: "inline",
  });
  return result.outputFiles[0].text;
}

/** @returns the text of a script element's inside that cannot end the element */
const forScript = (text) => text.replaceAll("</script", "<\\/script");

/** A C++ file whose PageTemplate() gives `text`; compilers limit the length of one literal. */
function toCpp(text) {
  const pieceLength = 8000;
  const pieces = [];
  for (let at = 0; at < text.length; at += pieceLength) {
    pieces.push(`R"page~(${text.slice(at, at + pieceLength)})page~"`);
  }
  return `// Made by web/build.mjs.
#include "preview/page.h"

namespace preview {

std::vector<std::string_view> PageTemplate() {
  return {
${pieces.join(",\n")}};
}

}  // namespace preview
`;
}

const template = await readFile(join(folder, "src", "page.html"), "utf8");
const style = await readFile(join(folder, "src", "page.css"), "utf8");
const script = forScript(await bundle());
const page = template.replace("PAGE_STYLE", () => style).replace("PAGE_SCRIPT", () => script);
await mkdir(dirname(html), { recursive: true });
await writeFile(html, page);
if (source) await writeFile(source, toCpp(page));
