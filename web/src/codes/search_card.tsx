/** Which encodings have a character? */
import type { TargetedSubmitEvent } from 'preact';
import { useId, useMemo, useState } from 'preact/hooks';
import type { Holder } from '../engine/protocol';
import { codePoints, count, hex, visible } from '../common/format';
import { Card, Failure, Progress } from '../common/parts';
import { useJob } from '../common/use_job';
import type { Place } from './chart_card';

/** What the user means: "U+FDFC" and "&#xFDFC;" are characters as well. */
function characters(written: string): string {
  const trimmed = written.trim() || written;
  return trimmed.replace(/(?:U\+|&#x|\\u)\{?([0-9a-f]{1,6})\}?;?\s*/gi, (whole, digits: string) => {
    const code = parseInt(digits, 16);
    return code <= 0x10ffff ? String.fromCodePoint(code) : whole;
  });
}

interface SearchCardProps {
  onShow: (place: Place) => void;
}

export function SearchCard({ onShow }: SearchCardProps) {
  const id = useId();
  const [written, setWritten] = useState('');
  const [text, setText] = useState('');
  const { value, error, progress, isRunning } = useJob(
    'search',
    useMemo(() => (text ? { text } : null), [text]),
  );
  const submit = (event: TargetedSubmitEvent<HTMLFormElement>): void => {
    event.preventDefault();
    setText(characters(written));
  };
  return (
    <Card title="Which encodings have this character?">
      <form class="fields" role="search" onSubmit={submit}>
        <div class="field">
          <label for={id}>A character, or several</label>
          <input
            id={id}
            value={written}
            autocomplete="off"
            spellcheck={false}
            placeholder="﷽ or U+FDFD"
            onInput={({ currentTarget }) => setWritten(currentTarget.value)}
          />
        </div>
        <button type="submit" class="main">
          Search
        </button>
      </form>
      <div aria-live="polite">
        {isRunning && <Progress label="Searching" done={progress} />}
        <Failure message={error} />
        {value && <Found text={text} holders={value} onShow={onShow} />}
      </div>
    </Card>
  );
}

interface FoundProps {
  text: string;
  holders: Holder[];
  onShow: (place: Place) => void;
}

function Found({ text, holders, onShow }: FoundProps) {
  const isUnicode = ({ encoding }: Holder): boolean => encoding.kind === 'unicode';
  const unicode = holders.filter(isUnicode);
  const others = holders.filter((holder) => !isUnicode(holder));
  return (
    <>
      <p class="verdict">
        <span class="sample">{visible(text)}</span> {codePoints(text)}:{' '}
        {others.length
          ? `${count(others.length, 'encoding')} besides the forms of Unicode.`
          : 'only the forms of Unicode.'}
      </p>
      <Holders holders={others} onShow={onShow} />
      {unicode.length > 0 && (
        <details>
          <summary>{count(unicode.length, 'form')} of Unicode</summary>
          <Holders holders={unicode} onShow={onShow} />
        </details>
      )}
    </>
  );
}

function Holders({ holders, onShow }: Omit<FoundProps, 'text'>) {
  if (holders.length === 0) return null;
  return (
    <div class="scroll holders" tabIndex={0} role="region" aria-label="Encodings found">
      <table>
        <thead>
          <tr>
            <th scope="col">Encoding</th>
            <th scope="col">About</th>
            <th scope="col">Bytes</th>
          </tr>
        </thead>
        <tbody>
          {holders.map(({ encoding, bytes, chart }) => (
            <tr key={encoding.number}>
              <th scope="row">
                <button
                  type="button"
                  class="link"
                  aria-label={`Show in the chart of ${encoding.name}`}
                  onClick={() =>
                    onShow({
                      encoding: encoding.name,
                      prefix: chart.slice(0, -1),
                      last: chart.at(-1)!,
                    })
                  }
                >
                  {encoding.name}
                </button>
              </th>
              <td>{encoding.title}</td>
              <td class="mono">{hex(bytes)}</td>
            </tr>
          ))}
        </tbody>
      </table>
    </div>
  );
}
