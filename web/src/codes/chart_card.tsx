/** The chart of a code page: what each byte is, at the beginning or behind others. */
import { useEffect, useMemo, useRef } from 'preact/hooks';
import type { Code } from '../engine/protocol';
import { EncodingPicker } from '../common/encodings';
import { codePoints, hex, hexByte } from '../common/format';
import { Card, Failure } from '../common/parts';
import { useJob } from '../common/use_job';
import { ChartGrid } from './chart_grid';

/** A code in a chart: the bytes in front, and the last one if one is chosen. */
export interface Place {
  encoding: string;
  prefix: number[];
  last: number | null;
}

interface ChartCardProps {
  place: Place;
  onPlace: (place: Place) => void;
}

export function ChartCard({ place, onPlace }: ChartCardProps) {
  const { encoding, prefix, last } = place;
  const { value, error } = useJob(
    'chart',
    useMemo(() => ({ encoding, prefix }), [encoding, prefix]),
  );
  const top = useRef<HTMLDivElement>(null);
  const isAsked = last !== null && prefix.length + last >= 0;
  useEffect(() => {
    if (isAsked) top.current?.scrollIntoView({ block: 'nearest' });
  }, [isAsked, encoding]);

  const open = (byte: number): void => onPlace({ encoding, prefix: [...prefix, byte], last: null });
  const choose = (byte: number): void => {
    const kind = value?.[byte]?.kind;
    if (kind === 'more' || kind === 'shift') open(byte);
    else if (kind === 'character') onPlace({ ...place, last: byte });
  };
  return (
    <Card title="Chart of a code page">
      <div ref={top} class="fields">
        <EncodingPicker
          label="Code page"
          value={encoding}
          onPick={(name) => onPlace({ encoding: name, prefix: [], last: null })}
        />
      </div>
      <Steps place={place} onPlace={onPlace} />
      <Failure message={error} />
      {value && <ChartGrid codes={value} chosen={last} onChoose={choose} />}
      <p class="chosen" aria-live="polite">
        {value && last !== null && <Chosen code={value[last]!} bytes={[...prefix, last]} />}
      </p>
      {last !== null && value?.[last]?.isOpen && (
        <button type="button" onClick={() => open(last)}>
          What follows it
        </button>
      )}
    </Card>
  );
}

/** The bytes that led here, each of which leads back. */
function Steps({ place: { encoding, prefix }, onPlace }: ChartCardProps) {
  if (prefix.length === 0) return null;
  const back = (length: number) => () =>
    onPlace({ encoding, prefix: prefix.slice(0, length), last: null });
  return (
    <nav class="pager" aria-label="First bytes">
      <button type="button" onClick={back(0)}>
        First byte
      </button>
      {prefix.map((byte, index) => (
        <button
          type="button"
          key={index}
          onClick={back(index + 1)}
          aria-current={index === prefix.length - 1 ? 'step' : undefined}
        >
          {hexByte(byte)}
        </button>
      ))}
    </nav>
  );
}

function Chosen({ code, bytes }: { code: Code; bytes: number[] }) {
  return (
    <>
      <span class="sample">{code.text}</span> {hex(bytes)} is {codePoints(code.text)}
    </>
  );
}
