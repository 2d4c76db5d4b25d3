/**
 * Writes the page a second time, as one file that needs no other: scripts and styles in the document,
 * WebAssembly and tables packed by gzip and as base64.
 */
import { statSync, writeFileSync } from 'node:fs';
import { gzipSync } from 'node:zlib';
import type { Plugin } from 'vite';
import { PARTS_FOLDER } from './library_parts';

/** All that a page without a network needs; connections are refused by the browser then. */
const POLICY = [
  "default-src 'none'",
  "script-src 'unsafe-inline' 'wasm-unsafe-eval' blob:",
  'worker-src blob:',
  "style-src 'unsafe-inline'",
  'img-src data:',
].join('; ');

/** A script in a document must not hold what would end it. */
const embeddable = (script: string): string => script.replaceAll('</script', '<\\/script');

const textOf = (source: string | Uint8Array): string => Buffer.from(source).toString();

export function oneFile(path: string): Plugin {
  return {
    name: 'one-file',
    apply: 'build',
    writeBundle(_, bundle) {
      let html = '';
      let style = '';
      let script = '';
      let worker = '';
      const parts: Record<string, string> = {};
      for (const [name, file] of Object.entries(bundle)) {
        if (file.type === 'chunk') {
          script = file.code;
        } else if (name.startsWith(PARTS_FOLDER)) {
          const packed = gzipSync(file.source, { level: 9 });
          parts[name.slice(PARTS_FOLDER.length)] = packed.toString('base64');
        } else if (name.endsWith('.html')) {
          html = textOf(file.source);
        } else if (name.endsWith('.css')) {
          style = textOf(file.source);
        } else if (name.endsWith('.js')) {
          worker = textOf(file.source);
        }
      }
      const head = [
        `<meta http-equiv="Content-Security-Policy" content="${POLICY}">`,
        `<style>${style}</style>`,
      ];
      const scripts = [
        `<script type="text/plain" id="encconv-worker">${embeddable(worker)}</script>`,
        `<script type="application/json" id="encconv-parts">${JSON.stringify(parts)}</script>`,
        `<script type="module">${embeddable(script)}</script>`,
      ];
      const page = html
        .replace(/\s*<(script|link)\b[^>]*(src|href)="\.\/assets\/[^>]*>(<\/script>)?/g, '')
        .replace('<meta charset="utf-8" />', (charset) => [charset, ...head].join('\n'))
        .replace('</body>', () => [...scripts, '</body>'].join('\n'));
      writeFileSync(path, page);
      this.info(`${path}: ${(statSync(path).size / 1e6).toFixed(2)} MB`);
    },
  };
}
