// Texts and bytes that come in pieces, from one encoding to another.
import { core, kPieceSize, registryOf, textOf, viewOf, type Pointer } from "./core.js";
import {
  begin, ConversionError, describe, failureOf, join, kAllProblems, kFromText, kStop, kToText, kUtf16, pieceOf,
  push, readProblems, requestOf, Status, takeOutput, type Request, type Side,
} from "./requests.js";
import type { Bytes, EncodingName, Problem, StreamOptions } from "./types.js";

// Conversions whose object was collected.
const collected = registryOf((conversion) => core().deleteConversion(conversion));

abstract class Stream<Input, Output extends Side> {
  #conversion: Pointer;
  #isOpen = false;
  // What was counted until it was closed.
  #problemCount = 0;
  #approximationCount = 0;
  readonly #request: Request;
  readonly #onProblem: ((problem: Problem) => void) | undefined;

  protected constructor(request: Request, onProblem: ((problem: Problem) => void) | undefined) {
    this.#request = request;
    this.#onProblem = onProblem;
    this.#conversion = core().makeConversion();
    if (this.#conversion === 0) throw new RangeError("encconv: out of memory");
    collected?.register(this, this.#conversion, this);
    this.#begin();
  }
  #begin(): void {
    begin(this.#conversion, this.#request);
    this.#isOpen = true;
  }

  /** Converts the next piece; a few bytes at its end may wait for more. */
  push(piece: Input): Output {
    return this.#push(this.toSide(piece), false);
  }
  /** Converts what waited, and ends the text. A further piece begins another one. */
  finish(): Output {
    return this.#push(this.toSide(undefined), true);
  }
  /** How many pieces of the text could not be converted so far. */
  get problemCount(): number {
    return this.#conversion === 0 ? this.#problemCount : core().problemCount(this.#conversion);
  }
  /** For how many of its characters others were written. */
  get approximationCount(): number {
    return this.#conversion === 0 ? this.#approximationCount : core().approximationCount(this.#conversion);
  }
  /** Gives its memory back at once; without it, once the object is collected. */
  close(): void {
    if (this.#conversion === 0) return;
    collected?.unregister(this);
    this.#problemCount = this.problemCount;
    this.#approximationCount = this.approximationCount;
    core().deleteConversion(this.#conversion);
    this.#conversion = 0;
  }

  protected abstract toSide(piece: Input | undefined): Side;

  #push(input: Side, isEnd: boolean): Output {
    const { flags } = this.#request;
    const outputs: Side[] = [];
    for (let at = 0; ; at += kPieceSize) {
      // A listener may have closed it between two pieces.
      if (this.#conversion === 0) throw new Error("encconv: the stream is closed");
      if (!this.#isOpen) this.#begin();
      const isLast = input.length - at <= kPieceSize;
      const status = push(this.#conversion, pieceOf(input, at, at + kPieceSize), isEnd && isLast);
      outputs.push(takeOutput(flags));
      if (status !== Status.kGood) this.#fail(status, outputs);
      // Before a listener throws.
      if (isEnd && isLast) this.#isOpen = false;
      if (core().problemRowCount(this.#conversion) !== 0) this.#tell(readProblems(this.#conversion));
      if (isLast) break;
    }
    return join(outputs, flags) as Output;
  }
  #tell(problems: Problem[]): void {
    for (const problem of problems) this.#onProblem?.(problem);
  }
  #fail(status: number, outputs: Side[]): never {
    this.#isOpen = false;
    const problems = readProblems(this.#conversion);
    const problem = problems.pop();
    if (status !== Status.kStopped || problem === undefined) throw failureOf(status, this.#request);
    this.#tell(problems);
    const output = join(outputs, this.#request.flags);
    throw new ConversionError(problem, describe(problem, this.#request), output);
  }
}

function streamRequest(from: EncodingName, to: EncodingName, flags: number, options: StreamOptions): Request {
  // Without a listener, the one problem that stops the stream is all that is asked for.
  const most = options.onProblem === undefined ? 1 : (options.maxProblems ?? kAllProblems);
  return requestOf(from, to, flags, options, kStop, most);
}

/** Bytes that come in pieces to text. */
export class Decoder extends Stream<Bytes, string> {
  constructor(encoding: EncodingName, options: StreamOptions = {}) {
    super(streamRequest(encoding, kUtf16, kToText, options), options.onProblem);
  }
  protected toSide(piece: Bytes | undefined): Side {
    return piece === undefined ? new Uint8Array(0) : viewOf(piece);
  }
}
/** Text that comes in pieces to bytes. */
export class Encoder extends Stream<string, Uint8Array> {
  constructor(encoding: EncodingName, options: StreamOptions = {}) {
    super(streamRequest(kUtf16, encoding, kFromText, options), options.onProblem);
  }
  protected toSide(piece: string | undefined): Side {
    return piece === undefined ? "" : textOf(piece);
  }
}
/** Bytes that come in pieces to bytes. */
export class Converter extends Stream<Bytes, Uint8Array> {
  constructor(from: EncodingName, to: EncodingName, options: StreamOptions = {}) {
    super(streamRequest(from, to, 0, options), options.onProblem);
  }
  protected toSide(piece: Bytes | undefined): Side {
    return piece === undefined ? new Uint8Array(0) : viewOf(piece);
  }
}

function transformOf<Input, Output extends Side>(stream: Stream<Input, Output>): TransformStream<Input, Output> {
  return new TransformStream<Input, Output>({
    transform(piece, controller) {
      const output = stream.push(piece);
      if (output.length !== 0) controller.enqueue(output);
    },
    flush(controller) {
      const output = stream.finish();
      if (output.length !== 0) controller.enqueue(output);
      stream.close();
    },
  });
}
/** A Decoder between a stream of bytes and one of strings. */
export function decoderStream(encoding: EncodingName, options: StreamOptions = {}): TransformStream<Bytes, string> {
  return transformOf(new Decoder(encoding, options));
}
/** An Encoder between a stream of strings and one of bytes. */
export function encoderStream(encoding: EncodingName, options: StreamOptions = {}): TransformStream<string, Uint8Array> {
  return transformOf(new Encoder(encoding, options));
}
/** A Converter between two streams of bytes. */
export function converterStream(from: EncodingName, to: EncodingName,
                                options: StreamOptions = {}): TransformStream<Bytes, Uint8Array> {
  return transformOf(new Converter(from, to, options));
}
