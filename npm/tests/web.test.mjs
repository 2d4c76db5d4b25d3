// The package as browsers load it, with tables that come when they are asked for.
import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import { test } from "node:test";

import * as encconv from "../dist/web.js";

const file = (name) => readFile(new URL(`../dist/${name}`, import.meta.url));
const asked = [];
let answer = (name) => file(`tables/${name}`);

test("loads the core from bytes, and tables when they are needed", async () => {
  assert.throws(() => encconv.decode(new Uint8Array(1), "utf-8"), /init/);
  await assert.rejects(encconv.init({ core: Uint8Array.of(1, 2, 3) }), WebAssembly.CompileError);
  await encconv.init({
    core: file("core.wasm"),
    tables: (name) => {
      asked.push(name);
      return answer(name);
    },
  });
  assert.equal(encconv.decode(Uint8Array.of(0x93, 0xfa), "shift_jis"), "日");
  assert.equal(encconv.decode(Uint8Array.of(0xa4, 0xa2), "euc-jp"), "あ");
  assert.deepEqual(asked, []);
});

test("detects without tables that are not there", () => {
  const candidatesOf = (text) => encconv.detect(Buffer.from(text, "latin1")).candidates.map(({ encoding }) => encoding);
  assert.ok(encconv.findEncoding("iso-2022-cn").tables.length > 0);
  assert.deepEqual(candidatesOf("\x1B$)A\x0E<:Ky2;S{#,\x0F"), ["ISO-2022-CN"]);
  assert.ok(candidatesOf("<meta charset=euc-tw>\xc4\xe3\xc5\xc6\xc4\xe3\xc5\xc6").length > 0);
  assert.deepEqual(asked, []);
});

test("says which tables are missing, and reads them once", async () => {
  const text = "一乂";
  assert.equal(encconv.isLoaded("euc-tw"), false);
  assert.throws(() => encconv.encode(text, "euc-tw"), (error) => {
    assert.ok(error instanceof encconv.TablesMissingError);
    assert.deepEqual(error.files, ["euc-tw.table"]);
    assert.match(error.message, /await load\("EUC-TW"\)/i);
    return true;
  });
  asked.length = 0;
  await Promise.all([encconv.load("euc-tw", "utf-8"), encconv.load("EUC_TW")]);
  assert.deepEqual(asked, ["euc-tw.table"]);
  assert.equal(encconv.isLoaded("euc-tw"), true);
  assert.equal(encconv.decode(encconv.encode(text, "euc-tw"), "euc-tw"), text);
});

test("refuses tables that are damaged, and can be told again", async () => {
  const { tables } = encconv.findEncoding("marc-8");
  assert.ok(tables.length > 0);
  answer = async (name) => {
    const damaged = await file(`tables/${name}`);
    damaged[40] ^= 1;
    return damaged;
  };
  await assert.rejects(encconv.load("marc-8"), /is damaged, or belongs to another version/);
  answer = async () => new Uint8Array(0);
  await assert.rejects(encconv.load("marc-8"), /is damaged/);
  answer = () => Promise.reject(new Error("offline"));
  await assert.rejects(encconv.load("marc-8"), /offline/);
  answer = (name) => file(`tables/${name}`);
  await encconv.load("marc-8");
  assert.equal(encconv.decode(encconv.encode("é", "marc-8"), "marc-8").normalize(), "é");
  await assert.rejects(encconv.load("klingon"), /not known: klingon/);
});

test("makes and takes strings of any length", () => {
  for (const length of [0, 1, 31, 32, 33, 1000, 1_100_000]) {
    const text = "я".repeat(length);
    assert.equal(encconv.decode(encconv.encode(text, "koi8-r"), "koi8-r"), text, String(length));
  }
});

test("every table file belongs to an encoding, and loads", async () => {
  const all = new Set(encconv.encodings().flatMap(({ tables }) => tables));
  const { readdirSync } = await import("node:fs");
  assert.deepEqual(readdirSync(new URL("../dist/tables", import.meta.url)).sort(), [...all].sort());
  await encconv.load(...encconv.encodings().map(({ number }) => number));
  for (const { number, name, canEncode, canDecode } of encconv.encodings()) {
    if (canEncode && canDecode) assert.ok(encconv.encode("A", number, { errors: "drop" }), name);
  }
});
