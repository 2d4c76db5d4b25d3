/** What EBCDIC looks like, whichever its national page is. */

export const BLANK = 0x40;

/** Blanks, letters and digits, which stand at the same codes in all pages of EBCDIC. */
const IS_USUAL = new Uint8Array(256);
for (const [first, last] of [
  [BLANK, BLANK],
  [0x81, 0x89],
  [0x91, 0x99],
  [0xa2, 0xa9],
  [0xc1, 0xc9],
  [0xd1, 0xd9],
  [0xe2, 0xe9],
  [0xf0, 0xf9],
] as const) {
  IS_USUAL.fill(1, first, last + 1);
}

/** The part of usual characters from which on bytes may be EBCDIC with numbers between. */
const ENOUGH_USUAL = 0.5;
/** A run of usual characters that is too long to be one by chance. */
const LEAST_RUN = 4;

/** Whether bytes may be EBCDIC, perhaps with numbers in other forms in it. */
export function looksLikeEbcdic(bytes: Uint8Array): boolean {
  let usual = 0;
  let blanks = 0;
  for (const byte of bytes) {
    usual += IS_USUAL[byte]!;
    if (byte === BLANK) blanks++;
  }
  return usual >= bytes.length * ENOUGH_USUAL && blanks > 0;
}

/** What lies between the numbers: stretches without control characters that have words. */
export function textRuns(bytes: Uint8Array): Uint8Array {
  const runs = new Uint8Array(bytes.length);
  let size = 0;
  for (let at = 0; at < bytes.length;) {
    let end = at;
    let usual = 0;
    for (; end < bytes.length && bytes[end]! >= BLANK; end++) usual += IS_USUAL[bytes[end]!]!;
    if (usual >= LEAST_RUN) {
      runs.set(bytes.subarray(at, end), size);
      size += end - at;
    }
    at = end + 1;
  }
  return runs.subarray(0, size);
}
