/** The page as a user has it: the one file, opened from disk. */
import { readFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { test as base, expect, type Locator, type Page } from '@playwright/test';

export const ONE_FILE = new URL('../../dist/encconv.html', import.meta.url).href;
const SAMPLES = new URL('../../../tests/data/', import.meta.url);

export const samplePath = (name: string): string => fileURLToPath(new URL(name, SAMPLES));
export const sample = (name: string): Buffer => readFileSync(samplePath(name));
export const sampleText = (name: string): string => sample(name).toString('utf8');

/** A page that is open, and on which nothing may fail that nobody sees. */
export const test = base.extend({
  page: async ({ page }, use) => {
    const failures: string[] = [];
    page.on('pageerror', (error) => failures.push(error.message));
    page.on('console', (message) => {
      if (message.type() === 'error') failures.push(message.text());
    });
    await page.goto(ONE_FILE);
    await use(page);
    expect(failures).toEqual([]);
  },
});

export { expect };

/** Chooses files by the button. */
export async function choose(page: Page, name: string, bytes: Buffer): Promise<void> {
  const file = { name, mimeType: 'application/octet-stream', buffer: bytes };
  await page.getByLabel(/Choose files|More files/).setInputFiles(file);
}

/** Drops files on the page, or pastes them. */
export async function hand(
  page: Page,
  way: 'drop' | 'paste',
  files: Record<string, Buffer>,
): Promise<void> {
  const coded = Object.entries(files).map(([name, bytes]) => [name, bytes.toString('base64')]);
  await page.evaluate(
    ([event, all]) => {
      const data = new DataTransfer();
      for (const [name, base64] of all) {
        const bytes = Uint8Array.from(atob(base64!), (c) => c.charCodeAt(0));
        data.items.add(new File([bytes], name!));
      }
      const init = { bubbles: true, cancelable: true };
      document.body.dispatchEvent(
        event === 'drop'
          ? new DragEvent('drop', { ...init, dataTransfer: data })
          : new ClipboardEvent('paste', { ...init, clipboardData: data }),
      );
    },
    [way, coded] as const,
  );
}

export const card = (page: Page, name: string | RegExp): Locator =>
  page.getByRole('region', { name }).filter({ has: page.getByRole('heading') });

/** The choice of an encoding that is taken. */
export const taken = (page: Page): Locator => page.locator('.candidate:has(:checked)');

/** What is in the bytes table, without what stands for line ends. */
export const shownText = async (page: Page): Promise<string> =>
  (await page.locator('.bytes .characters').allTextContents()).join('');

/** What a click downloads. */
export async function downloaded(page: Page, button: Locator): Promise<[string, string]> {
  const [download] = await Promise.all([page.waitForEvent('download'), button.click()]);
  return [download.suggestedFilename(), await download.path()];
}

export const textAt = (path: string): string => readFileSync(path, 'utf8');
