/** Takes the pictures of the documentation; PICTURES is the folder that they go to. */
import type { Page } from '@playwright/test';
import { card, choose, expect, sample, test } from './support/page';

const FOLDER = process.env.PICTURES;
test.skip(!FOLDER, 'only when pictures are wanted');

const take = (page: Page, name: string, height: number): Promise<unknown> =>
  page.screenshot({
    path: `${FOLDER}/${name}.png`,
    clip: { x: 0, y: 0, width: page.viewportSize()!.width, height },
    fullPage: true,
    animations: 'disabled',
  });

test.describe('light', () => {
  test.use({ viewport: { width: 900, height: 900 } });
  test('a file that is cut', async ({ page }) => {
    await choose(page, 'letter.txt', sample('japanese.932').subarray(0, 331));
    await page.getByRole('button', { name: 'Show the first error' }).click();
    await expect(page.locator('mark.marked')).toBeVisible();
    await take(page, 'page-light', 1060);
  });
});

test.describe('dark', () => {
  test.use({ viewport: { width: 900, height: 900 }, colorScheme: 'dark' });
  test('a chart', async ({ page }) => {
    await page.getByRole('link', { name: 'Code pages' }).click();
    await page.getByLabel('A character, or several').fill('Ж');
    await page.keyboard.press('Enter');
    await page
      .getByRole('button', { name: 'Show in the chart of windows-1251', exact: true })
      .click();
    await expect(page.locator('[aria-selected=true]')).toBeVisible();
    await take(page, 'page-dark', 1450);
  });
});

test.describe('narrow', () => {
  test.use({ viewport: { width: 360, height: 740 }, deviceScaleFactor: 1.5 });
  test('garbled text', async ({ page }) => {
    await page.getByRole('link', { name: 'Garbled text' }).click();
    await page.getByRole('button', { name: 'Ð¿Ñ€Ð¸Ð²ÐµÑ‚' }).click();
    await expect(card(page, 'What it was')).toContainText('привет');
    await take(page, 'page-narrow', 800);
  });
});
