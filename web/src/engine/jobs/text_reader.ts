/** Reads bytes as a `Reading` says: decodes them and undoes misreadings, piece by piece. */
import { Decoder, Encoder, load } from 'encconv';
import type { Problem } from 'encconv';
import type { Reading } from '../protocol';

export interface ReaderOptions {
  /** What becomes of bytes that are no text, as the library takes it; "substitute" by default. */
  errors?: string;
  onProblem?: (problem: Problem) => void;
}

export class TextReader {
  readonly #decoder: Decoder;
  readonly #mending: { encoder: Encoder; decoder: Decoder }[] = [];

  private constructor(reading: Reading, options: ReaderOptions) {
    this.#decoder = new Decoder(reading.encoding, { errors: 'substitute', ...options });
    for (const { written, read } of reading.misreadings.toReversed()) {
      this.#mending.push({
        encoder: new Encoder(read, { errors: 'substitute' }),
        decoder: new Decoder(written, { errors: 'substitute' }),
      });
    }
  }

  static async open(reading: Reading, options: ReaderOptions = {}): Promise<TextReader> {
    await load(
      reading.encoding,
      ...reading.misreadings.flatMap(({ written, read }) => [written, read]),
    );
    return new TextReader(reading, options);
  }

  push(bytes: Uint8Array): string {
    return this.#mending.reduce(
      (text, { encoder, decoder }) => decoder.push(encoder.push(text)),
      this.#decoder.push(bytes),
    );
  }

  finish(): string {
    return this.#mending.reduce(
      (text, { encoder, decoder }) =>
        decoder.push(encoder.push(text)) + decoder.push(encoder.finish()) + decoder.finish(),
      this.#decoder.finish(),
    );
  }

  /** Characters that cannot come from the misreadings that are undone. */
  get unmended(): number {
    return this.#mending.reduce(
      (sum, { encoder, decoder }) => sum + encoder.problemCount + decoder.problemCount,
      0,
    );
  }

  close(): void {
    this.#decoder.close();
    for (const { encoder, decoder } of this.#mending) {
      encoder.close();
      decoder.close();
    }
  }
}
