/** Converts a file, piece by piece, into a file. */
import { ConversionError, Encoder, load } from 'encconv';
import type { Conversion, Converted, LineEnds } from '../protocol';
import { hex } from '../../common/format';
import { BlobWriter } from './blob_writer';
import { pieces, type Task } from './task';
import { TextReader } from './text_reader';

const REPLACEMENT = '\uFFFD';

/** Makes all line ends the same, in text that comes in pieces. */
function lineEndWriter(ends: LineEnds): (text: string, isEnd: boolean) => string {
  if (ends === 'keep') return (text) => text;
  const written = ends === 'lf' ? '\n' : '\r\n';
  let waiting = '';
  return (text, isEnd) => {
    let all = waiting + text;
    waiting = !isEnd && all.endsWith('\r') ? '\r' : '';
    if (waiting) all = all.slice(0, -1);
    return all.replace(/\r\n|\r|\n/g, written);
  };
}

function describeStop({ problem }: ConversionError, target: string): string {
  return problem.kind === 'malformed'
    ? `Stopped at byte ${problem.offset}, line ${problem.line}: ${hex(problem.bytes)} is no text.`
    : `Stopped at line ${problem.line}: ${target} has no “${problem.character}”.`;
}

export async function convert(request: Conversion, task: Task): Promise<Converted> {
  const { file, reading, target, lacking: treatment, lineEnds, mark } = request;
  let lacking = 0;
  let firstLacking: string | null = null;
  const reader = await TextReader.open(reading, {
    errors: treatment === 'stop' ? 'stop' : 'substitute',
  });
  await load(target);
  const encoder = new Encoder(target, {
    errors: treatment,
    byteOrderMark: mark,
    onProblem: ({ character }) => {
      if (character === REPLACEMENT && reader.malformed > 0) return;
      lacking++;
      firstLacking ??= character;
    },
  });
  const sameEnds = lineEndWriter(lineEnds);
  const output = new BlobWriter();
  try {
    for await (const piece of pieces(file, task)) {
      output.write(encoder.push(sameEnds(reader.push(piece), false)));
    }
    output.write(encoder.push(sameEnds(reader.finish(), true)));
    output.write(encoder.finish());
    return { blob: output.finish(), malformed: reader.malformed, lacking, firstLacking };
  } catch (error) {
    throw error instanceof ConversionError ? new Error(describeStop(error, target)) : error;
  } finally {
    reader.close();
    encoder.close();
  }
}
