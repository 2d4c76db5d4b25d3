/** The list of encodings, for every part of the page, and a field to choose one. */
import type { Encoding } from '../engine/protocol';
import { createContext } from 'preact';
import { useContext, useEffect, useId, useState } from 'preact/hooks';

export const Encodings = createContext<Encoding[]>([]);

const plain = (name: string): string => name.toLowerCase().replace(/[^a-z0-9]/g, '');

/** The encoding that somebody means by a name or number. */
export function findEncoding(encodings: Encoding[], name: string): Encoding | undefined {
  const wanted = plain(name);
  return (
    encodings.find(({ number, name: own }) => plain(own) === wanted || String(number) === wanted) ??
    encodings.find(({ aliases }) => aliases.some((alias) => plain(alias) === wanted))
  );
}

export function useTitle(name: string): string {
  return findEncoding(useContext(Encodings), name)?.title ?? '';
}

export interface PickerProps {
  label: string;
  value: string;
  onPick: (name: string) => void;
  /** Only encodings that can be written. */
  isTarget?: boolean;
}

/** A text field that suggests encodings; tells the name of one as soon as it is known. */
export function EncodingPicker({ label, value, onPick, isTarget = false }: PickerProps) {
  const id = useId();
  const all = useContext(Encodings);
  const [written, setWritten] = useState(value);
  useEffect(() => setWritten(value), [value]);

  const usable = all.filter(({ canDecode, canEncode }) => (isTarget ? canEncode : canDecode));
  const meant = findEncoding(usable, written);
  const pick = (text: string): void => {
    setWritten(text);
    const found = findEncoding(usable, text);
    if (found) onPick(found.name);
  };
  return (
    <div class="field">
      <label for={id}>{label}</label>
      <input
        id={id}
        list={`${id}-list`}
        value={written}
        disabled={all.length === 0}
        autocomplete="off"
        spellcheck={false}
        aria-invalid={!meant}
        aria-describedby={`${id}-hint`}
        onInput={(event) => pick(event.currentTarget.value)}
        onFocus={(event) => event.currentTarget.select()}
      />
      <datalist id={`${id}-list`}>
        {usable.map(({ number, name, title }) => (
          <option key={number} value={name} label={title} />
        ))}
      </datalist>
      <span id={`${id}-hint`} class="hint">
        {meant ? meant.title : 'A name or number, such as windows-1252 or 932'}
      </span>
    </div>
  );
}
