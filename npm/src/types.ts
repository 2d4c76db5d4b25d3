// The types of the interface.

/** Bytes, wherever they are. They are copied, never kept. */
export type Bytes = Uint8Array | ArrayBuffer | ArrayBufferView;

/** An encoding by one of its names ("Shift_JIS", "cp1252", "ebcdic-cp-us") or by its number. Case,
 *  punctuation and leading zeros do not matter. */
export type EncodingName = string | number;

/** What `init` needs only where it cannot find it by itself. */
export interface InitOptions {
  /** The core, `core.wasm` of the package: its bytes, compiled already, or where to fetch it. By
   *  default it is read beside the module. */
  core?: Bytes | WebAssembly.Module | Response | URL | string | Promise<Bytes | WebAssembly.Module | Response>;
  /** Gives the table file of a name, such as "euc-tw.table", of the package's folder `tables`. By
   *  default it is read beside the module. Where it returns bytes, and not a promise, `decode` and
   *  the others load by themselves what they need, as they do under Node.js. */
  tables?: (file: string) => Bytes | Promise<Bytes>;
}

/** How to convert. */
export interface ConvertOptions {
  /** What to do about text that cannot be converted, as the tool takes it: "stop" (throws a
   *  ConversionError; the default of all but the reports), "drop", "substitute",
   *  "substitute=TEXT", "hex", "alternate=ENCODING" or "raw"; in front of it, with a comma behind
   *  each, what is tried first: "compose", "best-fit", "translit". */
  errors?: string;
  /** Begin the output with the byte order mark of a Unicode encoding. */
  byteOrderMark?: boolean;
}

/** How to convert with a report. `errors` is "substitute" by default. */
export interface ReportOptions extends ConvertOptions {
  /** The most problems that are told; all are counted. 1000 by default. */
  maxProblems?: number;
}

/** How to convert piece by piece. */
export interface StreamOptions extends ConvertOptions {
  /** Is told of each problem, in the order of the text. */
  onProblem?: (problem: Problem) => void;
  /** The most problems of a text that it is told; all are counted. No limit by default. */
  maxProblems?: number;
}

/** A piece of input that could not be converted, or not as it is. */
export interface Problem {
  /** "malformed": the bytes are no text; "unencodable": the target lacks the character;
   *  "approximated": it does, and others were written for it. */
  kind: "malformed" | "unencodable" | "approximated";
  /** Where it begins in the input: in bytes, or in UTF-16 units where the input is a string. */
  offset: number;
  /** Its length, counted likewise. */
  length: number;
  /** Of the text, counted from 1; lines end with U+000A. */
  line: number;
  /** Where it stands in the output, counted as the output is: of `decodeReport` in UTF-16 units of
   *  the text, which hold there what was written for it. */
  textOffset: number;
  /** The first bytes of the piece, 16 at most; of a string those of its UTF-16, little endian. */
  bytes: Uint8Array;
  /** The character that the target lacks; null when malformed. */
  character: string | null;
  /** What was written for an approximated one. */
  written: string;
}

interface Report {
  /** All of the input was converted or treated. */
  complete: boolean;
  /** The first problems. */
  problems: Problem[];
  /** How many pieces could not be converted. */
  problemCount: number;
  /** For how many characters others were written. */
  approximationCount: number;
}
/** A text, and what was wrong with its bytes. */
export interface DecodeReport extends Report {
  /** Up to the first problem where that stopped the conversion. */
  text: string;
}
/** Bytes, and what could not be written in them. */
export interface EncodeReport extends Report {
  /** Up to the first problem where that stopped the conversion. */
  bytes: Uint8Array;
}

/** What is known of a part of a text in which a cut is looked for. */
export interface CutOptions {
  /** Of its first byte in the text, or file; 0 by default. */
  position?: number;
  /** A piece can begin at its first byte; at position 0 one can. */
  atCut?: boolean;
  /** Only places behind a line end are wanted. */
  behindLine?: boolean;
}

/** What is known of an encoding. */
export interface Encoding {
  /** By which it can be named as well. */
  number: number;
  /** Its preferred name. */
  name: string;
  /** Its other names. */
  aliases: string[];
  kind: "unicode" | "single-byte" | "double-byte" | "multi-byte" | "stateful";
  /** A few words for people: "Windows, Japanese (Shift_JIS)". */
  title: string;
  canDecode: boolean;
  canEncode: boolean;
  /** The table files that it needs besides the core; mostly none. */
  tables: string[];
}

/** An encoding that bytes may be in. */
export interface Candidate {
  /** Its preferred name. */
  encoding: string;
  /** Its number; 0 for one that cannot be converted. */
  number: number;
  /** From 0 to 1; from 0.5 it may be taken without asking anybody. */
  confidence: number;
  /** What speaks for it most. */
  evidence: "mark" | "declaration" | "structure" | "statistics";
  /** A few words for people. */
  reason: string;
}

/** What bytes turned out to be. */
export interface Detection {
  kind: "empty" | "ascii" | "text" | "binary" | "unknown";
  /** The name of the likeliest encoding if it may be taken without asking anybody, or null. */
  encoding: string | null;
  /** The likeliest first, a few at most; each reads the bytes as another text. */
  candidates: Candidate[];
  /** Where there are no candidates: why, for people. */
  reason: string;
}

/** Bytes of one encoding that were taken for those of another, so that text became garbled. */
export interface Misreading {
  /** The encoding that the bytes were in. */
  written: string;
  /** The one that they were taken for. */
  read: string;
}

/** A text that may have become a garbled one. */
export interface Origin {
  text: string;
  /** What happened to it, in that order; never empty. */
  misreadings: Misreading[];
  /** From 0 to 1. */
  confidence: number;
}

/** What a field holds: a text, an integer (a bigint beyond 2^53), a number with decimals as its
 *  exact digits ("-12.50"), or null. */
export type Value = string | number | bigint | null;
/** The fields of a record by their names. */
export type Row = Record<string, Value>;

/** A record without its descriptor word. */
export interface RawRecord {
  /** Counted from 1. */
  number: number;
  /** Of its first byte in the file. */
  offset: number;
  data: Uint8Array;
}

/** A place in records that is damaged or does not fit. */
export interface RecordProblem {
  kind: "descriptor" | "cut" | "text" | "number" | "too long" | "missing" | "row";
  /** Counted from 1. */
  record: number;
  /** In the file; of a field in what is written: in its record. */
  offset: number;
  length: number;
  /** The first bytes of it, 16 at most. */
  bytes: Uint8Array;
  /** The name of the field, or nothing. */
  field: string;
  reason: string;
}

/** How a file is divided into records. */
export interface RecordOptions {
  /** "fixed:80", "rdw", "bdw" or "bdw:27998". */
  format: string;
  /** Is told of what is damaged. Without it that throws a RecordError, unless `errors` is another
   *  treatment than "stop". */
  onProblem?: (problem: RecordProblem) => void;
}
/** How records are divided into fields. */
export interface FieldOptions extends RecordOptions {
  /** The fields, one a line or with commas between them, as the tool takes them:
   *  "id 1 3 zoned:unsigned, name 4 20 text, balance + 6 packed:scale=2". */
  fields: string;
  /** Of the text fields; IBM037 by default. */
  encoding?: EncodingName;
  /** As in ConvertOptions. Under another treatment than "stop" a number that cannot be read is
   *  null. */
  errors?: string;
  /** Take the blanks at the end of texts off; true by default. */
  trim?: boolean;
}
