/** Files: opened in every way, looked through for errors, and converted. */
import { execFileSync } from 'node:child_process';
import {
  card,
  choose,
  downloaded,
  expect,
  hand,
  sample,
  sampleText,
  taken,
  test,
  textAt,
} from './support/page';

test('files are dropped, pasted and chosen, and each is recognised', async ({ page }) => {
  await hand(page, 'drop', { 'a.txt': sample('russian.1251') });
  await hand(page, 'paste', { 'b.txt': sample('japanese.51932') });
  await choose(page, 'c.txt', sample('greek.1253'));
  await choose(page, 'd.png', Buffer.from('\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\x01', 'latin1'));
  await choose(page, 'e.txt', Buffer.alloc(0));
  const files = page.getByRole('list', { name: 'Open files' }).getByRole('listitem');
  await expect(files).toContainText([
    /a\.txt.*windows-1251/,
    /b\.txt.*EUC-JP/i,
    /c\.txt.*windows-1253/,
    /d\.png.*no text/,
    /e\.txt.*0 bytes/,
  ]);
  await files.nth(2).getByRole('button', { name: 'c.txt' }).first().click();
  await expect(taken(page)).toContainText(sampleText('greek.txt').slice(0, 20));
  await files.nth(3).getByRole('button', { name: 'd.png' }).first().click();
  await expect(card(page, 'd.png')).toContainText('no text: begins as PNG');
  await page.getByRole('button', { name: 'Close d.png' }).click();
  await expect(files).toHaveCount(4);
});

test('errors of a damaged file are marked in text and bytes', async ({ page }) => {
  const bytes = Buffer.concat([
    Buffer.from('Grüße aus Köln. '.repeat(60)),
    Buffer.from([0xff]),
    Buffer.from(' Straße\n\nZeile drei '),
    Buffer.from([0xe2, 0x82]),
    Buffer.from('. Ende'),
  ]);
  await choose(page, 'letter.txt', bytes);
  await page.getByText('Read it in another encoding').click();
  await card(page, 'letter.txt').getByLabel('Encoding').fill('utf8');
  const reading = card(page, 'Text and bytes');
  await expect(reading).toContainText('2 places cannot be read in UTF-8');

  await reading.getByRole('button', { name: 'Show the first error' }).click();
  await expect(reading).toContainText(`Error 1 of 2: byte ${bytes.indexOf(0xff)}, line 1, FF`);
  await expect(reading.locator('td .error.marked')).toHaveText(['FF ', '�']);

  await reading.getByRole('button', { name: 'Next error' }).click();
  await expect(reading).toContainText(`byte ${bytes.lastIndexOf(0xe2)}, line 3, E2 82`);
  await expect(reading.locator('td .error.marked')).toHaveText(['E2 ', '82 ', '�']);
  const row = reading.getByRole('row').filter({ has: page.locator('mark.marked') });
  await expect(row).toContainText('�. En');

  await reading.locator('td .error.marked').first().hover();
  await expect(reading.locator('.pointed')).toHaveCount(3);
});

test('a file is converted as asked', async ({ page }) => {
  const convert = card(page, 'Convert');
  const button = convert.getByRole('button', { name: 'Convert and download' });
  await choose(page, 'prices.txt', Buffer.from('ein Preis: 5 €\r\nnoch einer: 7 ☃\n'));

  await convert.getByLabel('To').fill('latin1');
  await button.click();
  await expect(convert).toContainText('Stopped at line 1: ISO-8859-1 has no “€”.');

  await convert.getByLabel('A character that it lacks').selectOption('write &#x…;');
  await convert.getByLabel('Line ends').selectOption('LF (Unix, Mac)');
  const [name, path] = await downloaded(page, button);
  expect(name).toBe('prices.iso-8859-1.txt');
  expect(textAt(path)).toBe('ein Preis: 5 &#x20AC;\nnoch einer: 7 &#x2603;\n');
  await expect(convert).toContainText('ISO-8859-1 lacks 2 characters, the first one €');

  await convert.getByLabel('To').fill('utf-16le');
  await convert.getByLabel('Begin with a byte order mark').check();
  const [, wide] = await downloaded(page, button);
  const lines = execFileSync('iconv', ['-f', 'utf-16', '-t', 'utf-8', wide]).toString();
  expect(lines).toBe('ein Preis: 5 €\nnoch einer: 7 ☃\n');
});

test('many files are converted at once', async ({ page }) => {
  const samples = {
    'a/letter.txt': 'russian.1251',
    'letter.txt': 'japanese.932',
    'x.txt': 'greek.1253',
  };
  for (const [name, file] of Object.entries(samples)) {
    await choose(page, name.split('/').at(-1)!, sample(file));
  }
  const button = page.getByRole('button', { name: 'Convert and download 3 files' });
  const [name, path] = await downloaded(page, button);
  expect(name).toBe('converted.zip');
  const unzipped = (entry: string): string =>
    execFileSync('python3', [
      '-c',
      'import sys, zipfile; sys.stdout.buffer.write(zipfile.ZipFile(sys.argv[1]).read(sys.argv[2]))',
      path,
      entry,
    ]).toString();
  expect(unzipped('letter.utf-8.txt')).toBe(sampleText('russian.txt'));
  expect(unzipped('2-letter.utf-8.txt')).toBe(sampleText('japanese.txt'));
  expect(unzipped('x.utf-8.txt')).toBe(sampleText('greek.txt'));
});

test('records of one length are found, and damage in them is told', async ({ page }) => {
  const bytes = Buffer.from(sample('accounts.fb.1047'));
  bytes[80 + 42] = 0x40;
  await choose(page, 'accounts.fb', bytes);
  const records = card(page, 'Records');
  await expect(card(page, 'accounts.fb')).toContainText('80 bytes each');
  await expect(records.getByLabel('Bytes of a record')).toHaveValue('80');
  await records.getByLabel('Fields').fill('no field at all');
  await records.getByLabel('Fields').blur();
  await expect(records.getByRole('alert')).toBeVisible();
  await records.getByLabel('Fields').fill(sampleText('accounts.fields'));
  await records.getByLabel('Fields').blur();
  await expect(records).toContainText('Record 2, field balance');
  await expect(records.getByRole('row', { name: 'SONS' })).toContainText('20011130');
});

test('records without data are records, and stay as they were asked for', async ({ page }) => {
  const words = 'C1C2C340C1C2C340C1C2C340';
  const bytes = [words, '', words, ''].flatMap((text) => {
    const data = Buffer.from(text, 'hex');
    return [0, data.length + 4, 0, 0, ...data];
  });
  await choose(page, 'words.bin', Buffer.from(bytes));
  await expect(card(page, 'words.bin')).toContainText('each behind a word with its length');
  const records = card(page, 'Records');
  await expect(records).toContainText('4 records');
  await records.getByLabel('Fields').fill('word 1 3 text');
  await page.getByRole('link', { name: 'Code pages' }).click();
  await page.getByRole('link', { name: 'Files' }).click();
  await expect(records.getByLabel('Fields')).toHaveValue('word 1 3 text');
});

test('a large text that is pasted is opened as a file', async ({ page }) => {
  await page.evaluate(() => {
    const data = new DataTransfer();
    data.setData('text/plain', 'ïðèâåò, êàê äåëà? '.repeat(100_000));
    const init = { bubbles: true, cancelable: true, clipboardData: data };
    document.body.dispatchEvent(new ClipboardEvent('paste', init));
  });
  await expect(taken(page)).toContainText('mended');
  await expect(taken(page)).toContainText('привет, как дела?');
  await expect(card(page, 'Text and bytes')).toContainText('no errors');
});

test('an error far behind in a large file is shown where it is', async ({ page }) => {
  const one = sample('japanese.932');
  const before = Buffer.concat(Array<Buffer>(5000).fill(one));
  await choose(page, 'large.txt', Buffer.concat([before, Buffer.from([0x82, 0x20]), one]));
  const reading = card(page, 'Text and bytes');
  await reading.getByRole('button', { name: 'Show the first error' }).click();
  await expect(reading).toContainText(`Error 1 of 1: byte ${before.length}, line`);
  await expect(reading.locator('td .error.marked')).toHaveText(['82 ', '�']);
  const row = reading.getByRole('row').filter({ has: page.locator('mark.marked') });
  await expect(row).toContainText(`${before.length - (before.length % 16)}`);
});
