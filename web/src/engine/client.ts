/** The page's side of the worker: jobs as promises. */
import { readInlinedParts, startWorker } from './start';
import type { FromWorker, Input, JobName, Output, ToWorker } from './protocol';

export interface JobOptions {
  signal?: AbortSignal;
  /** Called with the part that is done, from 0 to 1. */
  onProgress?: (done: number) => void;
}

interface Waiting {
  resolve: (output: never) => void;
  reject: (reason: Error) => void;
  onProgress: ((done: number) => void) | undefined;
}

let worker: Worker | undefined;
let lastId = 0;
const waiting = new Map<number, Waiting>();

function send(message: ToWorker): void {
  if (!worker) {
    worker = startWorker();
    worker.onmessage = (event: MessageEvent<FromWorker>) => receive(event.data);
    worker.onerror = (event) => {
      for (const job of waiting.values()) job.reject(new Error(event.message));
      waiting.clear();
    };
    worker.postMessage({ parts: readInlinedParts() } satisfies ToWorker);
  }
  worker.postMessage(message);
}

function receive(message: FromWorker): void {
  const job = waiting.get(message.id);
  if (!job) return;
  if ('progress' in message) {
    job.onProgress?.(message.progress);
    return;
  }
  waiting.delete(message.id);
  if ('error' in message) job.reject(new Error(message.error));
  else job.resolve(message.output as never);
}

/** Has the worker do a job. Rejects when the job fails, or with AbortError when it is cancelled. */
export function run<K extends JobName>(
  job: K,
  input: Input<K>,
  { signal, onProgress }: JobOptions = {},
): Promise<Output<K>> {
  const id = ++lastId;
  return new Promise((resolve, reject) => {
    signal?.throwIfAborted();
    waiting.set(id, { resolve, reject, onProgress });
    signal?.addEventListener('abort', () => {
      if (waiting.delete(id)) send({ cancel: id });
      reject(signal.reason as Error);
    });
    send({ id, job, input } as ToWorker);
  });
}
