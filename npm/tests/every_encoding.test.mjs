// Every encoding against the tool, with clean text and with bytes that are none.
import assert from "node:assert/strict";
import { before, test } from "node:test";

import { Decoder, decode, Encoder, encode, encodings, init } from "encconv";
import { forEach, numbers, runTool } from "./support.mjs";

before(() => init());

// Characters of all scripts, alone and in words, and a few that are in no code page.
function sampleText() {
  const random = numbers(1);
  let text = "Text, 123: \"Grüße\" — Привет, мир! Γειά σου. שלום. مرحبا. 日本語テスト ﾃｽﾄ 漢字 한국어 中文繁體 हिन्दी ไทย\n\t";
  for (let scalar = 0x20; scalar < 0x3000; scalar += 3) text += String.fromCharCode(scalar);
  for (let i = 0; i < 3000; ++i) text += String.fromCharCode(0x3000 + random(0x6fd0));
  for (let i = 0; i < 1500; ++i) text += String.fromCharCode(0xac00 + random(11172));
  for (let i = 0; i < 300; ++i) text += String.fromCodePoint(0x20000 + random(0xa6d0));
  return text + "ﷺ€😀\u0301e\u0301\n";
}
// Bytes that mean something here and there: each byte, runs of them, and escape sequences.
function sampleBytes(number) {
  const random = numbers(number);
  const all = Array.from({ length: 256 }, (_, byte) => byte);
  for (let i = 0; i < 3000; ++i) {
    const high = random(4) === 0 ? 0 : 0x80;
    all.push(random(5) === 0 ? random(256) : high + 0x20 + random(0x60));
  }
  return Uint8Array.from(all);
}
function inPieces(stream, input) {
  const random = numbers(input.length);
  const outputs = [];
  for (let at = 0; at < input.length; ) {
    const end = at + 1 + random(random(4) === 0 ? 900 : 5);
    outputs.push(stream.push(typeof input === "string" ? input.slice(at, end) : input.subarray(at, end)));
    at = end;
  }
  outputs.push(stream.finish());
  stream.close();
  return typeof outputs[0] === "string" ? outputs.join("") : new Uint8Array(Buffer.concat(outputs));
}
const fromUtf16 = (units) => units.toString("utf16le");
const options = { errors: "hex" };

test("decodes as the tool does, whole and in pieces", async () => {
  const readable = encodings().filter(({ canDecode }) => canDecode);
  assert.ok(readable.length > 500);
  await forEach(readable, async ({ number, name, canEncode }) => {
    const clean = canEncode ? encode(sampleText(), number, { errors: "drop" }) : new Uint8Array(0);
    for (const input of [clean, sampleBytes(number)]) {
      const expected = fromUtf16(await runTool(["-f", `${number}`, "-t", "utf-16le", "--on-error", "hex"], input));
      const text = decode(input, number, options);
      assert.ok(text.replace(/^\ufeff/, "") === expected.replace(/^\ufeff/, ""), `${name} is decoded otherwise`);
      assert.ok(inPieces(new Decoder(number, options), input) === text, `${name} in pieces`);
    }
  });
});

test("encodes as the tool does, whole and in pieces", async () => {
  const text = sampleText();
  const units = Buffer.from(text, "utf16le");
  await forEach(encodings().filter(({ canEncode }) => canEncode), async ({ number, name }) => {
    const expected = await runTool(["-f", "utf-16le", "-t", `${number}`, "--on-error", "hex"], units);
    const encoded = encode(text, number, options);
    assert.ok(Buffer.compare(encoded, expected) === 0, `${name} is encoded otherwise`);
    assert.ok(Buffer.compare(inPieces(new Encoder(number, options), text), encoded) === 0, `${name} in pieces`);
  });
});
