// Whole texts and bytes from one encoding to another.
import {
  asciiText, core, decodeShort, encodeShort, kFewBytes, kPieceSize, kShortBytes, putBytes, readsAscii, shrink,
  stringOfUtf16, textOf, utf16OfString, viewOf, type Pointer,
} from "./core.js";
import { findNumber, readyNumber } from "./encodings.js";
import {
  begin, ConversionError, describe, failureOf, join, kFromText, kStop, kToText, kUtf16, pieceOf, push,
  readProblems, requestOf, Status, takeOutput, type Request, type Side,
} from "./requests.js";
import type {
  Bytes, ConvertOptions, DecodeReport, EncodeReport, EncodingName, Problem, ReportOptions,
} from "./types.js";

interface Outcome {
  outputs: Side[];
  isStopped: boolean;
  conversion: Pointer;
}

// All whole texts go through this one.
let whole: Pointer = 0;

// The text of bytes that are ASCII, where the encoding has that; undefined for any others.
function asciiOf(piece: Side, { from, flags }: Request): string | undefined {
  if (flags !== kToText || typeof piece === "string" || !readsAscii(findNumber(from))) return undefined;
  const place = putBytes(piece);
  return core().isAscii(place, piece.length) !== 0 ? asciiText(place, piece.length) : undefined;
}

function run(input: Side, request: Request): Outcome {
  if (whole === 0) whole = core().makeConversion();
  begin(whole, request);
  const outputs: Side[] = [];
  let status = Status.kGood as number;
  for (let at = 0; ; at += kPieceSize) {
    const isLast = input.length - at <= kPieceSize;
    const piece = at === 0 && isLast ? input : pieceOf(input, at, at + kPieceSize);
    const ascii = at === 0 && isLast ? asciiOf(piece, request) : undefined;
    if (ascii !== undefined) {
      outputs.push(ascii);
      break;
    }
    status = push(whole, piece, isLast);
    outputs.push(takeOutput(request.flags));
    if (isLast || status !== Status.kGood) break;
  }
  shrink();
  if (status !== Status.kGood && status !== Status.kStopped) throw failureOf(status, request);
  return { outputs, isStopped: status === Status.kStopped, conversion: whole };
}

function convertWhole(input: Side, request: Request): Side {
  const { outputs, isStopped, conversion } = run(input, request);
  const output = join(outputs, request.flags);
  if (!isStopped) return output;
  // What stopped it is the last that was told.
  const problem = readProblems(conversion).pop() as Problem;
  throw new ConversionError(problem, describe(problem, request), output);
}

function reportWhole(input: Side, request: Request): { output: Side; report: Omit<DecodeReport, "text"> } {
  const { outputs, isStopped, conversion } = run(input, request);
  return {
    output: join(outputs, request.flags),
    report: {
      complete: !isStopped,
      problems: readProblems(conversion),
      problemCount: core().problemCount(conversion),
      approximationCount: core().approximationCount(conversion),
    },
  };
}

const kMaxProblems = 1000;
const kSubstitute = "substitute";

const kUtf8 = 65001;
const kNoOptions: ConvertOptions = {};
const utf8Encoder = new TextEncoder();
// Newer engines tell whether a string has halves of surrogate pairs that stand alone.
type MaybeChecked = string & { isWellFormed?: () => boolean };

// Whether a few characters from all over a text are ASCII.
function seemsAscii(text: string): boolean {
  const kSamples = 16;
  for (let i = 0; i < kSamples; ++i) {
    if (text.charCodeAt(Math.floor((i * text.length) / kSamples)) >= 0x80) return false;
  }
  return true;
}
// The bytes of a clean text by the shortest way; undefined where there is none.
function encodeClean(text: string, to: number): Uint8Array | undefined {
  const isShort = 2 * text.length <= kShortBytes;
  // The engine writes UTF-8 faster where it is short or ASCII, the core what else is long.
  if (to === kUtf8 && (isShort || seemsAscii(text)) && (text as MaybeChecked).isWellFormed?.() === true) {
    return utf8Encoder.encode(text);
  }
  if (isShort) return encodeShort(text, kUtf16, to);
  return to === kUtf16 ? utf16OfString(text) : undefined;
}

// An engine may lack what it takes.
function strictDecoder(label: string): TextDecoder | undefined {
  try {
    return new TextDecoder(label, { fatal: true });
  } catch {
    return undefined;
  }
}
const utf8Strict = strictDecoder("utf-8"), utf16Strict = strictDecoder("utf-16le");

// The engine's decoders of single bytes, by number, where they read each byte as the core does.
const alikeDecoders = new Map<number, TextDecoder | undefined>();
function alikeDecoder(encoding: EncodingName, from: number): TextDecoder | undefined {
  let decoder = alikeDecoders.get(from);
  if (decoder !== undefined || alikeDecoders.has(from)) return decoder;
  const all = Uint8Array.from({ length: 256 }, (_, byte) => byte);
  try {
    decoder = strictDecoder(String(encoding));
    if (decoder?.decode(all).length !== 256 || decoder.decode(all) !== decodeShort(all, from, kUtf16)) {
      decoder = undefined;
    }
  } catch {
    decoder = undefined;
  }
  alikeDecoders.set(from, decoder);
  return decoder;
}

// The text of short bytes that are clean; undefined for any others. The engine reads Unicode, and more
// than a few single bytes, in less time than it takes to hand them to the core.
function decodeClean(bytes: Uint8Array, encoding: EncodingName, from: number): string | undefined {
  const isSwapped = bytes[0] === 0xfe && bytes[1] === 0xff; // a mark to the core, no character
  let strict = from === kUtf8 ? utf8Strict : from === kUtf16 && !isSwapped ? utf16Strict : undefined;
  if (from !== kUtf8 && from !== kUtf16 && bytes.length > kFewBytes) strict = alikeDecoder(encoding, from);
  if (strict === undefined) return decodeShort(bytes, from, kUtf16);
  try {
    return strict.decode(bytes);
  } catch {
    return undefined;
  }
}

/** The text of bytes. */
export function decode(bytes: Bytes, encoding: EncodingName, options: ConvertOptions = kNoOptions): string {
  const input = viewOf(bytes);
  if (options === kNoOptions) {
    const from = readyNumber(encoding);
    let text: string | undefined;
    if (input.length <= kShortBytes) text = decodeClean(input, encoding, from);
    else if (from === kUtf16) text = stringOfUtf16(input);
    if (text !== undefined) return text;
  }
  return convertWhole(input, requestOf(encoding, kUtf16, kToText, options, kStop, 1)) as string;
}
/** The same, with the place of everything that was malformed. */
export function decodeReport(bytes: Bytes, encoding: EncodingName, options: ReportOptions = {}): DecodeReport {
  const most = options.maxProblems ?? kMaxProblems;
  const request = requestOf(encoding, kUtf16, kToText, options, kSubstitute, most);
  const { output, report } = reportWhole(viewOf(bytes), request);
  return { text: output as string, ...report };
}
/** A text in an encoding. */
export function encode(text: string, encoding: EncodingName, options: ConvertOptions = kNoOptions): Uint8Array {
  if (options === kNoOptions) {
    const bytes = encodeClean(textOf(text), readyNumber(encoding));
    if (bytes !== undefined) return bytes;
  }
  return convertWhole(textOf(text), requestOf(kUtf16, encoding, kFromText, options, kStop, 1)) as Uint8Array;
}
/** The same, with the place of everything that the encoding lacks. */
export function encodeReport(text: string, encoding: EncodingName, options: ReportOptions = {}): EncodeReport {
  const most = options.maxProblems ?? kMaxProblems;
  const request = requestOf(kUtf16, encoding, kFromText, options, kSubstitute, most);
  const { output, report } = reportWhole(textOf(text), request);
  return { bytes: output as Uint8Array, ...report };
}
/** Whether an encoding has all characters of a text. */
export function canEncode(text: string, encoding: EncodingName): boolean {
  const { conversion, isStopped } = run(textOf(text), requestOf(kUtf16, encoding, kFromText, {}, kStop, 0));
  return !isStopped && core().approximationCount(conversion) === 0;
}
/** Bytes of one encoding in another. */
export function convert(bytes: Bytes, from: EncodingName, to: EncodingName, options: ConvertOptions = {}): Uint8Array {
  return convertWhole(viewOf(bytes), requestOf(from, to, 0, options, kStop, 1)) as Uint8Array;
}
/** The same, with the place of everything that could not be converted. */
export function convertReport(bytes: Bytes, from: EncodingName, to: EncodingName,
                              options: ReportOptions = {}): EncodeReport {
  const most = options.maxProblems ?? kMaxProblems;
  const { output, report } = reportWhole(viewOf(bytes), requestOf(from, to, 0, options, kSubstitute, most));
  return { bytes: output as Uint8Array, ...report };
}
