/** Output of any size, which the browser keeps. */

/** Output that is handed to the browser at a time, which keeps it out of the worker's memory. */
const OUTPUT_PIECE = 4 << 20;

/** Collects output as parts of a Blob. */
export class BlobWriter {
  readonly #parts: Blob[] = [];
  #pieces: Uint8Array<ArrayBuffer>[] = [];
  #size = 0;

  write(bytes: Uint8Array): void {
    this.#pieces.push(bytes as Uint8Array<ArrayBuffer>);
    this.#size += bytes.length;
    if (this.#size >= OUTPUT_PIECE) this.#flush();
  }

  finish(type = ''): Blob {
    this.#flush();
    return new Blob(this.#parts, { type });
  }

  #flush(): void {
    this.#parts.push(new Blob(this.#pieces));
    this.#pieces = [];
    this.#size = 0;
  }
}
