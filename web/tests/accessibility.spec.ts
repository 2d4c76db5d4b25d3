/** The page without a mouse, and before a checker of accessibility. */
import AxeBuilder from '@axe-core/playwright';
import type { Locator, Page } from '@playwright/test';
import { card, choose, expect, sample, taken, test } from './support/page';

const VIEWS: Record<string, (page: Page) => Promise<void>> = {
  empty: async () => undefined,
  file: async (page) => {
    await choose(page, 'cut.txt', sample('japanese.932').subarray(0, 101));
    await choose(page, 'russian.txt', sample('russian.1251'));
    await expect(card(page, 'Text and bytes')).toContainText('Byte');
    await page.getByRole('button', { name: 'Convert and download' }).click();
    await expect(card(page, 'Convert')).toContainText('Converted');
  },
  records: async (page) => {
    await choose(page, 'accounts.vb', sample('accounts.vb.37'));
    await expect(page.locator('.records')).toContainText('HARTLEY');
  },
  text: async (page) => {
    await page.getByRole('link', { name: 'Garbled text' }).click();
    await page.getByRole('button', { name: 'ïðèâåò' }).click();
    await expect(card(page, 'What it was')).toContainText('привет');
  },
  codes: async (page) => {
    await page.getByRole('link', { name: 'Code pages' }).click();
    await page.getByLabel('A character, or several').fill('ﷺ');
    await page.keyboard.press('Enter');
    await page.getByRole('button', { name: 'Show in the chart of' }).first().click();
    await expect(page.locator('[aria-selected=true]')).toBeVisible();
  },
};

const LOOKS = {
  light: { colorScheme: 'light', viewport: { width: 1100, height: 800 } },
  dark: { colorScheme: 'dark', viewport: { width: 1100, height: 800 } },
  phone: { colorScheme: 'light', viewport: { width: 360, height: 740 } },
} as const;

for (const [look, options] of Object.entries(LOOKS)) {
  test.describe(look, () => {
    test.use(options);
    for (const [view, show] of Object.entries(VIEWS)) {
      test(`nothing is wrong with the view: ${view}`, async ({ page }) => {
        await show(page);
        const { violations } = await new AxeBuilder({ page }).analyze();
        expect(violations.map(({ id, nodes }) => [id, nodes.map(({ html }) => html)])).toEqual([]);
        const width = await page.evaluate(() => document.documentElement.scrollWidth);
        expect(width).toBeLessThanOrEqual(options.viewport.width);
      });
    }
  });
}

/** Goes on with Tab until something is focused. */
async function tabTo(page: Page, wanted: Locator): Promise<void> {
  for (let presses = 0; presses < 60; presses++) {
    await page.keyboard.press('Tab');
    if (await wanted.evaluate((element) => element === document.activeElement)) return;
  }
  throw new Error(`the keyboard does not reach ${String(wanted)}`);
}

test('a file is opened, read otherwise and converted by the keyboard alone', async ({ page }) => {
  // The browser has to know that somebody waits for its dialog well before a key opens that.
  page.on('filechooser', () => undefined);
  await page.keyboard.press('Tab');
  await expect(page.getByRole('link', { name: 'Skip to content' })).toBeFocused();
  await page.keyboard.press('Enter');
  await tabTo(page, page.getByLabel('Choose files'));
  const [chooser] = await Promise.all([
    page.waitForEvent('filechooser'),
    page.keyboard.press('Space'),
  ]);
  await chooser.setFiles({
    name: 'letter.txt',
    mimeType: 'text/plain',
    buffer: sample('russian.1251'),
  });
  await expect(taken(page)).toContainText('windows-1251');
  await tabTo(page, page.getByRole('radio', { name: /windows-1251/ }));
  await page.keyboard.press('ArrowDown');
  await expect(taken(page)).not.toContainText('windows-1251');
  await page.keyboard.press('ArrowUp');
  await tabTo(page, page.getByLabel('To', { exact: true }));
  await page.keyboard.type('utf-16le');
  await tabTo(page, page.getByRole('button', { name: 'Convert and download' }));
  const [download] = await Promise.all([
    page.waitForEvent('download'),
    page.keyboard.press('Enter'),
  ]);
  expect(download.suggestedFilename()).toBe('letter.utf-16le.txt');
});
