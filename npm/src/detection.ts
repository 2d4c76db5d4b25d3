// Finding out an encoding, and tracing garbled text back.
import { core, outputText, putBytes, shrink, textOf, viewOf, withTexts } from "./core.js";
import type { Bytes, Detection, Origin } from "./types.js";

// How much of a text is looked at: its beginning, and lines from all over the rest.
const kMostLookedAt = 32 << 20;

/** Finds out which encoding a text is in, or that it is no text. `isBeginning`: it goes on behind
 *  the bytes. Of more than 32 MiB the first are looked at. */
export function detect(bytes: Bytes, options: { isBeginning?: boolean } = {}): Detection {
  const all = viewOf(bytes);
  const seen = all.length > kMostLookedAt ? all.subarray(0, kMostLookedAt) : all;
  const isBeginning = options.isBeginning === true || seen !== all;
  core().detect(putBytes(seen), seen.length, isBeginning ? 1 : 0);
  const found = JSON.parse(outputText()) as Detection;
  shrink();
  return found;
}

/** Traces garbled text back ("Ã©tÃ©" to "été"): which encodings were mixed up, and what it was. The
 *  likeliest origin first; none when the text is likelier as it is. */
export function trace(garbled: string): Origin[] {
  withTexts([textOf(garbled)], core().trace);
  const origins = JSON.parse(outputText()) as Origin[];
  shrink();
  return origins;
}
