/** A file of 200 MB: the page stays alive, tells how far it is, and never holds the file whole. */
import { createHash } from 'node:crypto';
import { createReadStream, createWriteStream, readFileSync } from 'node:fs';
import { once } from 'node:events';
import type { Page } from '@playwright/test';
import { card, downloaded, expect, sample, sampleText, test } from './support/page';

const SIZE = 200_000_000;
const TIMES = Math.ceil(SIZE / sample('russian.1251').length);
/** The longest that the page may not answer, in milliseconds, however busy the machine is. */
const LONGEST_PAUSE = 3000;
/**
 * How much memory the page and its worker may need, who read 200 MB and write 352 MB. Most of it is pieces
 * that wait to be collected, 90 to 175 MB however large the file is: a file that were held whole would come
 * on top of them.
 */
const MOST_MEMORY = 260e6;

async function writeRepeated(path: string, bytes: Buffer): Promise<void> {
  const file = createWriteStream(path);
  const some = Buffer.concat(Array<Buffer>(1000).fill(bytes));
  for (let left = TIMES; left > 0; left -= 1000) {
    const piece = some.subarray(0, Math.min(left, 1000) * bytes.length);
    if (!file.write(piece)) await once(file, 'drain');
  }
  file.end();
  await once(file, 'close');
}

async function hashOfFile(path: string): Promise<string> {
  const hash = createHash('sha256');
  for await (const piece of createReadStream(path)) hash.update(piece as Buffer);
  return hash.digest('hex');
}

function hashOfRepeated(text: string): string {
  const hash = createHash('sha256');
  for (let done = 0; done < TIMES; done++) hash.update(text);
  return hash.digest('hex');
}

/** Watches how long the page does not answer, and what its progress bars say. */
async function watch(page: Page): Promise<void> {
  await page.evaluate(() => {
    const seen = { pause: 0, progress: new Set<number>() };
    Object.assign(window, { seen });
    let last = performance.now();
    setInterval(() => {
      const now = performance.now();
      seen.pause = Math.max(seen.pause, now - last);
      last = now;
      for (const bar of document.querySelectorAll('progress')) seen.progress.add(bar.value);
    }, 50);
  });
}

/** The most memory that the process of the page has had, in bytes. */
async function peakMemory(page: Page): Promise<number> {
  const session = await page.context().browser()!.newBrowserCDPSession();
  const { processInfo } = await session.send('SystemInfo.getProcessInfo');
  await session.detach();
  const peaks = processInfo
    .filter(({ type }) => type === 'renderer')
    .map(({ id }) => /VmHWM:\s*(\d+) kB/.exec(readFileSync(`/proc/${id}/status`, 'utf8'))?.[1]);
  return Math.max(...peaks.map((peak) => Number(peak ?? 0) * 1024));
}

test('200 MB are read and converted without a pause', async ({ page }, info) => {
  test.setTimeout(180_000);
  const path = info.outputPath('large.txt');
  await writeRepeated(path, sample('russian.1251'));
  await watch(page);
  const before = await peakMemory(page);

  await page.getByLabel('Choose files').setInputFiles(path);
  await expect(card(page, 'Text and bytes')).toContainText('no errors', { timeout: 60_000 });
  const button = page.getByRole('button', { name: 'Convert and download' });
  const [, written] = await downloaded(page, button);

  const seen = await page.evaluate(() => {
    const { pause, progress } = (
      window as unknown as { seen: { pause: number; progress: Set<number> } }
    ).seen;
    return { pause, steps: progress.size };
  });
  expect(await hashOfFile(written)).toBe(hashOfRepeated(sampleText('russian.txt')));
  expect(seen.steps).toBeGreaterThan(10);
  expect(seen.pause).toBeLessThan(LONGEST_PAUSE);
  const cost = (await peakMemory(page)) - before;
  info.annotations.push({ type: 'memory', description: `${(cost / 1e6).toFixed(0)} MB` });
  expect(cost).toBeLessThan(MOST_MEMORY);
});

test('a conversion is cancelled', async ({ page }, info) => {
  test.setTimeout(180_000);
  const path = info.outputPath('large.txt');
  await writeRepeated(path, sample('russian.1251'));
  await page.getByLabel('Choose files').setInputFiles(path);
  const convert = card(page, 'Convert');
  await convert.getByRole('button', { name: 'Convert and download' }).click();
  await convert.getByRole('button', { name: 'Cancel' }).click();
  await expect(convert).toContainText('large.txt Cancelled.');
});
