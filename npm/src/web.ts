// For browsers and everything else with fetch: files are fetched beside the module.
import { setPlatform } from "./core.js";

const decoder = new TextDecoder("utf-16le", { ignoreBOM: true });
// Below this, a string is made faster unit by unit.
const kShortUnits = 32;

setPlatform({
  async readFile(name) {
    const response = await fetch(new URL(name, import.meta.url));
    if (!response.ok) throw new Error(`encconv: ${name} could not be loaded: ${response.status}`);
    return new Uint8Array(await response.arrayBuffer());
  },
  readUtf16(memory, begin, bytes) {
    if (bytes > 2 * kShortUnits) return decoder.decode(new Uint8Array(memory, begin, bytes));
    return String.fromCharCode(...new Uint16Array(memory.slice(begin, begin + bytes)));
  },
  writeUtf16(text, memory, begin) {
    const units = new Uint16Array(memory, begin, text.length);
    for (let i = 0; i < text.length; ++i) units[i] = text.charCodeAt(i);
  },
});

export * from "./index.js";
