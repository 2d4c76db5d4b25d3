/** Reads all of a file and tells which places of it are no text. */
import type { Input, Problem, Survey } from '../protocol';
import { pieces, type Task } from './task';
import { TextReader } from './text_reader';

/** The most problems that are told; all are counted. */
const MOST_PROBLEMS = 1000;

function countLineEnds(text: string): number {
  let count = 0;
  for (let at = text.indexOf('\n'); at >= 0; at = text.indexOf('\n', at + 1)) count++;
  return count;
}

export async function survey({ file, reading }: Input<'survey'>, task: Task): Promise<Survey> {
  const problems: Problem[] = [];
  let isEnd = false;
  const reader = await TextReader.open(reading, {
    onProblem: ({ offset, length, bytes, line }) => {
      problems.push({ offset, length, bytes, line, cut: isEnd });
    },
    maxProblems: MOST_PROBLEMS,
  });
  try {
    let lineEnds = 0;
    let last = '';
    const count = (text: string): void => {
      lineEnds += countLineEnds(text);
      last = text.at(-1) ?? last;
    };
    for await (const piece of pieces(file, task)) count(reader.push(piece));
    isEnd = true;
    count(reader.finish());
    const lines = lineEnds + (last === '' || last === '\n' ? 0 : 1);
    return { lines, problemCount: reader.malformed, problems, unmended: reader.unmended };
  } finally {
    reader.close();
  }
}
