// The core in WebAssembly: loading it, and memory and texts on their way to it and back.
import type { Platform, WebAssemblySource } from "./platform.js";
import type { Bytes, InitOptions } from "./types.js";

/** A place in the memory of the core; a number up to 2^32. */
export type Pointer = number;

/** What the core exports (npm/native). */
export interface Exports {
  memory: WebAssembly.Memory;
  _initialize?(): void;
  allocate(size: number): Pointer;
  release(block: Pointer): void;
  outputBegin(): Pointer;
  outputSize(): number;
  shrinkOutput(): void;
  version(): void;
  encodings(): void;
  findEncoding(name: Pointer, length: number): number;
  missingTables(encoding: number): void;
  provideTable(name: Pointer, length: number, bytes: Pointer, size: number): number;
  detect(bytes: Pointer, size: number, isBeginning: number): void;
  trace(text: Pointer, length: number): void;
  findCut(bytes: Pointer, size: number, encoding: number, offset: number, position: number, isAtCut: number,
          isBehindLine: number): number;
  findRecordCut(bytes: Pointer, size: number, format: Pointer, formatLength: number, offset: number,
                position: number, isAtCut: number): number;
  findTreatment(name: Pointer, length: number): number;
  alternateOf(treatment: number): number;
  makeConversion(): Pointer;
  deleteConversion(conversion: Pointer): void;
  beginConversion(conversion: Pointer, from: number, to: number, treatment: number, flags: number,
                  maxProblems: number): number;
  pushPiece(conversion: Pointer, data: Pointer, size: number, isLast: number): number;
  problemRows(conversion: Pointer): Pointer;
  problemRowCount(conversion: Pointer): number;
  forgetProblems(conversion: Pointer): void;
  shortInput(): Pointer;
  shortOutput(): Pointer;
  convertShort(from: number, to: number, size: number): number;
  isUtf16(bytes: Pointer, size: number): number;
  isAscii(bytes: Pointer, size: number): number;
  readsAscii(encoding: number): number;
  problemCount(conversion: Pointer): number;
  approximationCount(conversion: Pointer): number;
  makeRawReader(format: Pointer, length: number): Pointer;
  pushRecords(reader: Pointer, piece: Pointer, size: number, isLast: number): void;
  deleteRawReader(reader: Pointer): void;
  makeRowReader(format: Pointer, formatLength: number, fields: Pointer, fieldsLength: number,
                encoding: number, errors: Pointer, errorsLength: number, trim: number): Pointer;
  pushRows(reader: Pointer, piece: Pointer, size: number, isLast: number): void;
  deleteRowReader(reader: Pointer): void;
  describeFields(fields: Pointer, length: number): number;
  writeRows(format: Pointer, formatLength: number, fields: Pointer, fieldsLength: number,
            encoding: number, errors: Pointer, errorsLength: number, lines: Pointer,
            linesLength: number): number;
}

/**
 * Input beyond this is copied to the core piece by piece, so that its memory stays small. Engines make
 * one large string faster than several smaller ones, which are joined besides.
 */
export const kPieceSize = 4 << 20;

const utf8Encoder = new TextEncoder();
const utf8Decoder = new TextDecoder();

let platform: Platform;
/** Is called once, by the module for the engine at hand. */
export function setPlatform(ours: Platform): void {
  platform = ours;
}

let exports: Exports | undefined;
/** The core; throws before init(). */
export function core(): Exports {
  if (exports === undefined) throw new Error("encconv: await init() first");
  return exports;
}

export function viewOf(bytes: Bytes): Uint8Array {
  if (bytes instanceof Uint8Array) return bytes;
  if (ArrayBuffer.isView(bytes)) {
    return new Uint8Array(bytes.buffer, bytes.byteOffset, bytes.byteLength);
  }
  if (bytes instanceof ArrayBuffer || Object.prototype.toString.call(bytes) === "[object ArrayBuffer]") {
    return new Uint8Array(bytes);
  }
  throw new TypeError("encconv: bytes must be a Uint8Array, another view or an ArrayBuffer");
}
/** A text as it is; bytes in its place would pass for UTF-16. */
export function textOf(text: string): string {
  if (typeof text === "string") return text;
  throw new TypeError("encconv: the text must be a string");
}

// ---- Memory. ----

// Views of the memory, which are good until it grows.
let view: Uint8Array | undefined;
let unitView: Uint16Array | undefined;
function forgetViews(): void {
  view = unitView = undefined;
}
export function memoryView(): Uint8Array {
  return (view ??= new Uint8Array(core().memory.buffer));
}
function memoryUnits(): Uint16Array {
  return (unitView ??= new Uint16Array(core().memory.buffer));
}

// Where input is put. One block, which is used again.
let input: Pointer = 0;
let inputCapacity = 0;
/** A place for so many bytes of input, until the next call. */
export function inputPlace(size: number): Pointer {
  if (size <= inputCapacity) return input;
  const { allocate, release } = core();
  if (input !== 0) release(input);
  inputCapacity = Math.max(size, 64 * 1024);
  input = allocate(inputCapacity) >>> 0;
  if (input === 0) {
    inputCapacity = 0;
    throw new RangeError("encconv: out of memory");
  }
  return input;
}
/** Puts bytes there. */
export function putBytes(bytes: Uint8Array): Pointer {
  const place = inputPlace(bytes.length);
  memoryView().set(bytes, place);
  return place;
}
/** Puts UTF-16 units of a string there, two bytes each. */
export function putUnits(text: string): Pointer {
  const place = inputPlace(text.length * 2);
  platform.writeUtf16(text, memoryView(), place);
  return place;
}
/** Gives the memory of large input and output back to the core. */
export function shrink(): void {
  if (inputCapacity > 2 * kPieceSize) {
    core().release(input);
    input = inputCapacity = 0;
  }
  if (core().outputSize() > 4 * kPieceSize) core().shrinkOutput();
}

/** Gives back what belonged to objects that were collected; undefined where the engine does not tell. */
export function registryOf(release: (pointer: Pointer) => void): FinalizationRegistry<Pointer> | undefined {
  return typeof FinalizationRegistry === "undefined" ? undefined : new FinalizationRegistry(release);
}

/** Calls with texts as UTF-8, each by its place and length. */
export function withTexts<Result>(texts: string[], call: (...places: number[]) => Result): Result {
  const all = texts.map((text) => utf8Encoder.encode(text));
  let place = inputPlace(all.reduce((sum, bytes) => sum + bytes.length, 1));
  const places: number[] = [];
  for (const bytes of all) {
    memoryView().set(bytes, place);
    places.push(place, bytes.length);
    place += bytes.length;
  }
  return call(...places);
}

/** A copy of the output. */
export function outputBytes(): Uint8Array {
  const begin = core().outputBegin() >>> 0;
  return memoryView().slice(begin, begin + core().outputSize());
}
/** The output, which is UTF-16. */
export function outputUnits(): string {
  const size = core().outputSize() >>> 0;
  if (size === 0) return "";
  return platform.readUtf16(memoryView(), core().outputBegin() >>> 0, size);
}
/** A string of bytes that are ASCII, in the memory. */
export function asciiText(begin: Pointer, size: number): string {
  return platform.readAscii(memoryView(), begin, size);
}
/** The output, which is UTF-8. */
export function outputText(): string {
  return utf8Decoder.decode(outputBytes());
}

// ---- UTF-16 as it is. ----

// Little enough to be in the processor's cache when it is looked at.
const kLookSize = 1 << 17;

// Whether bytes are UTF-16, little endian, that a string can hold as it is: halves of surrogate pairs
// are errors, and a mark in front has a meaning.
function isPlainUtf16(bytes: Uint8Array, mayBeMark: boolean): boolean {
  if (bytes.length % 2 !== 0) return false;
  const first = bytes.length >= 2 ? bytes[0]! | (bytes[1]! << 8) : 0;
  if (mayBeMark && (first === 0xfeff || first === 0xfffe)) return false;
  for (let at = 0; at < bytes.length; ) {
    let end = Math.min(at + kLookSize, bytes.length);
    // A pair is looked at together.
    if (end < bytes.length && (bytes[end - 1]! & 0xfc) === 0xd8) end -= 2;
    const piece = bytes.subarray(at, end);
    if (core().isUtf16(putBytes(piece), piece.length) === 0) return false;
    at = end;
  }
  return true;
}
/** The text of UTF-16 that is clean, and has no mark in front; undefined for any other. */
export function stringOfUtf16(bytes: Uint8Array): string | undefined {
  return isPlainUtf16(bytes, true) ? platform.stringOfUtf16(bytes) : undefined;
}
/** The same the other way round. */
export function utf16OfString(text: string): Uint8Array | undefined {
  const bytes = platform.utf16OfString(text);
  return isPlainUtf16(bytes, false) ? bytes : undefined;
}

// ---- Short texts. ----

/** Texts of at most so many bytes are short. */
export const kShortBytes = 256;
// Below this, strings are made and taken faster unit by unit.
const kFewUnits = 24;
export const kFewBytes = 24;

let shortInput: Pointer = 0;
let shortOutput: Pointer = 0;

const asciiReaders = new Map<number, boolean>();
/** Whether an encoding that is ready reads ASCII as itself, and keeps no state. */
export function readsAscii(encoding: number): boolean {
  let reads = asciiReaders.get(encoding);
  if (reads === undefined) {
    reads = core().readsAscii(encoding) !== 0;
    asciiReaders.set(encoding, reads);
  }
  return reads;
}

/** The text of a short one that is clean; undefined, with nothing done, where it takes more. */
export function decodeShort(bytes: Uint8Array, from: number, utf16: number): string | undefined {
  const size = bytes.length;
  const memory = memoryView();
  if (size > kFewBytes) {
    memory.set(bytes, shortInput);
  } else {
    for (let i = 0; i < size; ++i) memory[shortInput + i] = bytes[i]!;
  }
  const isEasy = size > kFewBytes && bytes[0]! < 0x80 && bytes[size - 1]! < 0x80;
  if (isEasy && core().isAscii(shortInput, size) !== 0 && readsAscii(from)) {
    return platform.readAscii(memoryView(), shortInput, size);
  }
  const written = core().convertShort(from, utf16, size);
  if (written < 0) return undefined;
  // The memory may have grown.
  if (written > 2 * kFewUnits) return platform.readUtf16(memoryView(), shortOutput, written);
  const begin = shortOutput >> 1;
  return String.fromCharCode.apply(null, memoryUnits().subarray(begin, begin + (written >> 1)) as unknown as number[]);
}
/** The same the other way round. */
export function encodeShort(text: string, utf16: number, to: number): Uint8Array | undefined {
  const size = text.length;
  if (size > kFewUnits) {
    platform.writeUtf16(text, memoryView(), shortInput);
  } else {
    const units = memoryUnits();
    for (let i = 0, at = shortInput >> 1; i < size; ++i, ++at) units[at] = text.charCodeAt(i);
  }
  const written = core().convertShort(utf16, to, 2 * size);
  return written < 0 ? undefined : memoryView().slice(shortOutput, shortOutput + written);
}

// ---- Loading. ----

// What the core wants of its surroundings: nothing. These answer what the C library asks.
function imports(): WebAssembly.Imports {
  const kSuccess = 0, kNoSuchThing = 8;
  const putZeros = (...places: Pointer[]) => {
    const memory = new DataView(core().memory.buffer);
    for (const place of places) memory.setUint32(place >>> 0, 0, true);
    return kSuccess;
  };
  const fail = (what: string) => () => {
    throw new Error(`encconv: the core stopped (${what})`);
  };
  return {
    env: { emscripten_notify_memory_growth: forgetViews },
    wasi_snapshot_preview1: {
      environ_sizes_get: putZeros,
      environ_get: () => kSuccess,
      fd_close: () => kNoSuchThing,
      fd_read: () => kNoSuchThing,
      fd_seek: () => kNoSuchThing,
      fd_write: () => kNoSuchThing,
      proc_exit: fail("proc_exit"),
    },
  };
}

type Source = Uint8Array | WebAssemblySource;
async function compile(source: Source): Promise<WebAssembly.Module> {
  if (source instanceof WebAssembly.Module) return source;
  if (source instanceof Uint8Array) return WebAssembly.compile(source);
  if (!source.ok) throw new Error(`encconv: the core could not be loaded: ${source.status} ${source.url}`);
  // Servers that do not know the type of the file are no reason to fail.
  return WebAssembly.compile(await source.arrayBuffer());
}

async function sourceOf(given: InitOptions["core"]): Promise<Source> {
  const wanted = await given;
  if (wanted === undefined) return platform.readFile("core.wasm");
  if (typeof wanted === "string" || wanted instanceof URL) return fetch(wanted);
  if (wanted instanceof WebAssembly.Module) return wanted;
  if (typeof Response !== "undefined" && wanted instanceof Response) return wanted;
  return viewOf(wanted as Bytes);
}

let tables: NonNullable<InitOptions["tables"]> = (file) =>
  platform.readFile(`tables/${file}`) as Uint8Array | Promise<Uint8Array>;
/** The bytes of a table file, or a promise of them. */
export function readTable(file: string): Bytes | Promise<Bytes> {
  return tables(file);
}

let loading: Promise<void> | undefined;
/** Loads the core. Everything else waits for it. Further calls wait for the first. */
export function init(options: InitOptions = {}): Promise<void> {
  if (options.tables !== undefined) tables = options.tables;
  loading ??= (async () => {
    const module = await compile(await sourceOf(options.core));
    const instance = await WebAssembly.instantiate(module, imports());
    exports = instance.exports as unknown as Exports;
    exports._initialize?.();
    shortInput = exports.shortInput();
    shortOutput = exports.shortOutput();
  })();
  // A failure, as of the network, is not for good.
  loading.catch(() => (loading = undefined));
  return loading;
}
