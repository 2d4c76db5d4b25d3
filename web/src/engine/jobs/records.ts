/** Reads records of mainframe files as a table. */
import { Decoder, findRecordCut, load, rawRecords, RowReader } from 'encconv';
import type { Row } from 'encconv';
import type { Input, RecordsRequest, RecordTable } from '../protocol';
import { hex } from '../../common/format';
import { BlobWriter } from './blob_writer';
import { pieces, type Task } from './task';

/** Bytes that the rows which are shown are looked for in. */
const BEGINNING = 1 << 20;
const MOST_PROBLEMS = 100;

type Cells = (string | null)[];

/** Parts of a file that end where records do, but for the last. */
async function* recordParts(file: Blob, format: string, task: Task): AsyncGenerator<Uint8Array> {
  let waiting = new Uint8Array(0);
  let position = 0;
  for await (const piece of pieces(file, task)) {
    const bytes = new Uint8Array(waiting.length + piece.length);
    bytes.set(waiting);
    bytes.set(piece, waiting.length);
    const cut = findRecordCut(bytes, format, bytes.length >> 1, { position, atCut: true });
    const end = cut !== null && cut <= bytes.length ? cut : 0;
    if (end > 0) yield bytes.subarray(0, end);
    waiting = bytes.slice(end);
    position += end;
  }
  yield waiting;
}

/** Rows of records without a layout: their text. */
async function* textRows(
  file: Blob,
  { format, encoding }: RecordsRequest,
  task: Task,
): AsyncGenerator<Row[]> {
  await load(encoding);
  const decoder = new Decoder(encoding, { errors: 'substitute' });
  const textOf = (data: Uint8Array): string => (decoder.push(data) + decoder.finish()).trimEnd();
  try {
    for await (const part of recordParts(file, format, task)) {
      const records = rawRecords(part, { format, onProblem: () => undefined });
      yield records.map(({ data }) => ({ text: textOf(data) }));
    }
  } finally {
    decoder.close();
  }
}

/** The rows of a file, some at a time. */
async function* rowsOf(
  request: RecordsRequest,
  task: Task,
  problems: string[],
): AsyncGenerator<Row[]> {
  const { file, format, encoding, fields } = request;
  if (!fields.trim()) {
    yield* textRows(file, request, task);
    return;
  }
  await load(encoding);
  const reader = new RowReader({
    format,
    encoding,
    fields,
    errors: 'substitute',
    onProblem: ({ record, field, offset, bytes, reason }) => {
      if (problems.length === MOST_PROBLEMS) return;
      const where = field ? `field ${field}` : `byte ${offset}`;
      problems.push(`Record ${record}, ${where}: ${reason} (${hex(bytes)})`);
    },
  });
  try {
    for await (const piece of pieces(file, task)) yield reader.push(piece);
    yield reader.finish();
  } finally {
    reader.close();
  }
}

const cellsOf = (row: Row): Cells =>
  Object.values(row).map((value) => (value === null ? null : String(value)));

export async function readRecords(request: Input<'records'>, task: Task): Promise<RecordTable> {
  const problems: string[] = [];
  const rows: Cells[] = [];
  let columns: string[] = [];
  const beginning = { ...request, file: request.file.slice(0, BEGINNING) };
  for await (const some of rowsOf(beginning, task, problems)) {
    if (some[0]) columns = Object.keys(some[0]);
    rows.push(...some.slice(0, request.limit - rows.length).map(cellsOf));
    if (rows.length >= request.limit) break;
  }
  return { columns, rows, problems };
}

/** A line of CSV: nothing for null, and "" for an empty text. */
function csvLine(cells: Cells): string {
  const quoted = cells.map((cell) => {
    if (cell === null) return '';
    return cell === '' || /[",\r\n]/.test(cell) ? `"${cell.replaceAll('"', '""')}"` : cell;
  });
  return `${quoted.join(',')}\r\n`;
}

export async function writeRecordsFile(request: RecordsRequest, task: Task): Promise<Blob> {
  const output = new BlobWriter();
  const utf8 = new TextEncoder();
  let isFirst = true;
  for await (const some of rowsOf(request, task, [])) {
    if (isFirst && some[0]) output.write(utf8.encode(csvLine(Object.keys(some[0]))));
    isFirst &&= some.length === 0;
    output.write(utf8.encode(some.map((row) => csvLine(cellsOf(row))).join('')));
  }
  return output.finish('text/csv');
}
