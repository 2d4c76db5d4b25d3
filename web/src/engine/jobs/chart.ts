/** What each byte of an encoding means, at the beginning or behind others. */
import { Decoder, load } from 'encconv';
import type { Code, Input } from '../protocol';

const ESCAPE = '\u001B';

export async function chart({ encoding, prefix }: Input<'chart'>): Promise<Code[]> {
  await load(encoding);
  const decoder = new Decoder(encoding, { errors: 'substitute' });
  const bytes = new Uint8Array([...prefix, 0]);
  const before = decoder.push(bytes.subarray(0, prefix.length)).length;
  decoder.finish();

  const readCode = (last: number): Code => {
    bytes[prefix.length] = last;
    const read = decoder.push(bytes).slice(before);
    const isWrong = decoder.problemCount > 0;
    const text = read + decoder.finish();
    const isOpen = read === '' && !isWrong;
    // Bytes behind an escape that begin no sequence with it are read as if it stood alone.
    const isEscape = prefix.length > 0 && text.startsWith(ESCAPE);
    if (isWrong || (isEscape && !isOpen)) return { kind: 'none', text: '', isOpen };
    if (isEscape || decoder.problemCount > 0) return { kind: 'more', text: '', isOpen };
    return { kind: text ? 'character' : 'shift', text, isOpen };
  };
  try {
    return Array.from({ length: 256 }, (_, last) => readCode(last));
  } finally {
    decoder.close();
  }
}
