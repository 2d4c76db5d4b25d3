/** Files: what they are, how they read, and what they become. */
import { useId, useState } from 'preact/hooks';
import { fileSize } from '../common/format';
import { Card, Failure } from '../common/parts';
import { CandidatesCard } from './candidates_card';
import { ConvertCard } from './convert_card';
import { ReadingCard } from './reading_card';
import { RecordsCard } from './records_card';
import type { Files, OpenFile } from './use_files';

export function FilesView({ files }: { files: Files }) {
  const { list, add, remove, choose } = files;
  const [shownId, setShownId] = useState<number | null>(null);
  const shown = list.find(({ id }) => id === shownId) ?? list[0];
  return (
    <>
      <DropZone onFiles={add} isEmpty={list.length === 0} />
      {list.length > 0 && (
        <FileList list={list} shown={shown} onShow={setShownId} onRemove={remove} />
      )}
      <p class="unseen" role="status">
        {shown && `${shown.file.name}: ${summary(shown)}`}
      </p>
      {shown && <FileCards key={shown.id} open={shown} onChoose={choose} />}
      {list.some(({ reading }) => reading) && <ConvertCard list={list} />}
    </>
  );
}

function DropZone({ onFiles, isEmpty }: { onFiles: (files: File[]) => void; isEmpty: boolean }) {
  const id = useId();
  const [isOver, setOver] = useState(false);
  return (
    <div
      class={`drop ${isEmpty ? 'empty' : ''} ${isOver ? 'over' : ''}`}
      onDragEnter={() => setOver(true)}
      onDragLeave={() => setOver(false)}
      onDrop={() => setOver(false)}
    >
      <input
        id={id}
        type="file"
        multiple
        class="chooser"
        onChange={({ currentTarget }) => {
          onFiles([...(currentTarget.files ?? [])]);
          currentTarget.value = '';
        }}
      />
      <label for={id}>{isEmpty ? 'Choose files' : 'More files'}</label>
      <p>or drop them anywhere on this page, or paste a file or a garbled text.</p>
    </div>
  );
}

interface FileListProps {
  list: OpenFile[];
  shown: OpenFile | undefined;
  onShow: (id: number) => void;
  onRemove: (id: number) => void;
}

function FileList({ list, shown, onShow, onRemove }: FileListProps) {
  return (
    <ul class="files" aria-label="Open files">
      {list.map((open) => (
        <li key={open.id} class={open === shown ? 'shown' : ''}>
          <button
            type="button"
            class="name"
            aria-pressed={open === shown}
            onClick={() => onShow(open.id)}
          >
            <strong>{open.file.name}</strong>
            <span>
              {fileSize(open.file.size)}, {summary(open)}
            </span>
          </button>
          <button
            type="button"
            class="remove"
            aria-label={`Close ${open.file.name}`}
            onClick={() => onRemove(open.id)}
          >
            ×
          </button>
        </li>
      ))}
    </ul>
  );
}

function summary({ inspection, reading, error }: OpenFile): string {
  if (error) return 'cannot be read';
  if (!inspection) return 'looking…';
  if (!reading) return 'no text';
  return reading.misreadings.length ? `${reading.encoding}, mended` : reading.encoding;
}

interface FileCardsProps {
  open: OpenFile;
  onChoose: Files['choose'];
}

function FileCards({ open, onChoose }: FileCardsProps) {
  const { inspection, reading, file } = open;
  if (open.error) return <Failure message={`${file.name} cannot be read: ${open.error}`} />;
  if (!inspection) return <p>Looking at {file.name}…</p>;
  if (file.size === 0) {
    return (
      <Card title={file.name}>
        <p>The file is empty.</p>
      </Card>
    );
  }
  return (
    <>
      <CandidatesCard open={open} onChoose={(chosen) => onChoose(open.id, chosen)} />
      {reading && (
        <RecordsCard file={file} shape={inspection.records} encoding={reading.encoding} />
      )}
      {reading && <ReadingCard file={file} reading={reading} />}
    </>
  );
}
