/** Converts all open files and hands them out. */
import { downloadZip } from 'client-zip';
import { useId, useRef, useState } from 'preact/hooks';
import { run } from '../engine/client';
import type { Conversion, Converted, Lacking, LineEnds } from '../engine/protocol';
import { download } from '../common/download';
import { EncodingPicker } from '../common/encodings';
import { count } from '../common/format';
import { Card, Progress } from '../common/parts';
import type { OpenFile } from './use_files';

const LACKING: Record<Lacking, string> = {
  stop: 'stop, and say where',
  'translit,substitute': 'write it with similar letters, or ?',
  substitute: 'write ?',
  hex: 'write &#x…;',
  drop: 'leave it out',
};
const LINE_ENDS: Record<LineEnds, string> = {
  keep: 'as they are',
  lf: 'LF (Unix, Mac)',
  crlf: 'CR LF (Windows)',
};

interface Outcome {
  name: string;
  message: string;
  isGood: boolean;
}

interface Converting {
  name: string;
  done: number;
}

/** The name of a converted file: report.txt becomes report.utf-8.txt. */
function nameFor(name: string, target: string): string {
  const dot = name.lastIndexOf('.');
  const stem = dot > 0 ? name.slice(0, dot) : name;
  return `${stem}.${target.toLowerCase()}${dot > 0 ? name.slice(dot) : ''}`;
}

function describe({ malformed, lacking, firstLacking }: Converted, target: string): string {
  const parts = [
    malformed && `${count(malformed, 'place')} of it was no text`,
    lacking &&
      `${target} lacks ${count(lacking, 'character')}, the first one ${firstLacking ?? 'unknown'}`,
  ].filter(Boolean);
  return parts.length ? `Converted; ${parts.join('; ')}.` : 'Converted.';
}

/** Names that are not twice the same. */
function distinct(names: string[]): string[] {
  const seen = new Map<string, number>();
  return names.map((name) => {
    const times = seen.get(name) ?? 0;
    seen.set(name, times + 1);
    return times ? `${times + 1}-${name}` : name;
  });
}

export function ConvertCard({ list }: { list: OpenFile[] }) {
  const [target, setTarget] = useState('UTF-8');
  const [lacking, setLacking] = useState<Lacking>('stop');
  const [lineEnds, setLineEnds] = useState<LineEnds>('keep');
  const [mark, setMark] = useState(false);
  const [converting, setConverting] = useState<Converting | null>(null);
  const [outcomes, setOutcomes] = useState<Outcome[]>([]);
  const controller = useRef<AbortController | null>(null);
  const ready = list.filter(({ reading, file }) => reading && file.size > 0);

  const convertOne = async ({ file, reading }: OpenFile): Promise<Blob | null> => {
    const wanted: Conversion = { file, reading: reading!, target, lacking, lineEnds, mark };
    const { name } = file;
    const tell = (message: string, isGood: boolean): void =>
      setOutcomes((before) => [...before, { name, message, isGood }]);
    try {
      const converted = await run('convert', wanted, {
        signal: controller.current!.signal,
        onProgress: (done) => setConverting({ name, done }),
      });
      tell(describe(converted, target), converted.malformed + converted.lacking === 0);
      return converted.blob;
    } catch (error) {
      const { name: kind, message } = error as Error;
      tell(kind === 'AbortError' ? 'Cancelled.' : message, false);
      return null;
    }
  };

  const convertAll = async (): Promise<void> => {
    controller.current = new AbortController();
    setOutcomes([]);
    const names = distinct(ready.map(({ file }) => nameFor(file.name, target)));
    const done: { name: string; input: Blob }[] = [];
    for (const [index, open] of ready.entries()) {
      if (controller.current.signal.aborted) break;
      setConverting({ name: open.file.name, done: 0 });
      const blob = await convertOne(open);
      if (blob) done.push({ name: names[index]!, input: blob });
    }
    setConverting(null);
    if (controller.current.signal.aborted) return;
    if (done.length === 1) download(done[0]!.input, done[0]!.name);
    if (done.length > 1) download(await downloadZip(done).blob(), 'converted.zip');
  };

  return (
    <Card title="Convert">
      <div class="fields">
        <EncodingPicker label="To" value={target} onPick={setTarget} isTarget />
        <Choice
          label="A character that it lacks"
          options={LACKING}
          value={lacking}
          onChoose={setLacking}
        />
        <Choice label="Line ends" options={LINE_ENDS} value={lineEnds} onChoose={setLineEnds} />
        <label class="check">
          <input
            type="checkbox"
            checked={mark}
            onChange={({ currentTarget }) => setMark(currentTarget.checked)}
          />
          Begin with a byte order mark (Unicode only)
        </label>
      </div>
      {converting ? (
        <div class="actions">
          <Progress label={`Converting ${converting.name}`} done={converting.done} />
          <button type="button" onClick={() => controller.current?.abort()}>
            Cancel
          </button>
        </div>
      ) : (
        <button
          type="button"
          class="main"
          disabled={!ready.length}
          onClick={() => void convertAll()}
        >
          {ready.length > 1 ? `Convert and download ${ready.length} files` : 'Convert and download'}
        </button>
      )}
      <ul class="outcomes" aria-live="polite">
        {outcomes.map(({ name, message, isGood }, index) => (
          <li key={index} class={isGood ? 'good' : 'bad'}>
            <strong>{name}</strong> {message}
          </li>
        ))}
      </ul>
    </Card>
  );
}

interface ChoiceProps<T extends string> {
  label: string;
  options: Record<T, string>;
  value: T;
  onChoose: (value: T) => void;
}

function Choice<T extends string>({ label, options, value, onChoose }: ChoiceProps<T>) {
  const id = useId();
  return (
    <div class="field">
      <label for={id}>{label}</label>
      <select
        id={id}
        value={value}
        onChange={({ currentTarget }) => onChoose(currentTarget.value as T)}
      >
        {Object.entries<string>(options).map(([name, words]) => (
          <option key={name} value={name}>
            {words}
          </option>
        ))}
      </select>
    </div>
  );
}
