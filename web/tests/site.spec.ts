/** The same page as files of a web server; and the one file, which asks no server for anything. */
import { fileURLToPath } from 'node:url';
import { test as bare } from '@playwright/test';
import { preview } from 'vite';
import {
  card,
  choose,
  expect,
  ONE_FILE,
  sample,
  sampleText,
  taken,
  textAt,
  downloaded,
} from './support/page';

bare('the files of the site work from a server, below any folder', async ({ page }) => {
  const server = await preview({
    root: fileURLToPath(new URL('..', import.meta.url)),
    base: '/some/folder/',
    preview: { port: 0, open: false },
    logLevel: 'error',
  });
  try {
    const hosts = new Set<string>();
    page.on('request', (request) => hosts.add(new URL(request.url()).host));
    const address = server.resolvedUrls!.local[0]!;
    await page.goto(address);
    await choose(page, 'letter.txt', sample('japanese.932'));
    await expect(taken(page)).toContainText('Shift_JIS');
    const button = card(page, 'Convert').getByRole('button', { name: 'Convert and download' });
    const [, path] = await downloaded(page, button);
    expect(textAt(path)).toBe(sampleText('japanese.txt'));
    expect([...hosts].filter(Boolean)).toEqual([new URL(address).host]);
  } finally {
    await server.close();
  }
});

bare('the one file asks for nothing but itself, and cannot', async ({ page }) => {
  const asked: string[] = [];
  page.on('request', (request) => asked.push(request.url()));
  await page.goto(ONE_FILE);
  await choose(page, 'letter.txt', sample('hong-kong.200706'));
  await expect(card(page, 'Text and bytes')).toContainText('Byte');
  expect(asked.filter((url) => !/^(file|blob|data):/.test(url))).toEqual([]);
  const refused = await page.evaluate(() => fetch('http://localhost:1/').then(String, String));
  expect(refused).toContain('Failed to fetch');
  const policy = page.locator('meta[http-equiv="Content-Security-Policy"]');
  await expect(policy).toHaveAttribute('content', /default-src 'none'/);
});
