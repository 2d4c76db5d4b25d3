/** Small parts that several views show. */
import type { ComponentChildren } from 'preact';
import { useId, useState } from 'preact/hooks';
import type { Misreading } from '../engine/protocol';
import { howSure } from './format';

export function Card({ title, children }: { title: string; children: ComponentChildren }) {
  const id = useId();
  return (
    <section class="card" aria-labelledby={id}>
      <h2 id={id}>{title}</h2>
      {children}
    </section>
  );
}

export function Progress({ label, done }: { label: string; done: number }) {
  return (
    <p class="progress">
      <progress value={done} max={1} aria-label={label} />
      <span>
        {label} {Math.round(done * 100)} %
      </span>
    </p>
  );
}

export function Failure({ message }: { message: string | undefined }) {
  return message ? (
    <p class="failure" role="alert">
      {message}
    </p>
  ) : null;
}

export function Sureness({ confidence }: { confidence: number }) {
  return (
    <span class="sure">
      <span class="bar" aria-hidden="true">
        <span style={{ width: `${confidence * 100}%` }} />
      </span>
      {howSure(confidence)}, {Math.round(confidence * 100)} %
    </span>
  );
}

/** What happened to a text, in the order in which it did. */
export function Misreadings({ misreadings }: { misreadings: Misreading[] }) {
  return (
    <>
      {misreadings.map(({ written, read }, index) => (
        <span key={index}>
          {index > 0 && ', and then '}
          <strong>{written}</strong> was read as <strong>{read}</strong>
        </span>
      ))}
    </>
  );
}

export function CopyButton({ text }: { text: string }) {
  const [isDone, setDone] = useState(false);
  const copy = async (): Promise<void> => {
    await navigator.clipboard.writeText(text);
    setDone(true);
    setTimeout(() => setDone(false), 2000);
  };
  return (
    <button type="button" onClick={() => void copy()}>
      <span aria-live="polite">{isDone ? 'Copied' : 'Copy'}</span>
    </button>
  );
}
