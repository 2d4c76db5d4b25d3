// The interface, as it will be made from the sources.
import type {
  Bytes, ConvertOptions, DecodeReport, Detection, EncodeReport, Encoding, EncodingName, FieldOptions,
  InitOptions, Problem, RawRecord, RecordOptions, RecordProblem, ReportOptions, Row, StreamOptions,
} from "./types.js";
export * from "./types.js";

/** Loads the core. Everything else but `load` must wait for it. Further calls do nothing. */
export function init(options?: InitOptions): Promise<void>;
/** Sees to it that the tables of these encodings are there. Under Node.js not needed. */
export function load(...encodings: EncodingName[]): Promise<void>;
/** Whether they are. */
export function isLoaded(encoding: EncodingName): boolean;

export function decode(bytes: Bytes, encoding: EncodingName, options?: ConvertOptions): string;
export function decodeReport(bytes: Bytes, encoding: EncodingName, options?: ReportOptions): DecodeReport;
export function encode(text: string, encoding: EncodingName, options?: ConvertOptions): Uint8Array;
export function encodeReport(text: string, encoding: EncodingName, options?: ReportOptions): EncodeReport;
/** Whether an encoding has all characters of a text. */
export function canEncode(text: string, encoding: EncodingName): boolean;
export function convert(bytes: Bytes, from: EncodingName, to: EncodingName, options?: ConvertOptions): Uint8Array;
export function convertReport(bytes: Bytes, from: EncodingName, to: EncodingName, options?: ReportOptions): EncodeReport;

declare class Stream<Input, Output> {
  /** Converts the next piece; a few bytes at its end may wait for more. */
  push(piece: Input): Output;
  /** Converts what waited. The stream can be used again, from its beginning. */
  finish(): Output;
  readonly problemCount: number;
  readonly approximationCount: number;
  /** Gives its memory back at once; without it, once the object is collected. */
  close(): void;
}
export class Decoder extends Stream<Bytes, string> {
  constructor(encoding: EncodingName, options?: StreamOptions);
}
export class Encoder extends Stream<string, Uint8Array> {
  constructor(encoding: EncodingName, options?: StreamOptions);
}
/** Bytes to bytes. */
export class Converter extends Stream<Bytes, Uint8Array> {
  constructor(from: EncodingName, to: EncodingName, options?: StreamOptions);
}
export function decoderStream(encoding: EncodingName, options?: StreamOptions): TransformStream<Bytes, string>;
export function encoderStream(encoding: EncodingName, options?: StreamOptions): TransformStream<string, Uint8Array>;
export function converterStream(from: EncodingName, to: EncodingName, options?: StreamOptions): TransformStream<Bytes, Uint8Array>;

/** Finds out which encoding a text is in, or that it is no text. isBeginning: it goes on. */
export function detect(bytes: Bytes, options?: { isBeginning?: boolean }): Detection;

/** All encodings, in ascending order of number. */
export function encodings(): Encoding[];
/** The encoding of a name or number, or null. */
export function findEncoding(name: EncodingName): Encoding | null;

/** The fields of all records as objects. */
export function records(bytes: Bytes, options: FieldOptions): Row[];
/** The records themselves. */
export function rawRecords(bytes: Bytes, options: RecordOptions): RawRecord[];
/** Reads records piece by piece. */
export class RowReader {
  constructor(options: FieldOptions);
  push(piece: Bytes): Row[];
  finish(): Row[];
  close(): void;
}
/** A record for each row. */
export function writeRecords(rows: Iterable<Row>, options: FieldOptions): Uint8Array;

/** Text could not be converted; `output` is what came before. */
export class ConversionError extends Error {
  readonly problem: Problem;
  readonly output: string | Uint8Array;
}
/** A file or a record could not be read or written. */
export class RecordError extends Error {
  readonly problem: RecordProblem;
}
/** Of unknown encodings and options: RangeError. Of tables that are not there: TablesMissingError. */
export class TablesMissingError extends Error {
  readonly encoding: string;
  readonly files: string[];
}
