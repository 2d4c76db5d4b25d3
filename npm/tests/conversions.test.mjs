// Whole texts: treatments, places of errors, marks, and what is refused.
import assert from "node:assert/strict";
import { before, test } from "node:test";

import {
  canEncode, ConversionError, convert, convertReport, decode, decodeReport, encode, Encoder, encodeReport,
  findEncoding, encodings, init, trace,
} from "encconv";
import { bytes, hex, runTool } from "./support.mjs";

before(() => init());

test("reads and writes what is known by hand", () => {
  const cases = [
    ["windows-1251", "cf f0 e8 e2 e5 f2", "Привет"],
    ["Shift_JIS", "93 fa 96 7b 8c ea 20 c3 bd c4", "日本語 ﾃｽﾄ"],
    ["GB18030", "a1 a4 82 35 f4 33 94 39 da 33", "·ꔅ💩"],
    ["EUC-TW", "a4 a1 8e a2 a1 a1", "一乂"],
    ["IBM037", "c8 85 93 93 96 6b 40 e6 96 99 93 84", "Hello, World"],
    ["ISO-2022-JP", "1b 24 42 46 7c 1b 28 42 0a", "日\n"],
    ["UTF-7", "2b 41 4f 51 2d", "ä"],
    ["IBM930", "c1 0e 45 a0 0f c2", "A日B"],
    [1252, "80 9f", "€Ÿ"],
    ["utf-8", "61 f0 9f 98 80", "a😀"],
  ];
  for (const [encoding, digits, text] of cases) {
    if (encoding !== "EUC-TW" && encoding !== "IBM930" && encoding !== "GB18030") {
      assert.equal(hex(encode(text, encoding)), digits.replaceAll(" ", ""), `${encoding}`);
    }
    assert.equal(decode(encode(text, encoding), encoding), text, `${encoding}`);
    if (encoding !== "EUC-TW" && encoding !== "IBM930" && encoding !== "GB18030") assert.equal(decode(bytes(digits), encoding), text);
  }
});

test("says where text is malformed, in bytes, lines and characters", () => {
  const { text, problems, problemCount, complete } = decodeReport(
    bytes("41 42 0a 82 a0 81 0a 43 81 20 44"), "shift_jis", { errors: "hex" });
  assert.equal(text, "AB\nあ<0x81>\nC<0x81> D");
  assert.equal(problemCount, 2);
  assert.equal(complete, true);
  assert.deepEqual(
    problems.map(({ kind, offset, length, line, textOffset, bytes }) => [kind, offset, length, line, textOffset, hex(bytes)]),
    [["malformed", 5, 1, 2, 4, "81"], ["malformed", 8, 1, 3, 12, "81"]]);
  for (const { textOffset } of problems) assert.equal(text[textOffset], "<");
  assert.equal(decodeReport(bytes("ff ff ff 41"), "utf-8", { maxProblems: 2 }).problems.length, 2);
  assert.equal(decodeReport(bytes("ff ff ff 41"), "utf-8", { maxProblems: 2 }).problemCount, 3);
});

test("tells places beyond the first piece of a long text", () => {
  const text = "x".repeat(3_000_000) + "\n";
  const input = new Uint8Array(3_000_003);
  input.set(new TextEncoder().encode(text));
  input.set([0x81, 0x20], 3_000_001);
  const { problems } = decodeReport(input, "shift_jis", { errors: "drop" });
  assert.deepEqual([problems[0].offset, problems[0].line, problems[0].textOffset], [3_000_001, 2, 3_000_001]);
  const report = encodeReport(`${text}😀`, "latin1");
  assert.deepEqual([report.problems[0].offset, report.problems[0].length, report.problems[0].textOffset],
                   [3_000_001, 2, 3_000_001]);
});

test("stops at what cannot be converted, and says why", () => {
  const cases = [
    [() => decode(bytes("61 0a e4"), "utf-8"), "offset 2, line 2: E4 is no text in utf-8", "a\n"],
    [() => encode("a😀", "latin1"), 'offset 1, line 1: latin1 lacks U+1F600 "😀"', bytes("61")],
    [() => encode("ab\ud800c", "utf-8"), "offset 2, line 1: half of a surrogate pair stands alone", bytes("61 62")],
    [() => convert(bytes("41 80"), "cp1252", "cp437"), 'offset 1, line 1: cp437 lacks U+20AC "€"', bytes("41")],
  ];
  for (const [call, message, output] of cases) {
    assert.throws(call, (error) => {
      assert.ok(error instanceof ConversionError);
      assert.equal(error.message, `encconv: ${message}`);
      assert.deepEqual(error.output, output);
      return true;
    });
  }
  // What another character was written for does not stop it, and is not taken for what does.
  const text = "\u00a0😀";
  assert.throws(() => encode(text, "x-cp20269"), ({ problem }) => problem.character === "😀" || problem.character === "\u00a0");
  assert.equal(decode(encode("fine", "ascii"), "ascii"), "fine");
});

test("treats text as asked", () => {
  const cases = [
    ["drop", "41 42"], ["substitute", "41 3f 42"], ["substitute=(x)", "41 28 78 29 42"], ["substitute=0x1A", "41 1a 42"],
    ["hex", hex(Buffer.from("A&#x010D;B"))], ["best-fit,hex", "41 63 42"], ["translit,drop", "41 63 42"],
  ];
  for (const [errors, digits] of cases) {
    assert.equal(hex(encode("AčB", "cp1252", { errors })), digits.replaceAll(" ", ""), errors);
  }
  assert.equal(decode(bytes("41 ff 42"), "utf-8", { errors: "alternate=cp1251" }), "AяB");
  assert.equal(hex(encode("e\u0301", "latin1", { errors: "compose" })), "e9");
  const { problems, approximationCount, problemCount } = encodeReport("č", "cp1252", { errors: "translit" });
  assert.deepEqual([problems[0].kind, problems[0].written, approximationCount, problemCount], ["approximated", "c", 1, 0]);
  assert.equal(canEncode("Grüße", "latin1"), true);
  assert.equal(canEncode("Grüße č", "latin1"), false);
});

test("takes marks off what is decoded, and writes them where asked", async () => {
  assert.equal(decode(bytes("ef bb bf 61"), "utf-8"), "a");
  assert.equal(decode(bytes("fe ff 00 61"), "utf-16"), "a");
  assert.equal(decode(bytes("ff fe 61 00"), "utf-16le"), "a");
  assert.equal(hex(encode("\ufeffa", "utf-8")), "efbbbf61");
  assert.equal(hex(encode("\ufeffa", "utf-16le")), "fffe6100");
  assert.equal(hex(encode("\ufffea", "utf-16le")), "feff6100");
  assert.equal(hex(encode("a", "utf-8", { byteOrderMark: true })), "efbbbf61");
  assert.equal(hex(encode("a", "utf-16be", { byteOrderMark: true })), "feff0061");
  const marked = encode("a", "utf-16");
  assert.equal(hex(marked), hex(await runTool(["-f", "utf-8", "-t", "utf-16"], Buffer.from("a"))));
  assert.equal(hex(encodeReport("\ufeff😀", "latin1").problems[0].bytes), "fffe");
  assert.deepEqual(encodeReport("\ufeff😀", "latin1").problems.map(({ offset }) => offset), [0, 1]);
});

test("takes bytes from any view, and leaves them as they are", () => {
  const all = bytes("00 d0 af 00");
  const part = all.subarray(1, 3);
  assert.equal(decode(part, "utf-8"), "Я");
  assert.equal(decode(new DataView(all.buffer, 1, 2), "utf-8"), "Я");
  assert.equal(decode(all.slice(1, 3).buffer, "utf-8"), "Я");
  const encoded = encode("Я", "utf-8");
  encode("other", "utf-8");
  assert.equal(hex(encoded), "d0af");
  assert.equal(decode(new Uint8Array(0), "gb18030"), "");
  assert.equal(encode("", "iso-2022-kr").length, 0 + encode("", "iso-2022-kr").length);
});

test("converts between encodings", () => {
  assert.equal(hex(convert(bytes("c1 c2"), "ibm037", "utf-16be")), "00410042");
  const report = convertReport(bytes("41 80 42"), "cp1252", "ascii", { errors: "drop" });
  assert.deepEqual([hex(report.bytes), report.problems[0].offset, report.problems[0].character], ["4142", 1, "€"]);
});

test("refuses with a clear message", () => {
  const cases = [
    [() => decode(bytes("41"), "klingon"), RangeError, /not known: klingon/],
    [() => encode("a", "utf-9"), RangeError, /not known: utf-9/],
    [() => decode(bytes("41"), "utf-8", { errors: "ignore" }), RangeError, /errors is not known: ignore/],
    [() => decode(bytes("41"), "utf-8", { errors: "alternate=klingon" }), RangeError, /alternate=klingon/],
    [() => encode("a", "ascii", { errors: "substitute=€" }), RangeError, /ascii lacks the substitute/],
    [() => decode("text", "utf-8"), TypeError, /bytes must be/],
    [() => encode(bytes("41"), "cp1252"), TypeError, /text must be/],
    [() => encodeReport(bytes("41"), "cp1252"), TypeError, /text must be/],
    [() => canEncode(undefined, "cp1252"), TypeError, /text must be/],
    [() => new Encoder("cp1252").push(bytes("41")), TypeError, /text must be/],
    [() => trace(bytes("41")), TypeError, /text must be/],
  ];
  for (const [call, kind, message] of cases) {
    assert.throws(call, (error) => error instanceof kind && message.test(error.message), String(message));
  }
});

test("knows the encodings as the tool does", async () => {
  const listed = JSON.parse(await runTool(["--list", "--json"], "").then(String).catch(() => "null"));
  assert.ok(encodings().length > 530);
  encodings().reverse();
  assert.ok(encodings()[0].number < encodings()[1].number);
  if (Array.isArray(listed)) assert.equal(encodings().length, listed.length);
  assert.equal(findEncoding("cp-437").title, "DOS, United States");
  assert.equal(findEncoding(932).name, "Shift_JIS");
  assert.equal(findEncoding("klingon"), null);
  assert.ok(findEncoding("ebcdic-cp-us").aliases.length > 3);
});

test("takes no other way for clean UTF-16, short texts and ASCII than for the rest", () => {
  const pair = "\ud83d\ude00";
  const texts = ["", "a", "\ufeffa", "\ufffea", "é".repeat(129), "\ud800", `${"a".repeat(300)}\udc00`, `${"x".repeat(65535)}${pair}y`,
    `${"x".repeat(65536)}${pair}`, `${"字".repeat(200)}\ud83d`, `${"a".repeat(2000)}é`, "日本語\u0000", "\u007f".repeat(5000),
    "“Ñandú” für 5 €, Œuvre".repeat(2), "Съешь ещё этих мягких булок\u0098".repeat(2), "ไทย".repeat(9)];
  const outcomeOf = (call) => {
    try {
      return call();
    } catch (error) {
      return [error.message, error.problem, error.output];
    }
  };
  for (const encoding of ["utf-16le", "utf-8", "utf-16be", "euc-jp", "iso-2022-jp", "gb18030", "utf-7",
    "windows-1251", "windows-1252", "iso-8859-1", "windows-1255", "windows-874", "koi8-r", "cp037"]) {
    for (const [i, text] of texts.entries()) {
      const bytes = outcomeOf(() => encode(text, encoding, { errors: "stop" }));
      assert.deepEqual(outcomeOf(() => encode(text, encoding)), bytes, `${encoding} ${i}`);
      const utf16 = new Uint8Array(Uint16Array.from({ length: text.length }, (_, at) => text.charCodeAt(at)).buffer);
      for (const some of [utf16, utf16.subarray(1), bytes instanceof Uint8Array ? bytes : utf16]) {
        const decoded = outcomeOf(() => decode(some, encoding, { errors: "stop" }));
        assert.deepEqual(outcomeOf(() => decode(some, encoding)), decoded, `${encoding} ${i}`);
      }
    }
  }
});
