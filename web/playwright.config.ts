import { defineConfig } from '@playwright/test';

export default defineConfig({
  testDir: 'tests',
  fullyParallel: true,
  workers: 2,
  timeout: 120_000,
  expect: { timeout: 20_000 },
  reporter: 'list',
  use: {
    browserName: 'chromium',
    launchOptions: {
      executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium',
      args: ['--no-sandbox'],
    },
    permissions: ['clipboard-read', 'clipboard-write'],
  },
});
