// Where texts and files of records can be cut into parts that are read on their own.
import { core, inputPlace, kPieceSize, memoryView, putBytes, shrink, viewOf } from "./core.js";
import { readyNumber } from "./encodings.js";
import type { Bytes, CutOptions, EncodingName } from "./types.js";

// What the core looks at in front of the offset.
const kContext = 1 << 20;
// Bytes that are given to the core first, behind the offset, and how many times as many then.
const kAhead = 1 << 16;
const kGrowth = 8;
// So near the end of what it was given, the core leaves out places that more bytes would show.
const kUnsure = 64;
const kNone = -1, kNoFormat = -2;

/** The first place at `offset` or behind it where a piece of a text can begin that is converted on
 *  its own: in front of a character, in the state that texts begin in. `bytes` are the text or any
 *  part of it. Null where no such place is in sight. */
export function findCut(bytes: Bytes, encoding: EncodingName, offset = 0, options: CutOptions = {}): number | null {
  const all = viewOf(bytes);
  const number = readyNumber(encoding);
  const { position = 0, atCut = false, behindLine = false } = options;
  const wanted = Math.ceil(offset); // half of an odd length is a natural thing to ask for
  if (!(wanted >= 0 && wanted <= all.length)) return null;
  const begin = Math.max(0, wanted - kContext);
  const isAtCut = begin === 0 && (atCut || position === 0);
  try {
    for (let ahead = kAhead; ; ahead *= kGrowth) {
      const window = all.subarray(begin, wanted + ahead);
      const isAll = begin + window.length === all.length;
      const place = core().findCut(putBytes(window), window.length, number, wanted - begin, position + begin,
                                   isAtCut ? 1 : 0, behindLine ? 1 : 0);
      const isSure = isAll || (place !== kNone && place + kUnsure < window.length);
      if (isSure) return place === kNone ? null : begin + place;
    }
  } finally {
    shrink();
  }
}

function recordCut(window: Uint8Array, format: string, offset: number, position: number, isAtCut: boolean): number {
  const name = new TextEncoder().encode(format);
  const place = inputPlace(window.length + name.length);
  memoryView().set(window, place);
  memoryView().set(name, place + window.length);
  const cut = core().findRecordCut(place, window.length, place + window.length, name.length, offset, position,
                                   isAtCut ? 1 : 0);
  if (cut === kNoFormat) throw new RangeError(`encconv: the record format is not known: ${format}`);
  return cut;
}

/** The same for a file of records or any part of one: where a record begins, or with "bdw" a block
 *  that begins with a record. Records of a fixed length follow from `position`, and the place may lie
 *  behind the bytes; the others are told by their descriptor words from the first byte on, where a
 *  part must begin. */
export function findRecordCut(bytes: Bytes, format: string, offset = 0,
                              options: Omit<CutOptions, "behindLine"> = {}): number | null {
  const all = viewOf(bytes);
  const { position = 0, atCut = false } = options;
  const wanted = Math.ceil(offset);
  if (!(wanted >= 0 && wanted < Infinity)) return null;
  if (format.startsWith("fixed")) return recordCut(all.subarray(0, 0), format, wanted, position, atCut);
  try {
    // From cut to cut, so that the core is not given all at once.
    for (let at = 0, size = kPieceSize; ;) {
      const window = all.subarray(at, at + size);
      const isLast = at + window.length === all.length;
      const next = isLast ? wanted - at : Math.min(wanted - at, size / 2);
      const cut = recordCut(window, format, next, position + at, atCut || at !== 0);
      if (cut === kNone) {
        if (isLast) return null;
        size *= kGrowth;
      } else if (at + cut >= wanted) {
        return at + cut;
      } else {
        at += cut;
        size = kPieceSize;
      }
    }
  } finally {
    shrink();
  }
}
