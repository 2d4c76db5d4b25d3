/** What a file is: the encodings that it may be in, with a preview of each. */
import { useId, useMemo } from 'preact/hooks';
import type { Candidate, Inspection, Reading } from '../engine/protocol';
import { EncodingPicker, useTitle } from '../common/encodings';
import { onOneLine } from '../common/format';
import { Card, Misreadings, Sureness } from '../common/parts';
import { useJob } from '../common/use_job';
import { candidateOf, type OpenFile } from './use_files';

/** Characters of the preview of a candidate. */
const PREVIEW = 300;

interface CandidatesCardProps {
  open: OpenFile;
  onChoose: (reading: Reading) => void;
}

export function CandidatesCard({ open, onChoose }: CandidatesCardProps) {
  const { inspection, reading, file } = open;
  const group = useId();
  const taken = candidateOf(open);
  const candidates = inspection!.candidates;
  return (
    <Card title={file.name}>
      <p class="verdict">
        <Verdict inspection={inspection!} />
      </p>
      {candidates.length > 0 && (
        <fieldset class="candidates">
          <legend>{candidates.length > 1 ? 'Take the one that reads rightly' : 'It reads'}</legend>
          {candidates.map((candidate, index) => (
            <CandidateChoice
              key={index}
              group={group}
              candidate={candidate}
              isTaken={candidate === taken}
              onTake={() => onChoose(candidate.reading)}
            />
          ))}
        </fieldset>
      )}
      <details open={!taken}>
        <summary>Read it in another encoding</summary>
        <EncodingPicker
          label="Encoding"
          value={reading?.encoding ?? ''}
          onPick={(encoding) => onChoose({ encoding, misreadings: [] })}
        />
        {reading && !taken && <OtherPreview file={file} reading={reading} />}
      </details>
    </Card>
  );
}

function Verdict({ inspection }: { inspection: Inspection }) {
  const { candidates, records, reason } = inspection;
  const [first] = candidates;
  if (records) {
    return (
      <>
        These are mainframe records in EBCDIC, {shapeInWords(records.format)}. Their table is below.
      </>
    );
  }
  if (!first) {
    return (
      <>
        This seems to be no text{reason && `: ${reason}`}. If you know better, choose its encoding.
      </>
    );
  }
  const { encoding, misreadings } = first.reading;
  if (misreadings.length) {
    return (
      <>
        The text was garbled before it was saved: <Misreadings misreadings={misreadings} />. It is
        mended here.
      </>
    );
  }
  return (
    <>
      This is {first.confidence >= 0.5 ? 'most likely' : 'perhaps'} <strong>{encoding}</strong>
      {first.reason && ` (judged by ${first.reason})`}.
    </>
  );
}

function shapeInWords(format: string): string {
  if (format === 'bdw') return 'in blocks, each behind a word with its length';
  if (format === 'rdw') return 'each behind a word with its length';
  return `${format.split(':')[1]} bytes each`;
}

interface CandidateChoiceProps {
  group: string;
  candidate: Candidate;
  isTaken: boolean;
  onTake: () => void;
}

function CandidateChoice({ group, candidate, isTaken, onTake }: CandidateChoiceProps) {
  const { reading, confidence, preview } = candidate;
  const title = useTitle(reading.encoding);
  return (
    <label class="candidate">
      <input type="radio" name={group} checked={isTaken} onChange={onTake} />
      <span class="heading">
        <span>
          <strong>{reading.encoding}</strong>
          {reading.misreadings.length > 0 && ', mended'}
        </span>
        <span class="hint">{title}</span>
        <Sureness confidence={confidence} />
      </span>
      <Preview text={preview} />
    </label>
  );
}

function Preview({ text }: { text: string }) {
  return (
    <span class="preview" dir="auto">
      {onOneLine(text.slice(0, PREVIEW))}
    </span>
  );
}

function OtherPreview({ file, reading }: { file: File; reading: Reading }) {
  const { value } = useJob(
    'preview',
    useMemo(() => ({ file, reading }), [file, reading]),
  );
  return <p>{value !== undefined && <Preview text={value} />}</p>;
}
