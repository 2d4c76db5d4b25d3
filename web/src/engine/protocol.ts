/** What the page asks of its worker, and what comes back. */
import type { Encoding, Misreading, Origin } from 'encconv';

export type { Encoding, Misreading, Origin };

/** How the bytes of a file are read: decoded, and then the misreadings undone, the last one first. */
export interface Reading {
  encoding: string;
  misreadings: Misreading[];
}

/** A way to read a file, with the beginning of its text read so. */
export interface Candidate {
  reading: Reading;
  confidence: number;
  reason: string;
  preview: string;
}

/** How a file without line ends is divided into records. */
export interface RecordShape {
  format: string;
  encoding: string;
}

/** What a file turned out to be. */
export interface Inspection {
  /** Most likely first; none for a file that is no text. */
  candidates: Candidate[];
  /** Why there are no candidates, in a few words. */
  reason: string;
  records: RecordShape | null;
}

/** A place that could not be read. */
export interface Problem {
  offset: number;
  length: number;
  bytes: Uint8Array;
  line: number;
  /** The end of the file cuts a character. */
  cut: boolean;
}

/** What came out when all of a file was read. */
export interface Survey {
  lines: number;
  problemCount: number;
  /** The first of them. */
  problems: Problem[];
  /** Characters that did not fit the misreading that was undone. */
  unmended: number;
}

/** Bytes of a file that belong together, and the text that they are. */
export interface Cell {
  offset: number;
  bytes: Uint8Array;
  text: string;
  bad: boolean;
}

/** What is written for a character that the target lacks. */
export type Lacking = 'stop' | 'drop' | 'substitute' | 'hex' | 'translit,substitute';
export type LineEnds = 'keep' | 'lf' | 'crlf';

export interface Conversion {
  file: Blob;
  reading: Reading;
  target: string;
  lacking: Lacking;
  lineEnds: LineEnds;
  mark: boolean;
}

export interface Converted {
  blob: Blob;
  /** Places of the input that were no text, for which a replacement stands in the output. */
  malformed: number;
  /** Characters that the target lacks. */
  lacking: number;
  /** The first of these characters. */
  firstLacking: string | null;
}

export interface RecordsRequest {
  file: Blob;
  format: string;
  encoding: string;
  /** A layout as the library reads it; empty for records as lines of text. */
  fields: string;
}

export interface RecordTable {
  columns: string[];
  rows: (string | null)[][];
  problems: string[];
}

/** What a byte means behind others. */
export interface Code {
  kind: 'character' | 'more' | 'shift' | 'none';
  text: string;
  /** Something else may follow that makes another character of it. */
  isOpen: boolean;
}

export interface Holder {
  encoding: Encoding;
  bytes: Uint8Array;
  /** The bytes that lead to the last character in the chart. */
  chart: number[];
}

/** All that the worker does: what goes in, and what comes out. */
export interface Jobs {
  encodings: { input: Record<string, never>; output: Encoding[] };
  inspect: { input: { file: Blob }; output: Inspection };
  preview: { input: { file: Blob; reading: Reading }; output: string };
  survey: { input: { file: Blob; reading: Reading }; output: Survey };
  look: { input: { file: Blob; reading: Reading; from: number; size: number }; output: Cell[] };
  convert: { input: Conversion; output: Converted };
  trace: { input: { text: string }; output: Origin[] };
  records: { input: RecordsRequest & { limit: number }; output: RecordTable };
  recordsFile: { input: RecordsRequest; output: Blob };
  chart: { input: { encoding: string; prefix: number[] }; output: Code[] };
  search: { input: { text: string }; output: Holder[] };
}

export type JobName = keyof Jobs;
export type Input<K extends JobName> = Jobs[K]['input'];
export type Output<K extends JobName> = Jobs[K]['output'];

/** Parts of the page that are in the document itself, by name: gzip in base64. */
export type InlinedParts = Record<string, string>;

export type ToWorker =
  | { parts: InlinedParts | null }
  | { [K in JobName]: { id: number; job: K; input: Input<K> } }[JobName]
  | { cancel: number };

export type FromWorker =
  | { id: number; progress: number }
  | { id: number; output: unknown }
  | { id: number; error: string };
