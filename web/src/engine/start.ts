/**
 * Starts the worker. Its script is a file beside the page, or, in the page that is one file, a part of
 * the document, as are WebAssembly and tables.
 */
import type { InlinedParts } from './protocol';

/** The element that holds the script of the worker; `build/one_file.ts` puts it there. */
const WORKER_ELEMENT = 'encconv-worker';
/** The element that holds the other parts, as JSON. */
const PARTS_ELEMENT = 'encconv-parts';

export function startWorker(): Worker {
  const script = document.getElementById(WORKER_ELEMENT)?.textContent;
  if (script) {
    return new Worker(URL.createObjectURL(new Blob([script], { type: 'text/javascript' })));
  }
  return new Worker(new URL('./worker.ts', import.meta.url), { type: 'module' });
}

export function readInlinedParts(): InlinedParts | null {
  const element = document.getElementById(PARTS_ELEMENT);
  const parts = element?.textContent ? (JSON.parse(element.textContent) as InlinedParts) : null;
  element?.remove();
  return parts;
}
