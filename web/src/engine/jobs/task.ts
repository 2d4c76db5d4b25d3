/** What a job can say of itself while it runs, and be told. */
export interface Task {
  signal: AbortSignal;
  /** Tells the part that is done, from 0 to 1. */
  report: (done: number) => void;
}

/** Bytes that are in memory at a time. */
const PIECE = 1 << 20;

/** The bytes of a file, piece by piece, from its beginning or a place on; throws when cancelled. */
export async function* pieces(
  file: Blob,
  { signal, report }: Task,
  from = 0,
): AsyncGenerator<Uint8Array> {
  for (let offset = from; offset < file.size; offset += PIECE) {
    signal.throwIfAborted();
    yield new Uint8Array(await file.slice(offset, offset + PIECE).arrayBuffer());
    report(Math.min(1, (offset + PIECE) / file.size));
  }
}
