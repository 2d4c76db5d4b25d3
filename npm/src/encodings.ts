// The encodings and their table files.
import { core, outputText, putBytes, readTable, viewOf, withTexts } from "./core.js";
import type { Bytes, Encoding, EncodingName } from "./types.js";

/** Tables that an encoding needs are not there: `await load(encoding)` first. */
export class TablesMissingError extends Error {
  constructor(
    readonly encoding: string,
    readonly files: string[],
  ) {
    super(`encconv: the tables of ${encoding} are not loaded (${files.join(", ")}): await load("${encoding}") first`);
    this.name = "TablesMissingError";
  }
}

let all: Encoding[] | undefined;
let byNumber: Map<number, Encoding> | undefined;

/** All encodings, in ascending order of number. */
export function encodings(): Encoding[] {
  if (all === undefined) {
    core().encodings();
    all = JSON.parse(outputText()) as Encoding[];
    byNumber = new Map(all.map((encoding) => [encoding.number, encoding]));
  }
  return all.slice(); // callers sort it as they like
}

// Names that were asked for before.
const kMaxNames = 4096;
const numbers = new Map<EncodingName, number>();
/** The number of an encoding, or 0. */
export function findNumber(name: EncodingName): number {
  const known = numbers.get(name);
  if (known !== undefined) return known;
  const number = withTexts([String(name)], core().findEncoding);
  if (numbers.size >= kMaxNames) numbers.clear();
  numbers.set(name, number);
  return number;
}

/** The encoding of a name or number, or null. */
export function findEncoding(name: EncodingName): Encoding | null {
  encodings();
  return byNumber?.get(findNumber(name)) ?? null;
}

// ---- Tables. ----

// Encodings of which nothing is missing.
const ready = new Set<number>();
const awaited = new Map<string, Promise<void>>();

function missingTables(number: number): string[] {
  if (ready.has(number)) return [];
  core().missingTables(number);
  const files = JSON.parse(outputText()) as string[];
  if (files.length === 0) ready.add(number);
  return files;
}
function provide(file: string, bytes: Bytes): void {
  const table = viewOf(bytes).slice();
  const name = new TextEncoder().encode(file);
  const both = new Uint8Array(name.length + table.length);
  both.set(name);
  both.set(table, name.length);
  const place = putBytes(both);
  if (core().provideTable(place, name.length, place + name.length, table.length) === 0) {
    throw new Error(`encconv: ${file} is damaged, or belongs to another version (${table.length} bytes)`);
  }
}
async function fetchTable(file: string): Promise<void> {
  provide(file, await readTable(file));
}

/** The number of an encoding whose tables are all there, or can be read at once. */
export function readyNumber(name: EncodingName): number {
  const number = findNumber(name);
  if (ready.has(number)) return number;
  if (number === 0) throw new RangeError(`encconv: the encoding is not known: ${String(name)}`);
  const files = missingTables(number);
  const late = files.filter((file) => {
    const bytes = readTable(file);
    if (bytes instanceof Promise) {
      bytes.catch(() => undefined);
      return true;
    }
    provide(file, bytes);
    return false;
  });
  if (late.length !== 0) throw new TablesMissingError(findEncoding(name)?.name ?? String(name), late);
  ready.add(number);
  return number;
}

/** Sees to it that the tables of these encodings are there. */
export async function load(...names: EncodingName[]): Promise<void> {
  for (const name of names) {
    const number = findNumber(name);
    if (number === 0) throw new RangeError(`encconv: the encoding is not known: ${String(name)}`);
    await Promise.all(
      missingTables(number).map((file) => {
        let fetched = awaited.get(file);
        if (fetched === undefined) {
          fetched = fetchTable(file).finally(() => awaited.delete(file));
          awaited.set(file, fetched);
        }
        return fetched;
      }),
    );
  }
}
/** Whether they are. */
export function isLoaded(name: EncodingName): boolean {
  const number = findNumber(name);
  return number !== 0 && missingTables(number).length === 0;
}
