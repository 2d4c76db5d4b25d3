/** 16 by 16 codes, through which the arrow keys lead. */
import { useEffect, useRef, useState } from 'preact/hooks';
import type { Code } from '../engine/protocol';
import { codePoints, hexByte, invisibleName, visible } from '../common/format';

const SIDE = 16;
const DIGITS = Array.from({ length: SIDE }, (_, digit) => digit);

const STEPS: Record<string, number> = {
  ArrowLeft: -1,
  ArrowRight: 1,
  ArrowUp: -SIDE,
  ArrowDown: SIDE,
};

interface ChartGridProps {
  codes: Code[];
  chosen: number | null;
  onChoose: (byte: number) => void;
}

export function ChartGrid({ codes, chosen, onChoose }: ChartGridProps) {
  const grid = useRef<HTMLTableElement>(null);
  const [current, setCurrent] = useState(chosen ?? 0);
  useEffect(() => setCurrent(chosen ?? 0), [chosen, codes]);

  const focus = (byte: number): void => {
    setCurrent(byte);
    grid.current?.querySelector<HTMLElement>(`[data-byte="${byte}"]`)?.focus();
  };
  const onKey = (event: KeyboardEvent): void => {
    const byte = Number((event.target as HTMLElement).dataset.byte);
    const next = byte + (STEPS[event.key] ?? NaN);
    if (next >= 0 && next < SIDE * SIDE) focus(next);
    else if (event.key === 'Enter' || event.key === ' ') onChoose(byte);
    else return;
    event.preventDefault();
  };
  return (
    <div class="scroll">
      <table ref={grid} class="chart" role="grid" aria-label="Codes" onKeyDown={onKey}>
        <thead>
          <tr>
            <td />
            {DIGITS.map((digit) => (
              <th scope="col" key={digit}>
                {digit.toString(16).toUpperCase()}
              </th>
            ))}
          </tr>
        </thead>
        <tbody>
          {DIGITS.map((row) => (
            <tr key={row}>
              <th scope="row">{row.toString(16).toUpperCase()}</th>
              {DIGITS.map((column) => {
                const byte = row * SIDE + column;
                return (
                  <CodeCell
                    key={byte}
                    code={codes[byte]!}
                    byte={byte}
                    isChosen={byte === chosen}
                    isCurrent={byte === current}
                    onClick={() => {
                      setCurrent(byte);
                      onChoose(byte);
                    }}
                  />
                );
              })}
            </tr>
          ))}
        </tbody>
      </table>
    </div>
  );
}

interface CodeCellProps {
  code: Code;
  byte: number;
  isChosen: boolean;
  isCurrent: boolean;
  onClick: () => void;
}

function CodeCell({ code, byte, isChosen, isCurrent, onClick }: CodeCellProps) {
  const name = code.kind === 'character' ? invisibleName(code.text) : null;
  return (
    <td
      class={`${code.kind} ${name ? 'named' : ''}`}
      data-byte={byte}
      tabIndex={isCurrent ? 0 : -1}
      aria-selected={isChosen}
      aria-label={`${hexByte(byte)}: ${describe(code)}`}
      title={describe(code)}
      onClick={onClick}
    >
      {code.kind === 'character' ? (name ?? visible(code.text)) : SIGNS[code.kind]}
    </td>
  );
}

const SIGNS = { more: '›', shift: '⇄', none: '' };

function describe({ kind, text }: Code): string {
  if (kind === 'character') return `${text} ${codePoints(text)}`;
  if (kind === 'more') return 'more bytes follow';
  return kind === 'shift' ? 'changes what follows' : 'nothing';
}
