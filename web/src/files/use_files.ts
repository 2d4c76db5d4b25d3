/** The files that are open, and what is known of each. */
import { useCallback, useState } from 'preact/hooks';
import { run } from '../engine/client';
import type { Candidate, Inspection, Reading } from '../engine/protocol';

export interface OpenFile {
  id: number;
  file: File;
  inspection: Inspection | null;
  error: string | null;
  /** What the user took, or the likeliest; null as long as there is none. */
  reading: Reading | null;
}

export interface Files {
  list: OpenFile[];
  add: (files: File[]) => void;
  remove: (id: number) => void;
  choose: (id: number, reading: Reading) => void;
}

let lastId = 0;

const isSame = (one: Reading, other: Reading): boolean =>
  JSON.stringify(one) === JSON.stringify(other);

/** The candidate that a reading is, if it is one. */
export const candidateOf = ({ inspection, reading }: OpenFile): Candidate | undefined =>
  inspection?.candidates.find((each) => reading && isSame(each.reading, reading));

function firstReading({ candidates, records }: Inspection): Reading | null {
  return (
    candidates[0]?.reading ?? (records ? { encoding: records.encoding, misreadings: [] } : null)
  );
}

export function useFiles(): Files {
  const [list, setList] = useState<OpenFile[]>([]);

  const change = useCallback((id: number, changed: Partial<OpenFile>) => {
    setList((before) => before.map((each) => (each.id === id ? { ...each, ...changed } : each)));
  }, []);

  const add = useCallback(
    (files: File[]) => {
      const added = files.map((file): OpenFile => {
        return { id: ++lastId, file, inspection: null, error: null, reading: null };
      });
      setList((before) => [...before, ...added]);
      for (const { id, file } of added) {
        run('inspect', { file }).then(
          (inspection) => change(id, { inspection, reading: firstReading(inspection) }),
          (error: Error) => change(id, { error: error.message }),
        );
      }
    },
    [change],
  );

  const remove = useCallback((id: number) => {
    setList((before) => before.filter((each) => each.id !== id));
  }, []);

  const choose = useCallback((id: number, reading: Reading) => change(id, { reading }), [change]);

  return { list, add, remove, choose };
}
