// The examples of the guide: each block is a program, whose lines say what they print.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdirSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { test } from "node:test";
import { fileURLToPath } from "node:url";

const folder = new URL("../.documents/", import.meta.url);

function programsOf(document) {
  const text = readFileSync(new URL(document, import.meta.url), "utf8");
  return [...text.matchAll(/^```js\n(.*?)^```/gms)].map(([, program]) => program);
}
function printedBy(program, name) {
  const file = new URL(name, folder);
  writeFileSync(file, program);
  return execFileSync(process.execPath, [fileURLToPath(file)], { encoding: "utf8" }).trimEnd().split("\n");
}

for (const [document, least] of [["../../docs/javascript.md", 8], ["../README.md", 1]]) {
  test(`the examples of ${document.replace(/.*\.\.\//, "")} print what they say`, () => {
    rmSync(folder, { recursive: true, force: true });
    mkdirSync(folder);
    const programs = programsOf(document);
    assert.ok(programs.length >= least, `${programs.length} examples`);
    programs.forEach((program, i) => {
      const expected = [...program.matchAll(/ \/\/ > (.*)$/gm)].map(([, line]) => line);
      assert.ok(expected.length > 0, program);
      assert.deepEqual(printedBy(program, `${i}.mjs`), expected, program);
    });
    rmSync(folder, { recursive: true });
  });
}
