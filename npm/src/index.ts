// The interface, whatever the engine: node.ts and web.ts add what differs.
export { init } from "./core.js";
export { findCut, findRecordCut } from "./cuts.js";
export { detect, trace } from "./detection.js";
export { encodings, findEncoding, isLoaded, load, TablesMissingError } from "./encodings.js";
export { canEncode, convert, convertReport, decode, decodeReport, encode, encodeReport } from "./conversions.js";
export { ConversionError } from "./requests.js";
export { Converter, converterStream, Decoder, decoderStream, Encoder, encoderStream } from "./streams.js";
export { rawRecords, RecordError, records, RowReader, writeRecords } from "./records.js";
export type * from "./types.js";
