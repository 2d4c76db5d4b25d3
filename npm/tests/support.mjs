// What tests share.
import { execFile } from "node:child_process";
import { promisify } from "node:util";

// The tool of the native build, which the package has to agree with.
const kTool = process.env.ENCCONV_TOOL;
if (kTool === undefined) throw new Error("ENCCONV_TOOL names the tool to compare with");

/** What the tool writes for some bytes on its input. */
export async function runTool(options, input) {
  const running = promisify(execFile)(kTool, options, { encoding: "buffer", maxBuffer: 1 << 28 });
  running.child.stdin.on("error", () => {});
  running.child.stdin.end(input);
  const { stdout } = await running.catch((failure) => failure);
  return stdout;
}

/** Calls for each item, a few at a time. */
export async function forEach(items, call, atOnce = 2) {
  const queue = items[Symbol.iterator]();
  const work = async () => {
    for (const item of queue) await call(item);
  };
  await Promise.all(Array.from({ length: atOnce }, work));
}

/** Numbers that look random, the same each time. */
export function numbers(seed) {
  let state = seed >>> 0;
  return (limit) => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return Math.floor((state / 0x100000000) * limit);
  };
}

/** Bytes as hexadecimal digits, and back. */
export const hex = (bytes) => Buffer.from(bytes).toString("hex");
export const bytes = (digits) => Uint8Array.from(Buffer.from(digits.replaceAll(" ", ""), "hex"));
