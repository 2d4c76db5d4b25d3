// For Node.js: files are read beside the module, at once.
import { readFileSync } from "node:fs";
import { setPlatform } from "./core.js";

// A Buffer over the memory, which is good until that grows.
let buffer = Buffer.alloc(0);
function bufferOf(memory: ArrayBuffer): Buffer {
  if (buffer.buffer !== memory) buffer = Buffer.from(memory);
  return buffer;
}

setPlatform({
  readFile: (name) => readFileSync(new URL(name, import.meta.url)),
  readUtf16: (memory, begin, bytes) => bufferOf(memory).toString("utf16le", begin, begin + bytes),
  writeUtf16: (text, memory, begin) => {
    bufferOf(memory).write(text, begin, text.length * 2, "utf16le");
  },
});

export * from "./index.js";
