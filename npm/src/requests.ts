// What the core is asked for, piece by piece, and what it answers.
import {
  core, memoryView, outputBytes, outputUnits, putBytes, putUnits, withTexts, type Pointer,
} from "./core.js";
import { readyNumber } from "./encodings.js";
import type { ConvertOptions, EncodingName, Problem } from "./types.js";

/** Text could not be converted; `output` is what came before. */
export class ConversionError extends Error {
  constructor(
    readonly problem: Problem,
    what: string,
    readonly output: string | Uint8Array,
  ) {
    super(`encconv: offset ${problem.offset}, line ${problem.line}: ${what}`);
    this.name = "ConversionError";
  }
}

export const kUtf16 = 1200;
export const kWriteMark = 1, kToText = 2, kFromText = 4;
// More than there can be; the core takes nothing larger, such as Infinity.
export const kAllProblems = 0xffffffff;
export const kStop = "stop";
export const enum Status { kGood, kStopped, kNoDecoder, kNoEncoder, kNoAlternate, kBadSubstitute }

// ---- What the core is asked for. ----

interface Treatment {
  number: number;
  /** The encoding that it needs besides; 0 for none. */
  alternate: number;
}
const treatments = new Map<string, Treatment>();
function treatmentOf(errors: string): Treatment {
  const known = treatments.get(errors);
  if (known !== undefined) return known;
  const number = withTexts([errors], core().findTreatment);
  if (number < 0) {
    throw new RangeError(
      `encconv: errors is not known: ${errors} (stop, drop, substitute, substitute=TEXT, hex, ` +
        "alternate=ENCODING or raw; in front of it compose, best-fit or translit)",
    );
  }
  const treatment = { number, alternate: core().alternateOf(number) };
  treatments.set(errors, treatment);
  return treatment;
}

// A conversion as it was asked for.
export interface Request {
  from: EncodingName;
  to: EncodingName;
  flags: number;
  errors: string;
  maxProblems: number;
}
export function requestOf(from: EncodingName, to: EncodingName, flags: number, options: ConvertOptions,
                   errors: string, maxProblems: number): Request {
  return {
    from,
    to,
    flags: options.byteOrderMark === true ? flags | kWriteMark : flags,
    errors: options.errors ?? errors,
    maxProblems: Math.min(maxProblems, kAllProblems),
  };
}

/** The number of a treatment whose encoding, if it needs one, is ready. */
export function readyTreatment(errors: string): number {
  const { number, alternate } = treatmentOf(errors);
  if (alternate !== 0) readyNumber(alternate);
  return number;
}
export function begin(conversion: Pointer, request: Request): void {
  const { from, to, errors } = request;
  const source = readyNumber(from), target = readyNumber(to), treatment = readyTreatment(errors);
  const status = core().beginConversion(conversion, source, target, treatment,
                                        request.flags, request.maxProblems);
  if (status !== Status.kGood) throw failureOf(status, request);
}
export function failureOf(status: number, { from, to, errors }: Request): Error {
  switch (status) {
    case Status.kNoDecoder:
      return new RangeError(`encconv: the encoding cannot be decoded: ${from}`);
    case Status.kNoEncoder:
      return new RangeError(`encconv: the encoding cannot be encoded: ${to}`);
    case Status.kNoAlternate:
      return new RangeError(`encconv: the alternate encoding is not known: ${errors}`);
    case Status.kBadSubstitute:
      return new RangeError(`encconv: ${to} lacks the substitute: ${errors}`);
    default:
      return new RangeError("encconv: out of memory");
  }
}

// ---- Problems. ----

const kRowSize = 104;
const kKinds = ["malformed", "unencodable", "approximated"] as const;
const utf8Decoder = new TextDecoder();

export function readProblems(conversion: Pointer): Problem[] {
  const count = core().problemRowCount(conversion);
  if (count === 0) return [];
  const memory = memoryView();
  const begin = core().problemRows(conversion) >>> 0;
  const problems: Problem[] = [];
  for (let at = begin; at < begin + count * kRowSize; at += kRowSize) {
    const row = new DataView(memory.buffer, at, kRowSize);
    const codePoint = row.getInt32(28, true);
    const writtenEnd = memory.indexOf(0, at + 56);
    problems.push({
      kind: kKinds[row.getUint32(32, true)] ?? "malformed",
      offset: row.getFloat64(0, true),
      length: row.getUint32(24, true),
      line: row.getFloat64(16, true),
      textOffset: row.getFloat64(8, true),
      bytes: memory.slice(at + 40, at + 40 + row.getUint32(36, true)),
      character: codePoint < 0 ? null : String.fromCodePoint(codePoint),
      written: utf8Decoder.decode(memory.slice(at + 56, writtenEnd)),
    });
  }
  core().forgetProblems(conversion);
  return problems;
}

function hex(number: number, digits: number): string {
  return number.toString(16).toUpperCase().padStart(digits, "0");
}
export function describe({ kind, bytes, character }: Problem, { from, to, flags }: Request): string {
  if (kind !== "malformed") {
    const codePoint = `U+${hex(character?.codePointAt(0) ?? 0, 4)}`;
    return `${to} lacks ${codePoint} ${JSON.stringify(character)}`;
  }
  if ((flags & kFromText) !== 0) return "half of a surrogate pair stands alone";
  return `${Array.from(bytes, (byte) => hex(byte, 2)).join(" ")} is no text in ${from}`;
}

// ---- Pieces. ----

// One side is a string where flags say so, otherwise bytes.
export type Side = string | Uint8Array;
export function pieceOf(input: Side, begin: number, end: number): Side {
  return typeof input === "string" ? input.slice(begin, end) : input.subarray(begin, end);
}
export function push(conversion: Pointer, piece: Side, isLast: boolean): number {
  if (typeof piece === "string") {
    return core().pushPiece(conversion, putUnits(piece), piece.length * 2, isLast ? 1 : 0);
  }
  return core().pushPiece(conversion, putBytes(piece), piece.length, isLast ? 1 : 0);
}
export function takeOutput(flags: number): Side {
  return (flags & kToText) !== 0 ? outputUnits() : outputBytes();
}

function joinText(outputs: Side[]): string {
  return outputs.length === 1 ? (outputs[0] as string) : outputs.join("");
}
function joinBytes(outputs: Side[]): Uint8Array {
  if (outputs.length === 1) return outputs[0] as Uint8Array;
  const all = new Uint8Array(outputs.reduce((sum, output) => sum + output.length, 0));
  let at = 0;
  for (const output of outputs) {
    all.set(output as Uint8Array, at);
    at += output.length;
  }
  return all;
}
export function join(outputs: Side[], flags: number): Side {
  return (flags & kToText) !== 0 ? joinText(outputs) : joinBytes(outputs);
}
