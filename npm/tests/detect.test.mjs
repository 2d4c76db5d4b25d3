// Finding out an encoding.
import assert from "node:assert/strict";
import { before, test } from "node:test";

import { decode, detect, encode, init, trace } from "encconv";

before(() => init());

test("finds encodings by what speaks for them", () => {
  const russian = "Съешь ещё этих мягких французских булок, да выпей же чаю. ".repeat(3);
  const japanese = "吾輩は猫である。名前はまだ無い。どこで生れたかとんと見当がつかぬ。".repeat(3);
  const chinese = "我们的家乡在希望的田野上，炊烟在新建的住房上飘荡。".repeat(3);
  const cases = [
    [encode(russian, "windows-1251"), "text", "windows-1251", "statistics"],
    [encode(russian, "koi8-r"), "text", "KOI8-R", "statistics"],
    [encode(japanese, "shift_jis"), "text", "Shift_JIS", "statistics"],
    [encode(japanese, "iso-2022-jp"), "text", "ISO-2022-JP", "structure"],
    [encode(chinese, "gb18030"), "text", "GBK", "statistics"],
    [encode(russian, "utf-8"), "text", "UTF-8", "structure"],
    [encode("The quick brown fox jumps over the lazy dog.\n".repeat(3), "ibm037"), "text", "IBM037", "structure"],
    [encode("a", "utf-8", { byteOrderMark: true }), "text", "UTF-8", "mark"],
    [encode("plain", "ascii"), "ascii", "US-ASCII", "structure"],
    [new Uint8Array(0), "empty", null, undefined],
    [Uint8Array.from([0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0, 0, 0, 13]), "binary", null, undefined],
  ];
  for (const [bytes, kind, encoding, evidence] of cases) {
    const found = detect(bytes);
    assert.deepEqual([found.kind, found.encoding], [kind, encoding], JSON.stringify(found));
    if (evidence !== undefined && encoding !== "US-ASCII") assert.ok(found.candidates[0].confidence >= 0.5);
  }
});

const misread = (text) => decode(encode(text, "utf-8"), "windows-1252");

test("traces garbled text back, also twice over, and leaves what is none", () => {
  const cases = [
    ["Ð¿Ñ€Ð¸Ð²ÐµÑ‚, ÐºÐ°Ðº Ð´ÐµÐ»Ð°?", "привет, как дела?", [["UTF-8", "windows-1252"]]],
    ["Ïðèâåò, êàê äåëà?", "Привет, как дела?", [["windows-1251", "windows-1252"]]],
    [misread(misread("déjà vu, c’est là")), "déjà vu, c’est là", [["UTF-8", "windows-1252"], ["UTF-8", "windows-1252"]]],
  ];
  for (const [garbled, text, steps] of cases) {
    const [origin] = trace(garbled);
    assert.equal(origin?.text, text);
    assert.deepEqual(origin.misreadings.map(({ written, read }) => [written, read]), steps);
    assert.ok(origin.confidence > 0.5);
  }
  for (const text of ["", "plain", "Привет, как дела? Всё хорошо."]) assert.deepEqual(trace(text), [], text);
});

test("looks at the beginning of a text that is cut within a character", () => {
  const cut = encode("吾輩は猫である。名前はまだ無い。", "utf-8").slice(0, -1);
  assert.equal(detect(cut, { isBeginning: true }).encoding, "UTF-8");
  const long = new Uint8Array(40e6).fill(0x20);
  long.set(encode("Привет, мир. ".repeat(100), "utf-8"));
  long.fill(0xff, 34e6); // behind what is looked at
  assert.equal(detect(long).encoding, "UTF-8");
});
