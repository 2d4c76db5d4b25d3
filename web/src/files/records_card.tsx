/** Records of a mainframe file as a table. */
import { useId, useMemo, useState } from 'preact/hooks';
import { run } from '../engine/client';
import type { RecordShape, RecordsRequest, RecordTable } from '../engine/protocol';
import { download } from '../common/download';
import { count } from '../common/format';
import { Card, Failure, Progress } from '../common/parts';
import { useJob } from '../common/use_job';

/** Rows that are shown. */
const LIMIT = 100;
const EXAMPLE = 'id 1 5 zoned:unsigned\nname 6 24 text\nbalance 30 6 packed:scale=2';

interface RecordsCardProps {
  file: File;
  shape: RecordShape | null;
  encoding: string;
}

export function RecordsCard(props: RecordsCardProps) {
  const { shape, encoding } = props;
  const [isWanted, setWanted] = useState(shape !== null);
  // Other files have line ends; only those of mainframes are offered as records.
  if (!shape && !/^(IBM|EBCDIC|cp|x-EBCDIC)/i.test(encoding)) return null;
  if (isWanted) return <Records {...props} />;
  return (
    <p>
      <button type="button" onClick={() => setWanted(true)}>
        Read it as mainframe records
      </button>
    </p>
  );
}

function Records({ file, shape, encoding }: RecordsCardProps) {
  const [format, setFormat] = useState(shape?.format ?? 'fixed:80');
  const [fields, setFields] = useState('');
  const [failure, setFailure] = useState<string>();
  const [written, setWritten] = useState<number | null>(null);
  const request = useMemo(
    (): RecordsRequest => ({ file, format, encoding, fields }),
    [file, format, encoding, fields],
  );
  const { value, error } = useJob(
    'records',
    useMemo(() => ({ ...request, limit: LIMIT }), [request]),
  );
  const save = (): void => {
    setFailure(undefined);
    setWritten(0);
    run('recordsFile', request, { onProgress: setWritten })
      .then(
        (blob) => download(blob, `${file.name}.csv`),
        (reason: Error) => setFailure(reason.message),
      )
      .finally(() => setWritten(null));
  };
  return (
    <Card title="Records">
      <div class="fields">
        <FormatFields format={format} onFormat={setFormat} />
        <LayoutField fields={fields} onFields={setFields} />
      </div>
      <div aria-live="polite">
        <Failure message={error ?? failure} />
      </div>
      {value && (
        <>
          <Table table={value} />
          {written === null ? (
            <button type="button" class="main" onClick={save}>
              Download all as CSV
            </button>
          ) : (
            <Progress label="Writing" done={written} />
          )}
        </>
      )}
    </Card>
  );
}

function FormatFields({
  format,
  onFormat,
}: {
  format: string;
  onFormat: (format: string) => void;
}) {
  const id = useId();
  const [form, length] = format.split(':');
  return (
    <>
      <div class="field">
        <label for={id}>Each record</label>
        <select
          id={id}
          value={form}
          onChange={({ currentTarget: { value } }) =>
            onFormat(value === 'fixed' ? 'fixed:80' : value)
          }
        >
          <option value="fixed">has the same length</option>
          <option value="rdw">stands behind its length (RDW)</option>
          <option value="bdw">stands behind its length, in blocks (BDW)</option>
        </select>
      </div>
      {form === 'fixed' && (
        <div class="field">
          <label for={`${id}-length`}>Bytes of a record</label>
          <input
            id={`${id}-length`}
            type="number"
            min={1}
            max={1 << 20}
            value={length}
            onInput={({ currentTarget: { valueAsNumber } }) => {
              if (valueAsNumber > 0) onFormat(`fixed:${valueAsNumber}`);
            }}
          />
        </div>
      )}
    </>
  );
}

function LayoutField({ fields, onFields }: { fields: string; onFields: (fields: string) => void }) {
  const id = useId();
  return (
    <div class="field wide">
      <label for={id}>Fields: name, first byte, length, type; one a line</label>
      <textarea
        id={id}
        rows={4}
        spellcheck={false}
        placeholder={EXAMPLE}
        value={fields}
        aria-describedby={`${id}-hint`}
        onChange={({ currentTarget: { value } }) => onFields(value)}
      />
      <span id={`${id}-hint`} class="hint">
        Types are text, packed, zoned and binary; scale=2 means two decimals, unsigned no sign.
        Without fields each record is shown as text, and packed and binary numbers in it are not.
      </span>
    </div>
  );
}

function Table({ table: { columns, rows, problems } }: { table: RecordTable }) {
  return (
    <>
      {problems.length > 0 && (
        <details class="bad" open>
          <summary>{count(problems.length, 'place')} cannot be read</summary>
          <ul>
            {problems.map((problem) => (
              <li key={problem}>{problem}</li>
            ))}
          </ul>
        </details>
      )}
      <div class="scroll" tabIndex={0} role="region" aria-label="Table of records">
        <table class="records">
          <thead>
            <tr>
              <th scope="col">#</th>
              {columns.map((column) => (
                <th scope="col" key={column}>
                  {column}
                </th>
              ))}
            </tr>
          </thead>
          <tbody>
            {rows.map((row, index) => (
              <tr key={index}>
                <th scope="row">{index + 1}</th>
                {row.map((cell, column) => (
                  <td key={column} dir="auto">
                    {cell}
                  </td>
                ))}
              </tr>
            ))}
          </tbody>
        </table>
      </div>
      <p class="hint">
        {rows.length === LIMIT
          ? `The first ${LIMIT} records; the download has all.`
          : count(rows.length, 'record')}
      </p>
    </>
  );
}
