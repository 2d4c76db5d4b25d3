/** The page: its three views, and what is dropped or pasted anywhere in it. */
import { useEffect, useState } from 'preact/hooks';
import { CodesView } from './codes/codes_view';
import { FilesView } from './files/files_view';
import { useFiles } from './files/use_files';
import { Encodings } from './common/encodings';
import { useJob } from './common/use_job';
import { TextView } from './text/text_view';

const VIEWS = { files: 'Files', text: 'Garbled text', codes: 'Code pages' } as const;
type View = keyof typeof VIEWS;

function viewOfAddress(): View {
  const name = location.hash.slice(1).split('/')[0]!;
  return name in VIEWS ? (name as View) : 'files';
}

const NO_INPUT = {};
/** Characters from which on pasted text is looked at as a file: fields would be slow with it. */
const LARGE = 100_000;

/** Whether a paste goes where the user writes. */
const isWriting = (target: EventTarget | null): boolean =>
  target instanceof HTMLElement && target.matches('input, textarea, [contenteditable]');

export function App() {
  const [view, setView] = useState(viewOfAddress);
  // What was written in a view stays there while others are looked at.
  const [seen, setSeen] = useState([view]);
  if (!seen.includes(view)) setSeen([...seen, view]);
  const [text, setText] = useState('');
  const files = useFiles();
  const list = useJob('encodings', NO_INPUT);
  const { add } = files;

  useEffect(() => {
    const follow = (): void => setView(viewOfAddress());
    const take = (data: DataTransfer | null, event: Event): void => {
      const pasted = data?.getData('text/plain') ?? '';
      const isLarge = pasted.length > LARGE;
      if (data?.files.length || isLarge) {
        add(isLarge ? [new File([pasted], 'pasted.txt')] : [...data!.files]);
        location.hash = 'files';
      } else if (pasted && !isWriting(event.target)) {
        setText(pasted);
        location.hash = 'text';
      } else {
        return;
      }
      event.preventDefault();
    };
    const onDrop = (event: DragEvent): void => take(event.dataTransfer, event);
    const onPaste = (event: ClipboardEvent): void => take(event.clipboardData, event);
    const allowDrop = (event: DragEvent): void => event.preventDefault();
    window.addEventListener('hashchange', follow);
    window.addEventListener('drop', onDrop);
    window.addEventListener('dragover', allowDrop);
    window.addEventListener('paste', onPaste);
    return () => {
      window.removeEventListener('hashchange', follow);
      window.removeEventListener('drop', onDrop);
      window.removeEventListener('dragover', allowDrop);
      window.removeEventListener('paste', onPaste);
    };
  }, [add]);

  return (
    <Encodings.Provider value={list.value ?? []}>
      <a class="skip" href="#main" onClick={skipToMain}>
        Skip to content
      </a>
      <header>
        <div class="title">
          <h1>What became of this text?</h1>
          <p>Find out why a file or text reads wrongly, mend it, convert it.</p>
        </div>
        <nav aria-label="Views">
          {Object.entries(VIEWS).map(([name, label]) => (
            <a key={name} href={`#${name}`} aria-current={name === view ? 'page' : undefined}>
              {label}
            </a>
          ))}
        </nav>
      </header>
      <main id="main" tabIndex={-1}>
        {list.error && <p class="failure">The page could not be loaded: {list.error}</p>}
        {seen.map((each) => (
          <div key={each} class="view" hidden={each !== view}>
            {each === 'files' && <FilesView files={files} />}
            {each === 'text' && <TextView text={text} onText={setText} />}
            {each === 'codes' && <CodesView />}
          </div>
        ))}
      </main>
      <footer>
        <p>Nothing that you open leaves this computer: the page works without a network.</p>
      </footer>
    </Encodings.Provider>
  );
}

function skipToMain(event: Event): void {
  event.preventDefault();
  document.getElementById('main')!.focus();
}
