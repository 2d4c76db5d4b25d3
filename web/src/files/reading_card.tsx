/** How a file reads: all problems of it, and text and bytes side by side. */
import { useMemo, useState } from 'preact/hooks';
import type { Problem, Reading, Survey } from '../engine/protocol';
import { count, hex } from '../common/format';
import { Card, Failure, Progress } from '../common/parts';
import { useJob } from '../common/use_job';
import { BytesTable } from './bytes_table';

/** Bytes that are shown at a time. */
const STRETCH = 512;
/** What is shown in front of a problem. */
const CONTEXT = 64;

interface ReadingCardProps {
  file: File;
  reading: Reading;
}

export function ReadingCard({ file, reading }: ReadingCardProps) {
  const input = useMemo(() => ({ file, reading }), [file, reading]);
  const survey = useJob('survey', input);
  const [from, setFrom] = useState(0);
  const [problem, setProblem] = useState<Problem | null>(null);
  const stretch = useMemo(() => ({ ...input, from, size: STRETCH }), [input, from]);
  const look = useJob('look', stretch);

  const show = (chosen: Problem): void => {
    setProblem(chosen);
    const before = Math.max(0, chosen.offset - CONTEXT);
    setFrom(before - (before % 16));
  };
  const end = Math.min(from + STRETCH, file.size);
  return (
    <Card title="Text and bytes">
      <div aria-live="polite">
        {survey.isRunning && <Progress label="Reading" done={survey.progress} />}
        <Failure message={survey.error} />
        {survey.value && <Outcome survey={survey.value} reading={reading} />}
      </div>
      {survey.value && <Problems problems={survey.value.problems} shown={problem} onShow={show} />}
      <Failure message={look.error} />
      <BytesTable cells={look.value ?? []} from={from} end={end} marked={problem} />
      {file.size > STRETCH && (
        <nav class="pager" aria-label="Parts of the file">
          <button type="button" disabled={from === 0} onClick={() => setFrom(0)}>
            Beginning
          </button>
          <button
            type="button"
            disabled={from === 0}
            onClick={() => setFrom(Math.max(0, from - STRETCH))}
          >
            Back
          </button>
          <span aria-live="polite">
            Bytes {from} to {end - 1} of {file.size}
          </span>
          <button type="button" disabled={end === file.size} onClick={() => setFrom(end)}>
            On
          </button>
        </nav>
      )}
    </Card>
  );
}

function Outcome({ survey, reading }: { survey: Survey; reading: Reading }) {
  const { problemCount, problems, lines, unmended } = survey;
  const [first] = problems;
  return (
    <>
      {problemCount === 0 ? (
        <p class="good">
          All of it is text in {reading.encoding}: {count(lines, 'line')}, no errors.
        </p>
      ) : (
        <p class="bad">
          {problemCount === 1 && first?.cut
            ? `The file ends within a character: ${hex(first.bytes)} begins one. ` +
              'Everything before it is text.'
            : `${count(problemCount, 'place')} cannot be read in ${reading.encoding}` +
              `${problems.at(-1)?.cut ? '; the last one is a character that the end of the file cuts' : ''}.`}
        </p>
      )}
      {unmended > 0 && (
        <p class="bad">{count(unmended, 'character')} could not be mended and is marked �.</p>
      )}
    </>
  );
}

interface ProblemsProps {
  problems: Problem[];
  shown: Problem | null;
  onShow: (problem: Problem) => void;
}

function Problems({ problems, shown, onShow }: ProblemsProps) {
  if (problems.length === 0) return null;
  const index = shown ? problems.indexOf(shown) : -1;
  const step = (by: number): void => {
    const next = problems[index + by];
    if (next) onShow(next);
  };
  return (
    <nav class="pager" aria-label="Errors">
      <button type="button" disabled={index <= 0} onClick={() => step(-1)}>
        Previous error
      </button>
      <span aria-live="polite">
        {shown
          ? `Error ${index + 1} of ${problems.length}: byte ${shown.offset}, line ${shown.line}, ` +
            `${hex(shown.bytes)}${shown.cut ? ', cut off' : ''}`
          : count(problems.length, 'error')}
      </span>
      <button type="button" disabled={index === problems.length - 1} onClick={() => step(1)}>
        {shown ? 'Next error' : 'Show the first error'}
      </button>
    </nav>
  );
}
