/** Reads records of mainframe files as a table. */
import { Decoder, load, rawRecords, RowReader } from 'encconv';
import type { Row } from 'encconv';
import type { Input, RecordsRequest, RecordTable } from '../protocol';
import { hex } from '../../common/format';
import { pieces, type Task } from './task';

/** Bytes that the rows which are shown are looked for in. */
const BEGINNING = 1 << 20;
const MOST_PROBLEMS = 100;

type Cells = (string | null)[];

/** Rows of records without a layout: their text. */
async function textRows(file: Blob, { format, encoding }: RecordsRequest): Promise<Row[]> {
  await load(encoding);
  const decoder = new Decoder(encoding, { errors: 'substitute' });
  try {
    const bytes = new Uint8Array(await file.arrayBuffer());
    return rawRecords(bytes, { format, onProblem: () => undefined }).map(({ data }) => ({
      text: (decoder.push(data) + decoder.finish()).trimEnd(),
    }));
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
    yield await textRows(file, request);
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
  const parts: string[] = [];
  for await (const some of rowsOf(request, task, [])) {
    if (parts.length === 0 && some[0]) parts.push(csvLine(Object.keys(some[0])));
    parts.push(some.map((row) => csvLine(cellsOf(row))).join(''));
  }
  return new Blob(parts, { type: 'text/csv' });
}
