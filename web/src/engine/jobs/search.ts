/** Which encodings have all characters of a text, and at which codes. */
import { canEncode, decode, encode, encodings, load } from 'encconv';
import type { Encoding } from 'encconv';
import type { Holder, Input } from '../protocol';
import type { Task } from './task';

/** The shortest beginning of the bytes that is the text: without a shift back behind it. */
function charted(bytes: Uint8Array, text: string, encoding: Encoding): number[] {
  for (let size = 1; size < bytes.length; size++) {
    const begun = bytes.subarray(0, size);
    if (decode(begun, encoding.number, { errors: 'substitute' }) === text) return [...begun];
  }
  return [...bytes];
}

export async function search({ text }: Input<'search'>, task: Task): Promise<Holder[]> {
  const holders: Holder[] = [];
  const candidates = encodings().filter(({ canEncode: can }) => can);
  for (const [index, encoding] of candidates.entries()) {
    task.signal.throwIfAborted();
    await load(encoding.number);
    if (canEncode(text, encoding.number)) {
      const bytes = encode(text, encoding.number);
      holders.push({ encoding, bytes, chart: charted(bytes, text, encoding) });
    }
    if (index % 16 === 0) task.report(index / candidates.length);
  }
  return holders;
}
