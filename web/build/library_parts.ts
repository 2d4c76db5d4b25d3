/** The WebAssembly package's files that the worker asks for, as files of the site. */
import { readdirSync, readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { dirname, join } from 'node:path';
import type { Plugin } from 'vite';

/** The folder of the site that they are in. */
export const PARTS_FOLDER = 'encconv/';

const CORE = 'core.wasm';
const TABLES = 'tables';

function readParts(): [name: string, bytes: Uint8Array][] {
  const folder = dirname(createRequire(import.meta.url).resolve('encconv/core.wasm'));
  const names = [CORE, ...readdirSync(join(folder, TABLES)).map((name) => `${TABLES}/${name}`)];
  return names.map((name) => [name, readFileSync(join(folder, name))]);
}

export function libraryParts(): Plugin {
  return {
    name: 'library-parts',
    apply: 'build',
    generateBundle() {
      for (const [name, source] of readParts()) {
        this.emitFile({ type: 'asset', fileName: PARTS_FOLDER + name, source });
      }
    },
  };
}
