/** What a user has who does not know what became of a text, and what the page must say of it. */
import { execFileSync } from 'node:child_process';
import type { Page } from '@playwright/test';
import {
  card,
  choose,
  downloaded,
  expect,
  hand,
  sample,
  sampleText,
  shownText,
  textAt,
  taken,
  test,
} from './support/page';

async function pasteText(page: Page, text: string): Promise<void> {
  await page.evaluate((written) => navigator.clipboard.writeText(written), text);
  await page.keyboard.press('Control+V');
}

/** What another converter reads. */
const readAs = (bytes: Uint8Array, encoding: string): string =>
  execFileSync('iconv', ['-f', encoding, '-t', 'utf-8'], { input: bytes }).toString();

const GARBLED = [
  {
    name: 'Russian 1251 read as 1252',
    garbled: readAs(sample('russian.1251'), 'windows-1252'),
    right: sampleText('russian.txt'),
    how: 'windows-1251 was read as windows-1252',
  },
  {
    name: 'KOI8-R read as 1251',
    garbled: readAs(sample('russian-plain.20866'), 'windows-1251'),
    right: sampleText('russian-plain.txt'),
    how: 'KOI8-R was read as windows-1251',
  },
  {
    name: 'Mac Roman read as 1252',
    garbled: 'Le cafŽ Žtait dŽjˆ fermŽ, nous avons passŽ la soirŽe ˆ la maison.',
    right: 'Le café était déjà fermé, nous avons passé la soirée à la maison.',
    how: 'macintosh was read as windows-1252',
  },
  {
    name: 'UTF-8 read as 1252',
    garbled: 'Ð¿Ñ€Ð¸Ð²ÐµÑ‚',
    right: 'привет',
    how: 'UTF-8 was read as windows-1252',
  },
  {
    name: 'Shift_JIS read as 1252',
    garbled: 'ƒeƒXƒg',
    right: 'テスト',
    how: 'Shift_JIS was read as windows-1252',
  },
  {
    name: 'UTF-8 read as 1252, twice over',
    garbled: 'Un cafÃƒÂ© crÃƒÂ¨me, sÃ¢â‚¬â„¢il vous plaÃƒÂ®t',
    right: 'Un café crème, s’il vous plaît',
    how: 'UTF-8 was read as windows-1252, and then UTF-8 was read as windows-1252',
  },
];

for (const { name, garbled, right, how } of GARBLED) {
  test(`garbled text is traced back: ${name}`, async ({ page }) => {
    await pasteText(page, garbled);
    const finding = card(page, 'What it was').locator('.finding').first();
    await expect(finding.locator('.mended')).toHaveText(right);
    await expect(finding.locator('.how')).toContainText(how);
    await finding.getByRole('button', { name: 'Copy' }).click();
    await expect(finding.getByRole('button', { name: 'Copied' })).toBeVisible();
    expect(await page.evaluate(() => navigator.clipboard.readText())).toBe(right);
  });
}

test('text that is right is left alone', async ({ page }) => {
  await pasteText(page, sampleText('french.txt'));
  await expect(card(page, 'What it was')).toContainText('Nothing suggests');
});

test('UTF-8 encoded twice is mended, in a file as well', async ({ page }) => {
  const twice = Buffer.from(readAs(sample('french.txt'), 'windows-1252'));
  await choose(page, 'french.txt', twice);
  await expect(taken(page)).toContainText('UTF-8, mended');
  await expect(card(page, 'french.txt')).toContainText('UTF-8 was read as windows-1252');
  const button = page.getByRole('button', { name: 'Convert and download' });
  const [name, path] = await downloaded(page, button);
  expect(name).toBe('french.utf-8.txt');
  expect(textAt(path)).toBe(sampleText('french.txt'));
});

test('mail whose escape characters are lost is mended', async ({ page }) => {
  const mail = 'Re: $B2q5D$N$*CN$i$;(B\n\n$B$3$s$K$A$O!#(B See you.\n';
  await hand(page, 'drop', { 'mail.txt': Buffer.from(mail) });
  await expect(taken(page)).toContainText('mended');
  const button = page.getByRole('button', { name: 'Convert and download' });
  const [, path] = await downloaded(page, button);
  expect(textAt(path)).toBe('Re: 会議のお知らせ\n\nこんにちは。 See you.\n');
});

test('EBCDIC records become a table', async ({ page }) => {
  await hand(page, 'drop', { 'accounts.vb': sample('accounts.vb.37') });
  await expect(card(page, 'accounts.vb')).toContainText('mainframe records in EBCDIC, in blocks');
  const records = card(page, 'Records');
  await expect(records.getByLabel('Each record')).toHaveValue('bdw');
  await expect(records.locator('.records')).toContainText('HARTLEY, THOMAS J.');
  await records.getByLabel('Fields').fill(sampleText('accounts.fields'));
  await records.getByLabel('Fields').blur();
  await expect(records.getByRole('columnheader')).toHaveText(
    '# id name opened balance limit visits rate remark'.split(' '),
  );
  await expect(records.getByRole('row', { name: 'JOSÉ NÚÑEZ' })).toContainText('-999999999.99');
  const [name, path] = await downloaded(page, records.getByRole('button', { name: /CSV/ }));
  expect(name).toBe('accounts.vb.csv');
  expect(textAt(path)).toBe(sampleText('accounts.csv'));
});

test('Shift_JIS that is cut inside a character says so', async ({ page }) => {
  const whole = sample('japanese.932');
  const end = whole.indexOf(Buffer.from([0x83, 0x7c])) + 1; // within ポ
  await hand(page, 'drop', { 'letter.txt': whole.subarray(0, end) });
  await expect(taken(page)).toContainText('Shift_JIS');
  const reading = card(page, 'Text and bytes');
  await expect(reading).toContainText('The file ends within a character: 83 begins one.');
  await reading.getByRole('button', { name: 'Show the first error' }).click();
  await expect(reading).toContainText(`byte ${end - 1}, line`);
  await expect(reading.locator('mark.marked')).toBeVisible();
});

test('GB18030 with Yi is found and read', async ({ page }) => {
  await hand(page, 'drop', { 'minorities.txt': sample('minorities.54936') });
  await expect(taken(page)).toContainText('GB18030');
  await expect(card(page, 'Text and bytes')).toContainText('no errors');
  const yi = /\p{Script=Yi}+/u.exec(sampleText('minorities.txt'))![0];
  await expect.poll(() => shownText(page)).toContain(yi);
  const button = page.getByRole('button', { name: 'Convert and download' });
  const [, path] = await downloaded(page, button);
  expect(textAt(path)).toBe(sampleText('minorities.txt'));
});
