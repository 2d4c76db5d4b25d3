/** Bytes and the characters that they are, side by side. */
import { useEffect, useMemo, useState } from 'preact/hooks';
import type { Cell, Problem } from '../engine/protocol';
import { codePoints, hex, hexByte, invisibleName } from '../common/format';

/** Below this width of the window rows are half as long. */
const NARROW = '(max-width: 640px)';

interface BytesTableProps {
  cells: Cell[];
  from: number;
  end: number;
  /** The problem that the user asked for. */
  marked: Problem | null;
}

interface Row {
  offset: number;
  bytes: { byte: number; cell: Cell }[];
  /** The characters that begin in the row. */
  cells: Cell[];
}

function rowsOf(cells: Cell[], from: number, end: number, length: number): Row[] {
  const rows: Row[] = [];
  for (let offset = from; offset < end; offset += length)
    rows.push({ offset, bytes: [], cells: [] });
  for (const cell of cells) {
    cell.bytes.forEach((byte, index) => {
      const row = rows[Math.floor((cell.offset + index - from) / length)];
      row?.bytes.push({ byte, cell });
    });
    rows[Math.max(0, Math.floor((cell.offset - from) / length))]?.cells.push(cell);
  }
  return rows;
}

export function BytesTable({ cells, from, end, marked }: BytesTableProps) {
  const length = useIsNarrow() ? 8 : 16;
  const rows = useMemo(() => rowsOf(cells, from, end, length), [cells, from, end, length]);
  const [pointed, setPointed] = useState<Cell | null>(null);

  const classOf = (cell: Cell): string => {
    const isMarked = marked && cell.bad && cell.offset === marked.offset;
    return [cell.bad && 'error', isMarked && 'marked', cell === pointed && 'pointed']
      .filter(Boolean)
      .join(' ');
  };
  const cellProps = (cell: Cell) => ({
    class: classOf(cell),
    title: describe(cell),
    onMouseEnter: () => setPointed(cell),
  });
  return (
    <div class="scroll" tabIndex={0} role="region" aria-label="Table of bytes">
      <table class="bytes" onMouseLeave={() => setPointed(null)}>
        <thead>
          <tr>
            <th scope="col">Byte</th>
            <th scope="col">Bytes</th>
            <th scope="col">Text</th>
          </tr>
        </thead>
        <tbody>
          {rows.map((row) => (
            <tr key={row.offset}>
              <th scope="row">{row.offset}</th>
              <td>
                {row.bytes.map(({ byte, cell }, index) => (
                  <span key={index} {...cellProps(cell)}>
                    {hexByte(byte)}{' '}
                  </span>
                ))}
              </td>
              <td class="characters">
                {row.cells.map((cell) =>
                  cell.bad ? (
                    <mark key={cell.offset} {...cellProps(cell)}>
                      �
                    </mark>
                  ) : (
                    <span key={cell.offset} {...cellProps(cell)}>
                      <Characters text={cell.text} />
                    </span>
                  ),
                )}
              </td>
            </tr>
          ))}
        </tbody>
      </table>
    </div>
  );
}

function Characters({ text }: { text: string }) {
  const name = text === ' ' ? null : invisibleName(text);
  return name ? <i>{name}</i> : <>{text}</>;
}

function describe({ bytes, text, bad }: Cell): string {
  return bad ? `${hex(bytes)} is no text` : `${hex(bytes)} is ${text} ${codePoints(text)}`;
}

function useIsNarrow(): boolean {
  const [query] = useState(() => window.matchMedia(NARROW));
  const [isNarrow, setNarrow] = useState(query.matches);
  useEffect(() => {
    const follow = (): void => setNarrow(query.matches);
    query.addEventListener('change', follow);
    return () => query.removeEventListener('change', follow);
  }, [query]);
  return isNarrow;
}
