// Text that comes in pieces, web streams, and memory.
import assert from "node:assert/strict";
import { before, test } from "node:test";

import {
  ConversionError, Converter, Decoder, decoderStream, Encoder, encode, encoderStream, init,
} from "encconv";
import { bytes, hex } from "./support.mjs";

before(() => init());

test("cuts nothing that is one character", () => {
  const cases = [
    ["shift_jis", "93 fa 96 7b", ["", "日", "日", "日本"]],
    ["utf-8", "f0 9f 98 80", ["", "", "", "😀"]],
    ["utf-16be", "d8 3d de 00", ["", "", "", "😀"]],
    ["gb18030", "94 39 da 33", ["", "", "", "💩"]],
    ["iso-2022-jp", "1b 24 42 46 7c 1b 28 42", ["", "", "", "", "日", "日", "日", "日"]],
  ];
  for (const [encoding, digits, soFar] of cases) {
    const decoder = new Decoder(encoding);
    let text = "";
    const seen = Array.from(bytes(digits), (byte) => (text += decoder.push(Uint8Array.of(byte))));
    text += decoder.finish();
    assert.deepEqual(seen, soFar, encoding);
    assert.equal(text, soFar.at(-1), encoding);
  }
  const encoder = new Encoder("utf-8");
  const parts = ["a\ud83d", "\ude00", "b"].map((part) => hex(encoder.push(part)));
  assert.equal(parts.join("") + hex(encoder.finish()), "61f09f988062");
});

test("tells problems with their place in the whole text, and begins anew behind the end", () => {
  const problems = [];
  const options = { errors: "substitute=?", onProblem: (problem) => problems.push(problem) };
  const decoder = new Decoder("utf-8", options);
  const pieces = ["41 0a", "e4 bd", "41 ff", "42"].map((digits) => decoder.push(bytes(digits)));
  assert.equal(pieces.join("") + decoder.finish(), "A\n?A?B");
  assert.deepEqual(problems.map(({ offset, length, line, textOffset }) => [offset, length, line, textOffset]),
                   [[2, 2, 2, 2], [5, 1, 2, 4]]);
  assert.equal(decoder.problemCount, 2);
  assert.equal(decoder.push(bytes("fe")) + decoder.finish(), "?");
  assert.equal(problems.at(-1).offset, 0);
  decoder.close();
  assert.throws(() => decoder.push(bytes("41")), /closed/);

  problems.length = 0;
  const all = new Decoder("utf-8", { ...options, maxProblems: Infinity });
  all.push(bytes("ff fe 41"));
  assert.equal(problems.splice(0).length, 2);
  const limited = new Decoder("utf-8", { ...options, maxProblems: 3 });
  for (const digits of ["ff fe", "fd 41", "ff fe", "ff"]) limited.push(bytes(digits));
  limited.finish();
  assert.deepEqual([problems.map(({ offset }) => offset), limited.problemCount], [[0, 1, 2], 6]);
  limited.close();
});

test("goes on after a listener that throws, and lets one close the stream", () => {
  const fails = new Decoder("utf-8", { errors: "drop", onProblem: () => { throw new Error("listened"); } });
  fails.push(bytes("e4"));
  assert.throws(() => fails.finish(), /listened/);
  assert.equal(fails.push(bytes("62")) + fails.finish(), "b");

  const closes = new Decoder("utf-8", { errors: "drop", onProblem: () => closes.close() });
  assert.equal(closes.push(bytes("61 ff 62 ff 63")), "abc");
  assert.equal(closes.problemCount, 2);
  assert.throws(() => closes.finish(), /closed/);
  const large = new Decoder("utf-8", { errors: "drop", onProblem: () => large.close() });
  assert.throws(() => large.push(new Uint8Array(5 << 20).fill(0xff)), /closed/);

  const kinds = [];
  const stops = new Encoder("latin1", { errors: "translit,stop", onProblem: (...told) => kinds.push(told.length, told[0].kind) });
  assert.throws(() => stops.push("“a 日"), ConversionError);
  assert.deepEqual(kinds, [1, "approximated"]);
});

test("gives what came before the problem that stops it", () => {
  const decoder = new Decoder("utf-8");
  assert.equal(decoder.push(bytes("61 62")), "ab");
  assert.throws(() => decoder.push(bytes("63 ff 64")), (error) => {
    assert.ok(error instanceof ConversionError);
    assert.deepEqual([error.problem.offset, error.output], [3, "c"]);
    return true;
  });
});

async function through(pieces, stream) {
  const outputs = [];
  const source = new ReadableStream({
    start(controller) {
      for (const piece of pieces) controller.enqueue(piece);
      controller.close();
    },
  });
  for await (const output of source.pipeThrough(stream)) outputs.push(output);
  return outputs;
}

test("serves web streams", async () => {
  const text = (await through([bytes("93"), bytes("fa 96 7b")], decoderStream("shift_jis"))).join("");
  assert.equal(text, "日本");
  const outputs = await through(["日", "本"], encoderStream("iso-2022-jp"));
  assert.equal(hex(Buffer.concat(outputs)), "1b2442467c4b5c1b2842");
  await assert.rejects(through([bytes("ff")], decoderStream("utf-8")), ConversionError);
});

test("converts 100 MB in pieces without growing", () => {
  const line = "The quick brown fox; 日本語のテキスト、カタカナ、漢字。\r\n";
  const piece = encode(line.repeat(1500), "shift_jis");
  const rounds = Math.ceil(100e6 / piece.length);
  const converter = new Converter("shift_jis", "utf-8");
  const once = new TextEncoder().encode(line).length * 1500;
  let written = 0, before = 0;
  for (let i = 0; i < rounds; ++i) {
    written += converter.push(piece).length;
    if (i === Math.floor(rounds / 4)) before = process.memoryUsage().rss;
  }
  written += converter.finish().length;
  assert.equal(written, once * rounds);
  const grown = process.memoryUsage().rss - before;
  assert.ok(grown < 64e6, `memory grew by ${grown} bytes`);
});

test("forgets streams that nobody closed", async () => {
  // Each has memory of its own: thousands of them would not fit.
  for (let i = 0; i < 20_000; ++i) {
    new Decoder("shift_jis").push(bytes("93 fa"));
    if (i % 500 === 0) await new Promise((resolve) => setTimeout(resolve, 1));
  }
});
