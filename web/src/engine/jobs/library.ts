/** The library in the worker: where its parts come from, and what it does by itself. */
import { encodings, init, trace as traceText } from 'encconv';
import type { Encoding, Input, InlinedParts, Origin } from '../protocol';

async function inflate(packed: string): Promise<Uint8Array> {
  const bytes = Uint8Array.from(atob(packed), (character) => character.charCodeAt(0));
  const plain = new Blob([bytes]).stream().pipeThrough(new DecompressionStream('gzip'));
  return new Uint8Array(await new Response(plain).arrayBuffer());
}

async function fetchPart(name: string): Promise<Uint8Array> {
  const answer = await fetch(new URL(`../encconv/${name}`, self.location.href));
  if (!answer.ok) throw new Error(`${name}: ${answer.status} ${answer.statusText}`);
  return new Uint8Array(await answer.arrayBuffer());
}

/** Loads the core of the library; tables follow when an encoding needs them. */
export function loadLibrary(parts: InlinedParts | null): Promise<void> {
  const read = (name: string): Promise<Uint8Array> => {
    const part = parts?.[name];
    return part === undefined ? fetchPart(name) : inflate(part);
  };
  return init({ core: read('core.wasm'), tables: (file) => read(`tables/${file}`) });
}

export function listEncodings(): Promise<Encoding[]> {
  return Promise.resolve(encodings());
}

export function trace({ text }: Input<'trace'>): Promise<Origin[]> {
  return Promise.resolve(traceText(text));
}
