// Texts and bytes from one encoding to another, whole and piece by piece.
import {
  asciiText, core, decodeShort, encodeShort, kFewBytes, kPieceSize, kShortBytes, memoryView, outputBytes,
  outputUnits, putBytes, putUnits, readsAscii, registryOf, shrink, stringOfUtf16, textOf, utf16OfString,
  viewOf, withTexts, type Pointer,
} from "./core.js";
import { findNumber, readyNumber } from "./encodings.js";
import type {
  Bytes, ConvertOptions, DecodeReport, EncodeReport, EncodingName, Problem, ReportOptions,
  StreamOptions,
} from "./types.js";

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

const kUtf16 = 1200;
const kWriteMark = 1, kToText = 2, kFromText = 4;
// More than there can be; the core takes nothing larger, such as Infinity.
const kAllProblems = 0xffffffff;
const enum Status { kGood, kStopped, kNoDecoder, kNoEncoder, kNoAlternate, kBadSubstitute }

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
interface Request {
  from: EncodingName;
  to: EncodingName;
  flags: number;
  errors: string;
  maxProblems: number;
}
function requestOf(from: EncodingName, to: EncodingName, flags: number, options: ConvertOptions,
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
function begin(conversion: Pointer, request: Request): void {
  const { from, to, errors } = request;
  const source = readyNumber(from), target = readyNumber(to), treatment = readyTreatment(errors);
  const status = core().beginConversion(conversion, source, target, treatment,
                                        request.flags, request.maxProblems);
  if (status !== Status.kGood) throw failureOf(status, request);
}
function failureOf(status: number, { from, to, errors }: Request): Error {
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

function readProblems(conversion: Pointer): Problem[] {
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
function describe({ kind, bytes, character }: Problem, { from, to, flags }: Request): string {
  if (kind !== "malformed") {
    const codePoint = `U+${hex(character?.codePointAt(0) ?? 0, 4)}`;
    return `${to} lacks ${codePoint} ${JSON.stringify(character)}`;
  }
  if ((flags & kFromText) !== 0) return "half of a surrogate pair stands alone";
  return `${Array.from(bytes, (byte) => hex(byte, 2)).join(" ")} is no text in ${from}`;
}

// ---- Whole texts. ----

// One side is a string where flags say so, otherwise bytes.
type Side = string | Uint8Array;
interface Outcome {
  outputs: Side[];
  isStopped: boolean;
  conversion: Pointer;
}

// All whole texts go through this one.
let whole: Pointer = 0;

function pieceOf(input: Side, begin: number, end: number): Side {
  return typeof input === "string" ? input.slice(begin, end) : input.subarray(begin, end);
}
function push(conversion: Pointer, piece: Side, isLast: boolean): number {
  if (typeof piece === "string") {
    return core().pushPiece(conversion, putUnits(piece), piece.length * 2, isLast ? 1 : 0);
  }
  return core().pushPiece(conversion, putBytes(piece), piece.length, isLast ? 1 : 0);
}
function takeOutput(flags: number): Side {
  return (flags & kToText) !== 0 ? outputUnits() : outputBytes();
}

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
function join(outputs: Side[], flags: number): Side {
  return (flags & kToText) !== 0 ? joinText(outputs) : joinBytes(outputs);
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
const kStop = "stop", kSubstitute = "substitute";

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

// ---- Piece by piece. ----

// Conversions whose object was collected.
const collected = registryOf((conversion) => core().deleteConversion(conversion));

abstract class Stream<Input, Output extends Side> {
  #conversion: Pointer;
  #isOpen = false;
  // What was counted until it was closed.
  #problemCount = 0;
  #approximationCount = 0;
  readonly #request: Request;
  readonly #onProblem: ((problem: Problem) => void) | undefined;

  protected constructor(request: Request, onProblem: ((problem: Problem) => void) | undefined) {
    this.#request = request;
    this.#onProblem = onProblem;
    this.#conversion = core().makeConversion();
    if (this.#conversion === 0) throw new RangeError("encconv: out of memory");
    collected?.register(this, this.#conversion, this);
    this.#begin();
  }
  #begin(): void {
    begin(this.#conversion, this.#request);
    this.#isOpen = true;
  }

  /** Converts the next piece; a few bytes at its end may wait for more. */
  push(piece: Input): Output {
    return this.#push(this.toSide(piece), false);
  }
  /** Converts what waited, and ends the text. A further piece begins another one. */
  finish(): Output {
    return this.#push(this.toSide(undefined), true);
  }
  /** How many pieces of the text could not be converted so far. */
  get problemCount(): number {
    return this.#conversion === 0 ? this.#problemCount : core().problemCount(this.#conversion);
  }
  /** For how many of its characters others were written. */
  get approximationCount(): number {
    return this.#conversion === 0 ? this.#approximationCount : core().approximationCount(this.#conversion);
  }
  /** Gives its memory back at once; without it, once the object is collected. */
  close(): void {
    if (this.#conversion === 0) return;
    collected?.unregister(this);
    this.#problemCount = this.problemCount;
    this.#approximationCount = this.approximationCount;
    core().deleteConversion(this.#conversion);
    this.#conversion = 0;
  }

  protected abstract toSide(piece: Input | undefined): Side;

  #push(input: Side, isEnd: boolean): Output {
    const { flags } = this.#request;
    const outputs: Side[] = [];
    for (let at = 0; ; at += kPieceSize) {
      // A listener may have closed it between two pieces.
      if (this.#conversion === 0) throw new Error("encconv: the stream is closed");
      if (!this.#isOpen) this.#begin();
      const isLast = input.length - at <= kPieceSize;
      const status = push(this.#conversion, pieceOf(input, at, at + kPieceSize), isEnd && isLast);
      outputs.push(takeOutput(flags));
      if (status !== Status.kGood) this.#fail(status, outputs);
      // Before a listener throws.
      if (isEnd && isLast) this.#isOpen = false;
      if (core().problemRowCount(this.#conversion) !== 0) this.#tell(readProblems(this.#conversion));
      if (isLast) break;
    }
    return join(outputs, flags) as Output;
  }
  #tell(problems: Problem[]): void {
    for (const problem of problems) this.#onProblem?.(problem);
  }
  #fail(status: number, outputs: Side[]): never {
    this.#isOpen = false;
    const problems = readProblems(this.#conversion);
    const problem = problems.pop();
    if (status !== Status.kStopped || problem === undefined) throw failureOf(status, this.#request);
    this.#tell(problems);
    const output = join(outputs, this.#request.flags);
    throw new ConversionError(problem, describe(problem, this.#request), output);
  }
}

function streamRequest(from: EncodingName, to: EncodingName, flags: number, options: StreamOptions): Request {
  // Without a listener, the one problem that stops the stream is all that is asked for.
  const most = options.onProblem === undefined ? 1 : (options.maxProblems ?? kAllProblems);
  return requestOf(from, to, flags, options, kStop, most);
}

/** Bytes that come in pieces to text. */
export class Decoder extends Stream<Bytes, string> {
  constructor(encoding: EncodingName, options: StreamOptions = {}) {
    super(streamRequest(encoding, kUtf16, kToText, options), options.onProblem);
  }
  protected toSide(piece: Bytes | undefined): Side {
    return piece === undefined ? new Uint8Array(0) : viewOf(piece);
  }
}
/** Text that comes in pieces to bytes. */
export class Encoder extends Stream<string, Uint8Array> {
  constructor(encoding: EncodingName, options: StreamOptions = {}) {
    super(streamRequest(kUtf16, encoding, kFromText, options), options.onProblem);
  }
  protected toSide(piece: string | undefined): Side {
    return piece === undefined ? "" : textOf(piece);
  }
}
/** Bytes that come in pieces to bytes. */
export class Converter extends Stream<Bytes, Uint8Array> {
  constructor(from: EncodingName, to: EncodingName, options: StreamOptions = {}) {
    super(streamRequest(from, to, 0, options), options.onProblem);
  }
  protected toSide(piece: Bytes | undefined): Side {
    return piece === undefined ? new Uint8Array(0) : viewOf(piece);
  }
}

function transformOf<Input, Output extends Side>(stream: Stream<Input, Output>): TransformStream<Input, Output> {
  return new TransformStream<Input, Output>({
    transform(piece, controller) {
      const output = stream.push(piece);
      if (output.length !== 0) controller.enqueue(output);
    },
    flush(controller) {
      const output = stream.finish();
      if (output.length !== 0) controller.enqueue(output);
      stream.close();
    },
  });
}
/** A Decoder between a stream of bytes and one of strings. */
export function decoderStream(encoding: EncodingName, options: StreamOptions = {}): TransformStream<Bytes, string> {
  return transformOf(new Decoder(encoding, options));
}
/** An Encoder between a stream of strings and one of bytes. */
export function encoderStream(encoding: EncodingName, options: StreamOptions = {}): TransformStream<string, Uint8Array> {
  return transformOf(new Encoder(encoding, options));
}
/** A Converter between two streams of bytes. */
export function converterStream(from: EncodingName, to: EncodingName,
                                options: StreamOptions = {}): TransformStream<Bytes, Uint8Array> {
  return transformOf(new Converter(from, to, options));
}
