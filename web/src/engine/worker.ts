/** The worker: does the jobs of `protocol.ts`, several at a time, and tells how far it is. */
import { chart } from './jobs/chart';
import { convert } from './jobs/convert';
import { inspect, preview } from './jobs/inspect';
import { listEncodings, loadLibrary, trace } from './jobs/library';
import { look } from './jobs/look';
import { readRecords, writeRecordsFile } from './jobs/records';
import { search } from './jobs/search';
import { survey } from './jobs/survey';
import type { FromWorker, Input, JobName, Output, ToWorker } from './protocol';
import type { Task } from './jobs/task';

const jobs: { [K in JobName]: (input: Input<K>, task: Task) => Promise<Output<K>> } = {
  encodings: listEncodings,
  inspect,
  preview,
  survey,
  look,
  convert,
  trace,
  records: readRecords,
  recordsFile: writeRecordsFile,
  chart,
  search,
};

const running = new Map<number, AbortController>();
let ready: Promise<void> | undefined;

const answer = (message: FromWorker): void => self.postMessage(message);

async function work<K extends JobName>(id: number, job: K, input: Input<K>): Promise<void> {
  const controller = new AbortController();
  running.set(id, controller);
  try {
    await ready;
    const report = (progress: number): void => answer({ id, progress });
    answer({ id, output: await jobs[job](input, { signal: controller.signal, report }) });
  } catch (error) {
    answer({ id, error: error instanceof Error ? error.message : String(error) });
  } finally {
    running.delete(id);
  }
}

self.onmessage = ({ data }: MessageEvent<ToWorker>) => {
  if ('parts' in data) ready = loadLibrary(data.parts);
  else if ('cancel' in data) running.get(data.cancel)?.abort();
  else void work(data.id, data.job, data.input);
};
