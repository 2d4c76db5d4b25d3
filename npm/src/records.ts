// Records of mainframe files, and their fields.
import {
  core, kPieceSize, outputBytes, outputText, putBytes, registryOf, shrink, viewOf, withTexts, type Pointer,
} from "./core.js";
import { readyNumber } from "./encodings.js";
import { kStop, readyTreatment } from "./requests.js";
import type { Bytes, FieldOptions, RawRecord, RecordOptions, RecordProblem, Row, Value } from "./types.js";

/** A file or a record could not be read or written. */
export class RecordError extends Error {
  constructor(readonly problem: RecordProblem) {
    const field = problem.field === "" ? "" : `, field "${problem.field}"`;
    const bytes = problem.bytes.length === 0 ? "" : ` (${hexOf(problem.bytes)})`;
    super(`encconv: record ${problem.record}${field}, byte offset ${problem.offset}: ${problem.reason}${bytes}`);
    this.name = "RecordError";
  }
}

function hexOf(bytes: Uint8Array): string {
  return Array.from(bytes, (byte) => byte.toString(16).toUpperCase().padStart(2, "0")).join(" ");
}
function bytesOf(hex: string): Uint8Array {
  return Uint8Array.from(hex.match(/../g) ?? [], (byte) => parseInt(byte, 16));
}

type Listener = ((problem: RecordProblem) => void) | undefined;
type GivenProblem = Omit<RecordProblem, "bytes"> & { bytes: string };

// Without a listener, a problem throws where bad text would stop a conversion.
function tell(problems: GivenProblem[], listener: Listener, isStop: boolean): void {
  for (const given of problems) {
    const problem = { ...given, bytes: bytesOf(given.bytes) };
    if (listener !== undefined) listener(problem);
    else if (isStop) throw new RecordError(problem);
  }
}
function stops(errors: string): boolean {
  return !/(^|,)(drop|substitute|hex|alternate|raw)/.test(errors);
}

// ---- Records as they are. ----

/** The records of a file, without their descriptor words. */
export function rawRecords(bytes: Bytes, options: RecordOptions): RawRecord[] {
  const reader = withTexts([options.format], core().makeRawReader);
  if (reader === 0) throw new RangeError(`encconv: ${outputText()}`);
  const records: RawRecord[] = [];
  try {
    const all = viewOf(bytes);
    for (let at = 0; ; at += kPieceSize) {
      const piece = all.subarray(at, at + kPieceSize);
      const isLast = at + kPieceSize >= all.length;
      core().pushRecords(reader, putBytes(piece), piece.length, isLast ? 1 : 0);
      takeRecords(records, options.onProblem);
      if (isLast) break;
    }
  } finally {
    core().deleteRawReader(reader);
    shrink();
  }
  return records;
}
function takeRecords(records: RawRecord[], listener: Listener): void {
  const [text, data] = splitReply();
  const reply = JSON.parse(text) as { records: [number, number, number][]; problems: GivenProblem[] };
  let begin = 0;
  for (const [number, offset, length] of reply.records) {
    records.push({ number, offset, data: data.slice(begin, begin + length) });
    begin += length;
  }
  tell(reply.problems, listener, true);
}
// A reply of text, NUL and bytes.
function splitReply(): [string, Uint8Array] {
  const all = outputBytes();
  const end = all.indexOf(0);
  return [new TextDecoder().decode(all.subarray(0, end)), all.subarray(end + 1)];
}

// ---- Rows of fields. ----

const kEncoding = "IBM037";

interface Column {
  name: string;
  isNumber: boolean;
  scale: number;
}
function columnsOf(fields: string): Column[] {
  if (withTexts([fields], core().describeFields) === 0) throw new RangeError(`encconv: ${outputText()}`);
  return (JSON.parse(outputText()) as [string, boolean, number][]).map(([name, isNumber, scale]) => ({
    name,
    isNumber,
    scale,
  }));
}
function numberOf(digits: string): number | bigint {
  const number = Number(digits);
  return Number.isSafeInteger(number) ? number : BigInt(digits);
}

// Readers whose object was collected.
const collected = registryOf((reader) => core().deleteRowReader(reader));

/** Reads rows from records that come in pieces. */
export class RowReader {
  readonly #integers: string[];
  readonly #options: FieldOptions;
  readonly #isStop: boolean;
  #reader: Pointer = 0;

  constructor(options: FieldOptions) {
    this.#options = options;
    const errors = options.errors ?? kStop;
    this.#isStop = stops(errors);
    const encoding = readyNumber(options.encoding ?? kEncoding);
    readyTreatment(errors);
    this.#integers = columnsOf(options.fields)
      .filter(({ isNumber, scale }) => isNumber && scale <= 0)
      .map(({ name }) => name);
    const trim = options.trim === false ? 0 : 1;
    this.#reader = withTexts([options.format, options.fields, errors], (format, formatSize, fields, fieldsSize, error, errorSize) =>
      core().makeRowReader(format!, formatSize!, fields!, fieldsSize!, encoding, error!, errorSize!, trim),
    );
    if (this.#reader === 0) throw new RangeError(`encconv: ${outputText()}`);
    collected?.register(this, this.#reader, this);
  }

  /** The rows of the records that are complete with this piece. */
  push(piece: Bytes): Row[] {
    return this.#push(viewOf(piece), false);
  }
  /** What is left. */
  finish(): Row[] {
    return this.#push(new Uint8Array(0), true);
  }
  /** Gives its memory back at once; without it, once the object is collected. */
  close(): void {
    if (this.#reader === 0) return;
    collected?.unregister(this);
    core().deleteRowReader(this.#reader);
    this.#reader = 0;
  }

  #push(bytes: Uint8Array, isEnd: boolean): Row[] {
    const rows: Row[] = [];
    for (let at = 0; ; at += kPieceSize) {
      // A listener may have closed it between two pieces.
      if (this.#reader === 0) throw new Error("encconv: the reader is closed");
      const piece = bytes.subarray(at, at + kPieceSize);
      const isLast = at + kPieceSize >= bytes.length;
      core().pushRows(this.#reader, putBytes(piece), piece.length, isEnd && isLast ? 1 : 0);
      const reply = JSON.parse(outputText()) as { rows: Row[]; problems: GivenProblem[] };
      for (const row of reply.rows) rows.push(this.#withNumbers(row));
      tell(reply.problems, this.#options.onProblem, this.#isStop);
      if (isLast) return rows;
    }
  }
  // Numbers come as their digits.
  #withNumbers(row: Row): Row {
    for (const name of this.#integers) {
      const digits = row[name];
      if (typeof digits === "string") row[name] = numberOf(digits);
    }
    return row;
  }
}

/** The fields of all records, as objects by their names. */
export function records(bytes: Bytes, options: FieldOptions): Row[] {
  const reader = new RowReader(options);
  try {
    const rows = reader.push(bytes);
    for (const row of reader.finish()) rows.push(row);
    return rows;
  } finally {
    reader.close();
    shrink();
  }
}

/** A record for each row. */
export function writeRecords(rows: Iterable<Row>, options: FieldOptions): Uint8Array {
  const errors = options.errors ?? kStop;
  const encoding = readyNumber(options.encoding ?? kEncoding);
  readyTreatment(errors);
  const names = new Set(columnsOf(options.fields).map(({ name }) => name));
  const textOf = (_: string, value: Value) =>
    typeof value === "number" || typeof value === "bigint" ? String(value) : value;
  const lines: string[] = [];
  for (const row of rows) {
    const unknown = Object.keys(row).find((name) => !names.has(name));
    if (unknown !== undefined) throw new RangeError(`encconv: row ${lines.length + 1}: no field is called "${unknown}"`);
    lines.push(JSON.stringify(row, textOf));
  }
  const isWritten = withTexts([options.format, options.fields, errors, lines.join("\n")], (...places) => {
    const [format, formatSize, fields, fieldsSize, error, errorSize, text, textSize] = places as
      [number, number, number, number, number, number, number, number];
    return core().writeRows(format, formatSize, fields, fieldsSize, encoding, error, errorSize, text, textSize);
  });
  if (isWritten === 0) throw new RangeError(`encconv: ${outputText()}`);
  const [problems, file] = splitReply();
  shrink();
  tell(JSON.parse(problems) as GivenProblem[], options.onProblem, stops(errors));
  return file;
}
