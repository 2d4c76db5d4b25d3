/** Charts of code pages, and the search for the encodings of a character. */
import { card, expect, test } from './support/page';

const ESCAPE = 0x1b;

test('which encodings have ﷽?', async ({ page }) => {
  await page.getByRole('link', { name: 'Code pages' }).click();
  const search = card(page, 'Which encodings have this character?');
  for (const written of ['﷽', 'U+FDFD', '&#xFDFD;']) {
    await search.getByLabel('A character, or several').fill(written);
    await search.getByRole('button', { name: 'Search' }).click();
    await expect(search).toContainText('U+FDFD:');
  }
  await expect(search.getByRole('row', { name: 'GB18030' }).first()).toContainText(/[0-9A-F]{2} 3/);
});

test('a character is shown in the charts that have it', async ({ page }) => {
  await page.getByRole('link', { name: 'Code pages' }).click();
  const search = card(page, 'Which encodings have this character?');
  await search.getByLabel('A character, or several').fill('Ж');
  await page.keyboard.press('Enter');
  for (const [encoding, bytes] of [
    ['windows-1251', 'C6'],
    ['KOI8-R', 'F6'],
    ['IBM866', '86'],
    ['Shift_JIS', '84 47'],
    ['EUC-JP', 'A7 A8'],
  ] as const) {
    const button = page.getByRole('button', {
      name: `Show in the chart of ${encoding}`,
      exact: true,
    });
    await expect(search.getByRole('row').filter({ has: button })).toContainText(bytes);
    await button.click();
    const chart = card(page, 'Chart of a code page');
    await expect(chart).toContainText(`${bytes} is U+0416`);
    await expect(chart.locator('[aria-selected=true]')).toHaveText('Ж');
  }
});

test('a chart is walked by the keyboard, through leading bytes and back', async ({ page }) => {
  await page.getByRole('link', { name: 'Code pages' }).click();
  const chart = card(page, 'Chart of a code page');
  await chart.getByLabel('Code page').fill('932');
  const cell = (byte: number) => chart.locator(`[data-byte="${byte}"]`);
  await expect(cell(0x83)).toHaveText('›');
  await expect(cell(0xb1)).toHaveText('ｱ');
  await expect(cell(0x80)).toHaveClass(/none|named/);
  await cell(0x41).click();
  for (const key of ['ArrowDown', 'ArrowDown', 'ArrowDown', 'ArrowDown'])
    await page.keyboard.press(key);
  await page.keyboard.press('ArrowRight');
  await page.keyboard.press('ArrowRight');
  await expect(cell(0x83)).toBeFocused();
  await page.keyboard.press('Enter');
  await expect(cell(0x65)).toHaveText('テ');
  await cell(0x65).press('Enter');
  await expect(chart).toContainText('83 65 is U+30C6');
  await chart.getByRole('button', { name: 'First byte' }).click();
  await expect(cell(0x41)).toHaveText('A');
});

test('charts of encodings with shifts, and of four bytes', async ({ page }) => {
  await page.getByRole('link', { name: 'Code pages' }).click();
  const chart = card(page, 'Chart of a code page');
  const follow = async (encoding: string, bytes: number[]): Promise<void> => {
    await chart.getByLabel('Code page').fill(encoding);
    for (const byte of bytes) {
      await chart.locator(`[data-byte="${byte}"]`).click();
      if (byte === ESCAPE) await chart.getByRole('button', { name: 'What follows it' }).click();
    }
  };
  await follow('GB18030', [0x82, 0x35, 0x8f, 0x35]);
  await expect(chart).toContainText('82 35 8F 35 is U+9FA8');
  await follow('ISO-2022-JP', [0x1b, 0x24, 0x42, 0x25, 0x46]);
  await expect(chart).toContainText('1B 24 42 25 46 is U+30C6');
  await follow('IBM939', [0x0e, 0x45, 0x42]);
  await expect(chart).toContainText(/0E 45 42 is U\+[0-9A-F]{4}/);
});
