// What differs between Node.js and browsers: where files come from, and how strings are made.

export interface Platform {
  /** A file of the package. A promise where it cannot be had at once. */
  readFile(name: string): Uint8Array | WebAssemblySource | Promise<Uint8Array | WebAssemblySource>;
  /** The string of UTF-16, little endian, in the core's memory. */
  readUtf16(memory: Uint8Array, begin: number, bytes: number): string;
  /** The string of ASCII there. */
  readAscii(memory: Uint8Array, begin: number, bytes: number): string;
  /** Puts a string there as UTF-16, little endian. */
  writeUtf16(text: string, memory: Uint8Array, begin: number): void;
  /** The string of bytes that are UTF-16, little endian; and its bytes. */
  stringOfUtf16(bytes: Uint8Array): string;
  utf16OfString(text: string): Uint8Array;
}

/** What a core can be made of besides its bytes. */
export type WebAssemblySource = WebAssembly.Module | Response;
