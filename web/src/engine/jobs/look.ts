/** Looks at a stretch of a file: which bytes are which characters, and which are none. */
import { findCut, load } from 'encconv';
import type { Problem } from 'encconv';
import type { Cell, Input, Reading } from '../protocol';
import { hex } from '../../common/format';
import { pieces, type Task } from './task';
import { TextReader } from './text_reader';

/** How far behind the stretch the end of its last character is looked for. */
const LONGEST_CHARACTER = 16;
const REPLACEMENT = '\uFFFD';
/** How far in front of the stretch a place is looked for where a text can begin. */
const BEFORE = 1 << 18;
const LONGEST_MARK = 4;

/** Divides bytes of which some are bad, and the text that came of them, into cells. */
function divide(offset: number, bytes: Uint8Array, text: string, bad: Problem[]): Cell[] {
  const cells: Cell[] = [];
  let at = offset;
  let rest = text;
  const take = (end: number, taken: string, isBad: boolean): void => {
    if (end <= at) return;
    cells.push({
      offset: at,
      bytes: bytes.slice(at - offset, end - offset),
      text: taken,
      bad: isBad,
    });
    at = end;
  };
  for (const problem of bad) {
    const mark = rest.indexOf(REPLACEMENT);
    take(problem.offset, rest.slice(0, Math.max(mark, 0)), false);
    take(problem.offset + problem.length, REPLACEMENT, true);
    rest = rest.slice(mark + 1);
  }
  take(offset + bytes.length, rest, false);
  return cells;
}

/**
 * Where reading must begin, so that what stands at a place is read as it is in the whole file: far
 * enough in front of it that damage has no effect any more, or at the beginning.
 */
async function beginOf(file: Blob, reading: Reading, place: number): Promise<number> {
  const position = place - BEFORE;
  // A mark in front may tell the byte order; misreadings are undone in the text from its beginning.
  if (position <= LONGEST_MARK || reading.misreadings.length > 0) return 0;
  const head = new Uint8Array(await file.slice(0, LONGEST_MARK).arrayBuffer());
  if (/^(00 00 )?(FE FF|FF FE)/.test(hex(head))) return 0;
  await load(reading.encoding);
  const before = new Uint8Array(await file.slice(position, place - BEFORE / 2).arrayBuffer());
  const cut = findCut(before, reading.encoding, 0, { position });
  return cut === null ? 0 : position + cut;
}

export async function look(
  { file, reading, from, size }: Input<'look'>,
  task: Task,
): Promise<Cell[]> {
  const bad: Problem[] = [];
  const first = await beginOf(file, reading, from);
  const reader = await TextReader.open(reading, {
    onProblem: (problem) => void bad.push({ ...problem, offset: first + problem.offset }),
  });
  try {
    // Where a character begins, and what a shift said, only the text in front tells.
    for await (const piece of pieces(file.slice(first, from), task)) reader.push(piece);
    bad.length = 0;

    const end = Math.min(from + size, file.size);
    const stretch = file.slice(from, Math.min(end + LONGEST_CHARACTER, file.size));
    const bytes = new Uint8Array(await stretch.arrayBuffer());
    const cells: Cell[] = [];
    let begin = 0;
    for (let at = 0; at < bytes.length && (from + at < end || begin < at); at++) {
      const text = reader.push(bytes.subarray(at, at + 1));
      if (text === '' && bad.length === 0) continue;
      cells.push(...divide(from + begin, bytes.slice(begin, at + 1), text, bad.splice(0)));
      begin = at + 1;
    }
    if (begin < bytes.length && from + bytes.length === file.size) {
      const text = reader.finish();
      cells.push(...divide(from + begin, bytes.slice(begin), text, bad.splice(0)));
    }
    return cells;
  } finally {
    reader.close();
  }
}
