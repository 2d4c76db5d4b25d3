/** Garbled text, traced back to what it was. */
import { useEffect, useId, useMemo, useState } from 'preact/hooks';
import type { Origin } from '../engine/protocol';
import { Card, Misreadings, CopyButton, Failure, Sureness } from '../common/parts';
import { useJob } from '../common/use_job';

const EXAMPLES = ['Ð¿Ñ€Ð¸Ð²ÐµÑ‚', 'ƒeƒXƒg', 'ïðèâåò', 'cafÃƒÂ©'];
/** How long nothing must be written before the text is traced, in milliseconds. */
const PAUSE = 150;

export interface TextViewProps {
  text: string;
  onText: (text: string) => void;
}

export function TextView({ text, onText }: TextViewProps) {
  const id = useId();
  const settled = useSettled(text);
  const traced = useJob(
    'trace',
    useMemo(() => (settled.trim() ? { text: settled } : null), [settled]),
  );
  return (
    <>
      <Card title="Text that reads wrongly">
        <div class="field wide">
          <label for={id}>Paste it here</label>
          <textarea
            id={id}
            rows={5}
            dir="auto"
            spellcheck={false}
            value={text}
            onInput={(event) => onText(event.currentTarget.value)}
          />
        </div>
        <p class="examples">
          Try{' '}
          {EXAMPLES.map((example) => (
            <button type="button" class="chip" key={example} onClick={() => onText(example)}>
              {example}
            </button>
          ))}
        </p>
      </Card>
      <div aria-live="polite">
        <Failure message={traced.error} />
        {traced.value && <Findings found={traced.value} isDamaged={settled.includes('\uFFFD')} />}
      </div>
    </>
  );
}

function useSettled(text: string): string {
  const [settled, setSettled] = useState(text);
  useEffect(() => {
    const timer = setTimeout(() => setSettled(text), PAUSE);
    return () => clearTimeout(timer);
  }, [text]);
  return settled;
}

function Findings({ found, isDamaged }: { found: Origin[]; isDamaged: boolean }) {
  const [best, ...others] = found;
  return (
    <Card title="What it was">
      {best ? (
        <Finding traced={best} />
      ) : (
        <p>
          Nothing suggests that two encodings were confused: the text may be right as it is, or too
          short to tell.
        </p>
      )}
      {isDamaged && (
        <p class="note">
          The text has replacement characters (�). What stood there is lost; the file that it came
          from may still have it.
        </p>
      )}
      {others.length > 0 && (
        <details>
          <summary>Other possibilities</summary>
          {others.map((traced) => (
            <Finding key={traced.text} traced={traced} />
          ))}
        </details>
      )}
    </Card>
  );
}

function Finding({ traced: { text, misreadings, confidence } }: { traced: Origin }) {
  return (
    <article class="finding">
      <p class="mended" dir="auto">
        {text}
      </p>
      <p class="how">
        <span>
          <Misreadings misreadings={misreadings} />
        </span>
        <Sureness confidence={confidence} />
        <CopyButton text={text} />
      </p>
    </article>
  );
}
