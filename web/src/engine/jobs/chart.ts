/** What each byte of an encoding means, at the beginning or behind others. */
import { Decoder, load } from 'encconv';
import type { Code, Input } from '../protocol';

export async function chart({ encoding, prefix }: Input<'chart'>): Promise<Code[]> {
  await load(encoding);
  const decoder = new Decoder(encoding, { errors: 'substitute' });
  const bytes = new Uint8Array([...prefix, 0]);
  const before = decoder.push(bytes.subarray(0, prefix.length)).length;
  decoder.finish();

  const readCode = (last: number): Code => {
    bytes[prefix.length] = last;
    const read = decoder.push(bytes);
    const isWrong = decoder.problemCount > 0;
    const text = (read + decoder.finish()).slice(before);
    if (isWrong) return { kind: 'none', text: '' };
    if (decoder.problemCount > 0) return { kind: 'more', text: '' };
    return text ? { kind: 'character', text } : { kind: 'shift', text: '' };
  };
  try {
    return Array.from({ length: 256 }, (_, last) => readCode(last));
  } finally {
    decoder.close();
  }
}
