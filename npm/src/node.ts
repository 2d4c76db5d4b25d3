// For Node.js: files are read beside the module, at once.
import { readFileSync } from "node:fs";
import { setPlatform } from "./core.js";

// A Buffer over the memory of the core, which is another one when that has grown.
let seen: Uint8Array | undefined;
let buffer: Buffer;
function bufferOf(memory: Uint8Array): Buffer {
  if (seen !== memory) {
    buffer = Buffer.from(memory.buffer);
    seen = memory;
  }
  return buffer;
}

setPlatform({
  readFile: (name) => readFileSync(new URL(name, import.meta.url)),
  readUtf16: (memory, begin, bytes) => bufferOf(memory).toString("utf16le", begin, begin + bytes),
  readAscii: (memory, begin, bytes) => bufferOf(memory).toString("latin1", begin, begin + bytes),
  writeUtf16: (text, memory, begin) => {
    bufferOf(memory).write(text, begin, text.length * 2, "utf16le");
  },
  stringOfUtf16: (bytes) => Buffer.from(bytes.buffer, bytes.byteOffset, bytes.length).toString("utf16le"),
  utf16OfString: (text) => {
    // Not of the pool of small buffers, which nobody expects behind an array.
    const bytes = Buffer.allocUnsafeSlow(text.length * 2);
    bytes.write(text, "utf16le");
    return new Uint8Array(bytes.buffer);
  },
});

export * from "./index.js";
