// For browsers and everything else with fetch: files are fetched beside the module.
import { setPlatform } from "./core.js";

const fromUtf16 = new TextDecoder("utf-16le", { ignoreBOM: true });
const fromUtf8 = new TextDecoder("utf-8", { ignoreBOM: true });

function writeUnits(text: string, units: Uint16Array): void {
  for (let i = 0; i < text.length; ++i) units[i] = text.charCodeAt(i);
}

setPlatform({
  async readFile(name) {
    const response = await fetch(new URL(name, import.meta.url));
    if (!response.ok) throw new Error(`encconv: ${name} could not be loaded: ${response.status}`);
    return new Uint8Array(await response.arrayBuffer());
  },
  readUtf16: (memory, begin, bytes) => fromUtf16.decode(memory.subarray(begin, begin + bytes)),
  readAscii: (memory, begin, bytes) => fromUtf8.decode(memory.subarray(begin, begin + bytes)),
  writeUtf16: (text, memory, begin) => writeUnits(text, new Uint16Array(memory.buffer, begin, text.length)),
  stringOfUtf16: (bytes) => fromUtf16.decode(bytes),
  utf16OfString: (text) => {
    const units = new Uint16Array(text.length);
    writeUnits(text, units);
    return new Uint8Array(units.buffer);
  },
});

export * from "./index.js";
