// Records of mainframe files and their fields.
import assert from "node:assert/strict";
import { before, test } from "node:test";

import { init, rawRecords, RecordError, records, RowReader, writeRecords } from "encconv";
import { bytes, hex, runTool } from "./support.mjs";

before(() => init());

const fields = "id 1 3 zoned:unsigned, name 4 6 text, balance 10 3 packed:scale=2, big 13 8 binary";
const rows = [
  { id: 7, name: "Müller", balance: "12.34", big: -2 },
  { id: 999, name: "Ö", balance: "-0.05", big: 9007199254740993n },
  { id: 0, name: "", balance: "0.00", big: 0 },
];

test("writes rows and reads them again, whole and in pieces", () => {
  for (const format of ["fixed:20", "rdw", "bdw"]) {
    const options = { format, fields, encoding: "ibm273" };
    const file = writeRecords(rows, options);
    assert.deepEqual(records(file, options), rows, format);
    const reader = new RowReader(options);
    const read = Array.from(file, (byte) => reader.push(Uint8Array.of(byte))).flat();
    assert.deepEqual([...read, ...reader.finish()], rows, format);
    reader.close();
  }
});

test("reads what the tool reads", async () => {
  const file = writeRecords(rows, { format: "rdw", fields, encoding: "ibm273" });
  const tool = await runTool(
    ["-f", "ibm273", "-t", "utf-8", "--records", "rdw", "--fields", fields, "--as", "json", "--trim"], file);
  const ours = records(file, { format: "rdw", fields, encoding: "ibm273" });
  const lines = String(tool).trimEnd().split("\n").map((line) => JSON.parse(line));
  assert.deepEqual(lines.map(({ id, name, balance }) => [id, name, balance]),
                   ours.map(({ id, name, balance }) => [id, name, Number(balance)]));
});

test("gives records as they are", () => {
  const found = rawRecords(bytes("00 06 00 00 c1 c2 00 05 00 00 c3"), { format: "rdw" });
  assert.deepEqual(found.map(({ number, offset, data }) => [number, offset, hex(data)]), [[1, 4, "c1c2"], [2, 10, "c3"]]);
});

test("reads the tables of an encoding that only a treatment names", () => {
  const options = { format: "fixed:4", fields: "name 1 4 text", encoding: "windows-1252", errors: "alternate=euc-tw" };
  assert.equal(hex(writeRecords([{ name: "一" }], options)), "c4a12020");
});

test("says which record and field is damaged", () => {
  const layout = "id 1 2 packed, name 3 2 text";
  const damaged = bytes("01 2c c1 c2 0f fc c3 c4 01 3c c5 c6");
  const options = { format: "fixed:4", fields: layout };
  assert.throws(() => records(damaged, options), (error) => {
    assert.ok(error instanceof RecordError);
    assert.match(error.message, /record 2, field "id", byte offset 4: .*\(0F FC\)/);
    return true;
  });
  const problems = [];
  const read = records(damaged, { ...options, errors: "substitute", onProblem: (problem) => problems.push(problem) });
  assert.deepEqual(read, [{ id: 12, name: "AB" }, { id: null, name: "CD" }, { id: 13, name: "EF" }]);
  assert.deepEqual(problems.map(({ kind, record, offset, field }) => [kind, record, offset, field]), [["number", 2, 4, "id"]]);
  assert.throws(() => rawRecords(bytes("00 09 00 00 c1"), { format: "rdw" }), /record 1, byte offset 4: the input ends within a record: 1 byte of 5/);
  assert.throws(() => writeRecords([{ id: 1234567, name: "x" }], options), RecordError);
});

test("refuses what is no layout", () => {
  const cases = [
    [() => records(bytes(""), { format: "vb", fields }), /format is not known: vb/],
    [() => records(bytes(""), { format: "rdw", fields: "id 1" }), /id/],
    [() => records(bytes(""), { format: "rdw", fields, encoding: "klingon" }), /klingon/],
    [() => writeRecords([{ other: 1 }], { format: "rdw", fields }), /row 1: no field is called "other"/],
  ];
  for (const [call, message] of cases) assert.throws(call, { name: "RangeError", message });
});
