// Where texts and records are cut, in windows of any size.
import assert from "node:assert/strict";
import { before, test } from "node:test";

import { convert, encode, findCut, findRecordCut, init } from "encconv";
import { bytes, hex, numbers } from "./support.mjs";

before(() => init());

test("finds the first place, as far as the bytes show it", () => {
  const cases = [
    ["shift_jis", "83 65 83 58", 1, {}, 2],
    ["shift_jis", "83 83 83 83 83", 1, { position: 9 }, null],
    ["shift_jis", "83 83 83 83 83", 1, { position: 9, atCut: true }, 2],
    ["shift_jis", "65 83 58 0a 41", 0, { position: 9, behindLine: true }, 4],
    ["utf-16le", "00 7a 00", 0, { position: 7 }, 1],
    ["scsu", "61 62 63", 1, {}, null],
    ["shift_jis", "41", 2, {}, null],
    ["shift_jis", "", 0, {}, 0],
    ["shift_jis", "41 41 41", 1.5, {}, 2],
  ];
  for (const [encoding, digits, offset, options, place] of cases) {
    assert.equal(findCut(bytes(digits), encoding, offset, options), place, `${encoding} ${digits}`);
  }
  assert.throws(() => findCut(new Uint8Array(1), "klingon"), /not known/);
});

test("gives pieces of a large text that are the whole when they are joined", () => {
  const random = numbers(5);
  // One line is longer than what is looked at first, and than what is looked at in front.
  const text = `${"漢字かな交じり文。".repeat(65_000)}\n${"テスト, test\n".repeat(30_000)}`;
  for (const encoding of ["shift_jis", "gb18030", "utf-16le", "hz-gb-2312"]) {
    const data = encode(text, encoding, { errors: "drop" });
    const whole = convert(data, encoding, "utf-8");
    for (const behindLine of [false, true]) {
      const cuts = [0, ...Array.from({ length: 3 }, () => findCut(data, encoding, random(data.length), { behindLine })), data.length];
      cuts.sort((a, b) => a - b);
      const pieces = cuts.slice(1).map((end, i) => convert(data.subarray(cuts[i], end), encoding, "utf-8"));
      assert.ok(Buffer.concat(pieces).equals(whole), `${encoding} ${cuts}`);
      if (behindLine && encoding !== "utf-16le") {
        assert.ok(cuts.slice(1, -1).every((cut) => data[cut - 1] === 10), `${encoding} ${cuts}`);
      }
    }
  }
});

test("finds where records begin, behind any number of others", () => {
  assert.equal(findRecordCut(new Uint8Array(0), "fixed:80", 100), 160);
  assert.equal(findRecordCut(new Uint8Array(0), "fixed:80", 100, { position: 70 }), 170);
  assert.equal(findRecordCut(bytes("0006 0000 c1c2 0005 0000 c3 0004 0000"), "rdw", 1), 6);
  assert.equal(findRecordCut(bytes("0006 0000 c1c2 0005 0000 c3 0004 0000"), "rdw", 6.5), 11);
  assert.equal(findRecordCut(bytes("0006 0000 c1c2"), "rdw", 1), null);
  assert.equal(findRecordCut(bytes("0006 0000 c1c2"), "rdw", 0, { position: 9 }), null);
  assert.equal(findRecordCut(bytes("0006 0000 c1c2"), "rdw", 0, { position: 9, atCut: true }), 0);
  assert.throws(() => findRecordCut(new Uint8Array(4), "rows", 0), /not known: rows/);
  // Records of all lengths, one of them in segments that are megabytes together.
  const random = numbers(3);
  const parts = [];
  const begins = [];
  let size = 0;
  const add = (length, segment) => {
    const part = new Uint8Array(length);
    part.set([length >> 8, length & 255, segment]);
    if (segment < 2) begins.push(size);
    parts.push(part);
    size += length;
  };
  for (let i = 0; i < 2000; ++i) add(4 + random(2000), 0);
  add(32_000, 1);
  for (let i = 0; i < 100; ++i) add(32_000, 3);
  add(32_000, 2);
  for (let i = 0; i < 100; ++i) add(4 + random(2000), 0);
  const file = Buffer.concat(parts);
  for (let i = 0; i < 50; ++i) {
    const offset = random(size - 2000);
    const expected = begins.find((begin) => begin >= offset) ?? null;
    assert.equal(findRecordCut(file, "rdw", offset), expected, `${offset} of ${hex(file.subarray(0, 4))}`);
  }
});
