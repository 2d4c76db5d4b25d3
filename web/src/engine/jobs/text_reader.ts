/** Reads bytes as a `Reading` says: decodes them and undoes misreadings, piece by piece. */
import { Decoder, Encoder, load } from 'encconv';
import type { Problem } from 'encconv';
import type { Misreading, Reading } from '../protocol';

export interface ReaderOptions {
  /** What becomes of bytes that are no text, as the library takes it; "substitute" by default. */
  errors?: string;
  onProblem?: (problem: Problem) => void;
  maxProblems?: number;
}

/** A run of ISO-2022-JP whose escape characters are lost or unread, and the beginning of one at an end. */
const RUN = /[\u001B\u241B\uFFFD]?\$([@B])((?:[!-~]{2})+?)[\u001B\u241B\uFFFD]?\(([BJ])/g;
const OPEN_RUN =
  /(?:[\u001B\u241B\uFFFD]?\$(?:[@B][!-~]*(?:[\u001B\u241B\uFFFD]\(?)?)?|[\u001B\u241B\uFFFD])$/;
const LONGEST_RUN = 1000;

/** Puts escape characters back, in text that comes in pieces. */
class EscapeRestorer {
  #waiting = '';

  push(text: string, isEnd = false): string {
    const all = this.#waiting + text;
    let restored = '';
    let end = 0;
    for (const { 0: run, 1: first, 2: pairs, 3: last, index } of all.matchAll(RUN)) {
      restored += `${all.slice(end, index)}\u001B$${first}${pairs}\u001B(${last}`;
      end = index + run.length;
    }
    const rest = all.slice(end);
    const open = isEnd ? -1 : rest.search(OPEN_RUN);
    const isKept = open >= 0 && rest.length - open <= LONGEST_RUN;
    this.#waiting = isKept ? rest.slice(open) : '';
    return restored + (isKept ? rest.slice(0, open) : rest);
  }
}

/** Takes one misreading back. */
class Mender {
  readonly #restorer: EscapeRestorer | null;
  readonly #encoder: Encoder;
  readonly #decoder: Decoder;

  constructor({ written, read }: Misreading) {
    const isOfEscapes = written === 'ISO-2022-JP' && read === 'US-ASCII';
    this.#restorer = isOfEscapes ? new EscapeRestorer() : null;
    this.#encoder = new Encoder(read, { errors: 'substitute' });
    this.#decoder = new Decoder(written, { errors: 'substitute' });
  }

  push(text: string): string {
    return this.#decoder.push(this.#encoder.push(this.#restorer?.push(text) ?? text));
  }

  finish(text: string): string {
    const rest = this.#restorer?.push(text, true) ?? text;
    const mended = this.#decoder.push(this.#encoder.push(rest));
    return mended + this.#decoder.push(this.#encoder.finish()) + this.#decoder.finish();
  }

  get problemCount(): number {
    return this.#encoder.problemCount + this.#decoder.problemCount;
  }

  close(): void {
    this.#encoder.close();
    this.#decoder.close();
  }
}

export class TextReader {
  readonly #decoder: Decoder;
  readonly #menders: Mender[];

  private constructor(reading: Reading, options: ReaderOptions) {
    this.#decoder = new Decoder(reading.encoding, { errors: 'substitute', ...options });
    this.#menders = reading.misreadings.toReversed().map((misreading) => new Mender(misreading));
  }

  static async open(reading: Reading, options: ReaderOptions = {}): Promise<TextReader> {
    await load(
      reading.encoding,
      ...reading.misreadings.flatMap(({ written, read }) => [written, read]),
    );
    return new TextReader(reading, options);
  }

  push(bytes: Uint8Array): string {
    return this.#menders.reduce((text, mender) => mender.push(text), this.#decoder.push(bytes));
  }

  finish(): string {
    return this.#menders.reduce((text, mender) => mender.finish(text), this.#decoder.finish());
  }

  /** Pieces that are no text, in what was read so far. */
  get malformed(): number {
    return this.#decoder.problemCount;
  }

  /** Characters that cannot come from the misreadings that are undone. */
  get unmended(): number {
    return this.#menders.reduce((sum, { problemCount }) => sum + problemCount, 0);
  }

  close(): void {
    this.#decoder.close();
    for (const mender of this.#menders) mender.close();
  }
}
