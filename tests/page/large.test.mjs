// A log of 100 MB: listed in time, with bounded memory, while the page answers.
import assert from 'node:assert/strict';
import { createWriteStream } from 'node:fs';
import { mkdtemp, rm } from 'node:fs/promises';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { once } from 'node:events';
import { test } from 'node:test';
import { reading, withPage } from './browser.mjs';
import { logLines } from './makeLog.mjs';

const size = 100_000_000;
const longestReading = 10_000; // milliseconds
const longestAnswer = 500;

// Writes the log, a piece of it again and again: only the reader's work counts here.
async function writeLog(path) {
  const piece = Buffer.from([...logLines(20_000)].join(''));
  const file = createWriteStream(path);
  let written = 0;
  for (; written < size; written += piece.length) if (!file.write(piece)) await once(file, 'drain');
  file.end();
  await once(file, 'finish');
  return Math.ceil(size / piece.length) * 20_000;
}

test('100 MB are listed in 10 s while the page answers, and can be cancelled', { timeout: 120_000 }, async (context) => {
  const folder = await mkdtemp(join(tmpdir(), 'vekmsg-'));
  try {
    const path = join(folder, 'large.log');
    const count = await writeLog(path);
    await withPage(async (page) => {
      await page.evaluate(() => {
        window.longestPause = 0;
        let latest = performance.now();
        setInterval(() => {
          window.longestPause = Math.max(window.longestPause, performance.now() - latest);
          latest = performance.now();
        }, 10);
      });
      const start = performance.now();
      await page.setInputFiles('#file', path);
      // It is used while it reads: messages are there before the end.
      await page.waitForFunction(() => document.querySelector('#messages .row'));
      await page.click('#messages-1');
      await page.waitForSelector('#messagePanelBody:not([hidden])');
      const answered = performance.now() - start;
      await reading(page, 60_000);
      const read = performance.now() - start;
      const pause = await page.evaluate(() => window.longestPause);
      const memory = await page.evaluate(() => performance.memory.usedJSHeapSize);
      context.diagnostic(`${count} messages: first shown after ${answered.toFixed(0)} ms, listed after ${read.toFixed(0)} ms; ` +
        `longest pause ${pause.toFixed(0)} ms; ${(memory / 1e6).toFixed(0)} MB of script's memory`);
      assert.equal(await page.textContent('#listCount'), `${count.toLocaleString('en')} messages`);
      assert.ok(read < longestReading, `listed after ${read} ms`);
      assert.ok(pause < longestAnswer, `the page did not answer for ${pause} ms`);

      // To the end of a list that is taller than a browser's elements may be.
      await page.focus('#messages');
      await page.keyboard.press('End');
      await page.waitForSelector(`#messages-${count - 1}[aria-selected=true]`);

      await page.click('#plotTab');
      await page.fill('#plotKeyName', 'focusValue_t FOCUS_VALUE');
      const plotStart = performance.now();
      await page.press('#plotKeyName', 'Enter');
      await page.waitForSelector('#plot .u-over', { timeout: 30_000 });
      context.diagnostic(`a key of it plotted after ${(performance.now() - plotStart).toFixed(0)} ms`);

      await page.setInputFiles('#file', path);
      await page.waitForSelector('#cancelReading', { state: 'visible' });
      await page.click('#cancelReading');
      await reading(page);
      const cancelled = Number((await page.textContent('#listCount')).replace(/\D/g, ''));
      assert.ok(cancelled < count, 'reading went on after it was cancelled');
    });
  } finally {
    await rm(folder, { recursive: true });
  }
});
