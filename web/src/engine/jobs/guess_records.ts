/** Guesses how a mainframe file is divided into records. */
import { BLANK, looksLikeEbcdic } from './ebcdic';

/** Bytes that are compared to find the length of records. */
const SAMPLE = 1 << 16;
const SHORTEST = 8;
const LONGEST = 4096;
/** How much better than most lengths the right one must fit. */
const CLEAR_LEAD = 1.25;

/** The length that a descriptor word tells, or 0 if it is none. */
function describedLength(bytes: Uint8Array, at: number): number {
  if (at + 4 > bytes.length || bytes[at + 2]! > 3 || bytes[at + 3] !== 0) return 0;
  const length = bytes[at]! * 256 + bytes[at + 1]!;
  return length >= 4 ? length : 0;
}

/** Whether words with lengths lead from a place to another, or to the end of what is known. */
function isChain(bytes: Uint8Array, from: number, to: number, least: number): boolean {
  let links = 0;
  let at = from;
  while (at + 4 <= Math.min(to, bytes.length)) {
    const length = describedLength(bytes, at);
    if (length === 0) return false;
    at += length;
    links++;
  }
  return links >= least && (at === to || at > bytes.length);
}

function areBlocks(bytes: Uint8Array, size: number): boolean {
  let blocks = 0;
  let at = 0;
  while (at + 4 <= bytes.length) {
    const length = describedLength(bytes, at);
    if (length < 8 || !isChain(bytes, at + 4, at + length, 1)) return false;
    at += length;
    blocks++;
  }
  return blocks > 0 && (at === size || at > bytes.length);
}

/** Kinds of bytes that stand in the same columns of records of one length. */
function kindOf(byte: number): number {
  if (byte === BLANK) return 1;
  if (byte >= 0xf0 && byte <= 0xf9) return 2;
  return byte > BLANK ? 3 : 0;
}

function agreement(kinds: Uint8Array, distance: number): number {
  let same = 0;
  for (let at = distance; at < kinds.length; at++) {
    if (kinds[at] === kinds[at - distance]) same++;
  }
  return same / (kinds.length - distance);
}

/** The length of records that all have the same, or 0. */
function guessLength(bytes: Uint8Array, size: number): number {
  const kinds = Uint8Array.from(bytes.subarray(0, SAMPLE), kindOf);
  const lengths: { length: number; agreement: number }[] = [];
  for (let length = SHORTEST; length <= Math.min(LONGEST, kinds.length / 2); length++) {
    if (size % length === 0) lengths.push({ length, agreement: agreement(kinds, length) });
  }
  const best = lengths.reduce((most, each) => Math.max(most, each.agreement), 0);
  const usual = agreement(kinds, SHORTEST + 3) + agreement(kinds, SHORTEST + 5);
  if (best * 2 < usual * CLEAR_LEAD) return 0;
  // Twice the length agrees as well as the length itself.
  return lengths.find((each) => each.agreement > best * 0.97)!.length;
}

const LINE_ENDS = new Set([0x0a, 0x0d, 0x15, 0x25]);
/** Bytes of the longest lines of a text. A number has such a byte now and then. */
const LONGEST_LINE = 150;

function hasLineEnds(bytes: Uint8Array): boolean {
  const ends = bytes.reduce((sum, byte) => sum + (LINE_ENDS.has(byte) ? 1 : 0), 0);
  return ends > bytes.length / LONGEST_LINE;
}

/** The format of records as the library takes it, or null if there seem to be none. */
export function guessRecords(bytes: Uint8Array, size: number): string | null {
  if (!looksLikeEbcdic(bytes)) return null;
  if (areBlocks(bytes, size)) return 'bdw';
  if (isChain(bytes, 0, size, 2)) return 'rdw';
  if (hasLineEnds(bytes)) return null;
  const length = guessLength(bytes, size);
  return length ? `fixed:${length}` : null;
}
