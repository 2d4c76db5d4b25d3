import { defineConfig } from 'vite';
import { libraryParts } from './build/library_parts';
import { oneFile } from './build/one_file';

export default defineConfig({
  // Addresses are relative, so that the page works in any folder of a server.
  base: './',
  build: {
    outDir: 'dist/site',
    target: ['chrome111', 'firefox115', 'safari16.4'],
    modulePreload: false,
  },
  esbuild: { jsx: 'automatic', jsxImportSource: 'preact' },
  worker: { format: 'iife' },
  plugins: [libraryParts(), oneFile('dist/encconv.html')],
});
