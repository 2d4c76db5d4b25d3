/** Numbers and characters as people read them. */

export const hexByte = (byte: number): string => byte.toString(16).toUpperCase().padStart(2, '0');

export const hex = (bytes: Iterable<number>): string => Array.from(bytes, hexByte).join(' ');

/** Code points as "U+0416". */
export const codePoints = (text: string): string =>
  Array.from(
    text,
    (character) => `U+${character.codePointAt(0)!.toString(16).toUpperCase().padStart(4, '0')}`,
  ).join(' ');

const NUMBER = new Intl.NumberFormat('en');

export const count = (number: number, one: string, many = `${one}s`): string =>
  `${NUMBER.format(number)} ${number === 1 ? one : many}`;

export const fileSize = (bytes: number): string => {
  if (bytes < 1000) return count(bytes, 'byte');
  const [size, unit] = bytes < 1e6 ? [bytes / 1e3, 'kB'] : [bytes / 1e6, 'MB'];
  return `${size.toFixed(size < 10 ? 1 : 0)} ${unit}`;
};

/** A confidence in words. */
export function howSure(confidence: number): string {
  if (confidence >= 0.8) return 'very likely';
  return confidence >= 0.5 ? 'likely' : 'possible';
}

const CONTROL_NAMES =
  'NUL SOH STX ETX EOT ENQ ACK BEL BS HT LF VT FF CR SO SI DLE DC1 DC2 DC3 DC4 NAK SYN ETB CAN EM SUB ESC FS GS RS US SP'.split(
    ' ',
  );
const SPECIAL_NAMES: Record<string, string> = {
  '\u007F': 'DEL',
  '\u0085': 'NEL',
  '\u00A0': 'NBSP',
  '\u00AD': 'SHY',
  '\u2002': 'ENSP',
  '\u2003': 'EMSP',
  '\u3000': 'IDSP',
  '\u200B': 'ZWSP',
  '\u200C': 'ZWNJ',
  '\u200D': 'ZWJ',
  '\u200E': 'LRM',
  '\u200F': 'RLM',
  '\u2060': 'WJ',
  '\uFEFF': 'BOM',
};

/** The short name of a character that shows nothing, or null. */
export function invisibleName(text: string): string | null {
  const code = text.codePointAt(0) ?? 0;
  if ([...text].length !== 1) return null;
  return (
    CONTROL_NAMES[code] ??
    SPECIAL_NAMES[text] ??
    (/\p{Cc}|\p{Co}|\p{Cf}/u.test(text) ? code.toString(16).toUpperCase() : null)
  );
}

/** A character as it can be seen alone: marks upon a circle. */
export const visible = (text: string): string => (/^\p{M}/u.test(text) ? `\u25CC${text}` : text);

/** Text on one line: what shows nothing, as a dot. */
export const onOneLine = (text: string): string => text.replace(/[\p{Cc}\p{Zl}\p{Zp}]/gu, '·');
