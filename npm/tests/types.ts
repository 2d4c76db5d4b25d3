// What the types let through, and what not. It is compiled and never runs.
import {
  ConversionError, Decoder, decode, decodeReport, decoderStream, detect, encode, encodings,
  findCut, findEncoding, findRecordCut, init, load, records, trace, writeRecords, type Encoding, type Problem, type Row,
} from "encconv";

const bytes = new Uint8Array(1);

const loaded: Promise<void> = init({ core: bytes, tables: async (file: string) => new ArrayBuffer(file.length) });
const tables: Promise<void> = load("euc-tw", 932);
const text: string = decode(bytes.buffer, 932, { errors: "hex" });
const encoded: Uint8Array = encode(text, "shift_jis");
const problems: Problem[] = decodeReport(new DataView(bytes.buffer), "utf-8", { maxProblems: 1 }).problems;
const kinds: ("malformed" | "unencodable" | "approximated")[] = problems.map(({ kind }) => kind);
const piece: string = new Decoder("utf-8", { onProblem: ({ line }) => line.toFixed() }).push(bytes);
const pieces: ReadableStream<string> = new ReadableStream<Uint8Array>().pipeThrough(decoderStream("utf-8"));
const likeliest: string | null = detect(bytes, { isBeginning: true }).encoding;
const origins: [string, string][] = trace("").flatMap(({ misreadings }) => misreadings.map(({ written, read }): [string, string] => [written, read]));
const cuts: (number | null)[] = [findCut(bytes, 932, 1, { behindLine: true, position: 5 }), findRecordCut(bytes, "rdw", 0, { atCut: true })];
const names: string[] = encodings().map(({ name }: Encoding) => name);
const title: string | undefined = findEncoding("latin1")?.title;
const rows: Row[] = records(bytes, { format: "rdw", fields: "a 1 2 text" });
const file: Uint8Array = writeRecords([{ a: 1n }, { a: null }], { format: "fixed:2", fields: "a 1 2 text" });
const output: string | Uint8Array | undefined = new Error() instanceof ConversionError ? undefined : "";

// @ts-expect-error: a string is no bytes.
decode("text", "utf-8");
// @ts-expect-error: it may be unknown.
findEncoding("latin1").title;
// @ts-expect-error: records have a format.
records(bytes, { fields: "a 1 2 text" });
// @ts-expect-error: errors have names.
encode("", "utf-8", { errors: 1 });
