/** A job of the worker as the state of a component. */
import { useEffect, useState } from 'preact/hooks';
import { run } from '../engine/client';
import type { Input, JobName, Output } from '../engine/protocol';

export type JobState<T> = { value?: T; error?: string; progress: number; isRunning: boolean };

/**
 * Runs a job whenever its input changes; the one before is cancelled. Nothing runs without input.
 * Inputs must be kept (useMemo, state), since they are compared by identity.
 */
export function useJob<K extends JobName>(job: K, input: Input<K> | null): JobState<Output<K>> {
  const [state, setState] = useState<JobState<Output<K>>>({ progress: 0, isRunning: false });
  useEffect(() => {
    if (!input) {
      setState({ progress: 0, isRunning: false });
      return;
    }
    const controller = new AbortController();
    const ifWanted = (next: JobState<Output<K>>): void => {
      if (!controller.signal.aborted) setState(next);
    };
    ifWanted({ progress: 0, isRunning: true });
    run(job, input, {
      signal: controller.signal,
      onProgress: (progress) => ifWanted({ progress, isRunning: true }),
    }).then(
      (value) => ifWanted({ value, progress: 1, isRunning: false }),
      (error: Error) => ifWanted({ error: error.message, progress: 0, isRunning: false }),
    );
    return () => controller.abort();
  }, [job, input]);
  return state;
}
