/** Finds out what a file is: candidates of its encoding, misreadings, records. */
import { detect, trace } from 'encconv';
import type { Candidate as Detected } from 'encconv';
import type { Candidate, Input, Inspection, Reading } from '../protocol';
import { guessRecords } from './guess_records';
import { textRuns } from './ebcdic';
import { TextReader } from './text_reader';

/** What is looked at: as far as detection looks. */
const BEGINNING = 1 << 20;
/** Bytes that a preview is made of. */
const PREVIEW = 4096;
/**
 * From which confidence a file is taken to have been garbled before it was saved. Several origins that
 * are the same text share what there is of it.
 */
const SURELY_GARBLED = 0.4;
const MOST_CANDIDATES = 6;

async function read(bytes: Uint8Array, reading: Reading): Promise<string> {
  const reader = await TextReader.open(reading);
  try {
    // Not finished: the end of a preview is no end of the text.
    return reader.push(bytes);
  } finally {
    reader.close();
  }
}

async function asCandidate(bytes: Uint8Array, detected: Detected): Promise<Candidate> {
  const reading = { encoding: detected.encoding, misreadings: [] };
  const { confidence, reason } = detected;
  return { reading, confidence, reason, preview: await read(bytes, reading) };
}

/** The same file mended, if its text was garbled before it was saved. */
async function mended(bytes: Uint8Array, { reading, preview }: Candidate): Promise<Candidate[]> {
  const [traced] = trace(preview);
  if (!traced || traced.confidence < SURELY_GARBLED) return [];
  const without = { ...reading, misreadings: traced.misreadings };
  return [
    {
      reading: without,
      confidence: traced.confidence,
      reason: 'the text was garbled before it was saved',
      preview: await read(bytes, without),
    },
  ];
}

export async function inspect({ file }: Input<'inspect'>): Promise<Inspection> {
  const bytes = new Uint8Array(await file.slice(0, BEGINNING).arrayBuffer());
  const format = guessRecords(bytes, file.size);
  // Files that puzzle are often cut, and so may end within a character.
  const detection = detect(format ? textRuns(bytes) : bytes, { isBeginning: true });
  const beginning = bytes.subarray(0, PREVIEW);
  const candidates = await Promise.all(
    detection.candidates
      .filter(({ number }) => number !== 0)
      .slice(0, MOST_CANDIDATES)
      .map((detected) => asCandidate(beginning, detected)),
  );
  const [first] = candidates;
  if (first && !format) candidates.unshift(...(await mended(beginning, first)));
  const records = format ? { format, encoding: first?.reading.encoding ?? 'IBM037' } : null;
  return { candidates, reason: detection.reason, records };
}

export async function preview({ file, reading }: Input<'preview'>): Promise<string> {
  return read(new Uint8Array(await file.slice(0, PREVIEW).arrayBuffer()), reading);
}
