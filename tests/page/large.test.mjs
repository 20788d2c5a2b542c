// A log of 100 MB, or of as many as VEK_LOG_MB says: listed in time, with bounded memory, while the page answers.
import assert from 'node:assert/strict';
import { createWriteStream, readFileSync } from 'node:fs';
import { mkdtemp, rm } from 'node:fs/promises';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { once } from 'node:events';
import { test } from 'node:test';
import { chooseMessage, isFirefox, longestTask, openFile, reading, says, settled, withPage } from './browser.mjs';
import { logLines, message } from './makeLog.mjs';

const megabytes = Number(process.env.VEK_LOG_MB ?? 100);
const size = megabytes * 1e6;
const longestPause = 50; // of the page's own thread
const day = (at) => new Date(Date.UTC(2026, 2, 1 + at)).toISOString().slice(0, 10);

// Writes the log, the same piece on one day after the other: only the reader's work counts here.
async function writeLog(path) {
  const piece = [...logLines(20_000)].join('');
  const file = createWriteStream(path);
  let days = 0;
  for (; days * piece.length < size; ++days) if (!file.write(piece.replaceAll('2026-03-01', day(days)))) await once(file, 'drain');
  file.end();
  await once(file, 'finish');
  return { count: days * 20_000, lastDay: day(days - 1) };
}

// What the browser's processes have in memory; what several share is counted once.
async function residentIn(page) {
  const session = await page.context().browser().newBrowserCDPSession();
  const { processInfo } = await session.send('SystemInfo.getProcessInfo');
  const own = ({ id }) => Number(/Pss:\s+(\d+)/.exec(readFileSync(`/proc/${id}/smaps_rollup`, 'utf8'))[1]) * 1024;
  return processInfo.map(own).reduce((sum, bytes) => sum + bytes, 0);
}

async function plot(page, label) {
  await page.fill('#plotKeyName', label);
  await page.press('#plotKeyName', 'Enter');
  await page.waitForSelector(`#plotCurves li:has-text("${label}")`, { timeout: 300 * megabytes });
}

const skip = isFirefox && 'its driver does not see tasks of a thread';

test('a message of 30 kB with 10,000 keys that none knows', { skip }, async (context) => {
  const buffer = Buffer.from(message(4112, 41, `{${'X=;'.repeat(10_000)}}`));
  await withPage(async (page) => {
    const pause = await longestTask(page, async () => {
      await openFile(page, { name: 'message.txt', mimeType: '', buffer });
      await page.focus('#tree');
      for (let at = 0; at < 10; ++at) await page.keyboard.press('ArrowDown');
    });
    context.diagnostic(`a message with 5,000 problems: longest pause ${pause.toFixed(0)} ms`);
    assert.ok(pause < longestPause, `the page did not answer for ${pause} ms`);
    // All problems can be come to, and those in sight alone are drawn.
    const [, count] = /^(5,\d\d\d) problems$/.exec(await page.textContent('#problemCount'));
    const first = await page.locator('#problems li').count();
    assert.ok(first < 200, `${first} problems are drawn`);
    await page.evaluate(() => (document.getElementById('problems').scrollTop = 1e6));
    await page.waitForSelector(`#problems li[aria-posinset="${count.replace(',', '')}"]`);
    await page.waitForFunction(() => document.querySelectorAll('#problems li').length < 200);
  });
});

test('the differences of two large messages that are quite unlike', { skip }, async (context) => {
  // By a generator of its own, each piece is a hash of its place.
  const word = (at) => (Math.imul(at + 1, 2654435761) >>> 0).toString(36);
  const many = (from, one) => Array.from({ length: 8000 }, (_none, at) => one(word(from + at))).join('');
  const unlike = {
    keys: (from) => message(4112, 1, `{${many(from, (text) => `${text.toUpperCase()}=1;`)}}`),
    elements: (from) => message(4161, 1, `{STATUS=3;NUM_OF_MESSAGES=8000;MSGS={${many(from, (text) => `${text},`)}};}`),
    'every other': (from) => message(4112, 1, `{${many(from, (text) => `${text.toUpperCase()}=1;${word(0)}=${text};`).slice(0, 90_000)}}`),
    text: (from) => message(4112, 1, `{MEDIA_NAME=${many(from, (text) => text)};FOCUS_VALUE=1.000000;}`),
  };
  for (const [name, make] of Object.entries(unlike)) {
    const buffer = Buffer.from(`${make(0)}\n${make(8000)}\n`);
    await withPage(async (page) => {
      await openFile(page, { name: `${name}.log`, mimeType: '', buffer });
      await chooseMessage(page, 1);
      const pause = await longestTask(page, async () => {
        await page.click('#differenceTab');
        await settled(page);
        await page.waitForFunction(() => document.getElementById('differenceTexts').shadowRoot.querySelector('.cm-changedText'));
        await page.setViewportSize({ width: 390, height: 800 });
        await page.waitForSelector('#differences tbody td');
      });
      context.diagnostic(`${name}: longest pause ${pause.toFixed(0)} ms`);
      assert.ok(pause < longestPause, `the page did not answer for ${pause} ms`);
      // All can be come to, and those in sight alone are drawn.
      const count = Number(/^[\d,]+/.exec(await page.textContent('#differenceCount'))[0].replaceAll(',', ''));
      await page.evaluate(() => (document.getElementById('differenceTable').scrollTop = 1e7));
      await page.waitForFunction(
        (last) => [...document.querySelectorAll('#differences tbody tr')].at(-1)?.ariaRowIndex === String(last),
        count,
      );
      await page.waitForFunction(() => document.querySelectorAll('#differences tbody tr').length < 1000);
    });
  }
});

test(
  `${megabytes} MB are listed while the page answers, and can be cancelled`,
  { timeout: 1200 * (megabytes + 1), skip },
  async (context) => {
    const folder = await mkdtemp(join(tmpdir(), 'vekmsg-'));
    try {
      const path = join(folder, 'large.log');
      const { count, lastDay } = await writeLog(path);
      await withPage(async (page) => {
        const counted = `${count.toLocaleString('en')} messages`;
        const seconds = { start: performance.now() };
        const note = (name) => (seconds[name] = `${((performance.now() - seconds.start) / 1000).toFixed(1)} s`);
        const readingPause = await longestTask(page, async () => {
          await page.setInputFiles('#file', path);
          // It is used while it reads: messages are there before the end.
          await page.waitForFunction(() => document.querySelector('#messages .row'));
          await page.click('#messages-1');
          await page.waitForSelector('#messagePanelBody:not([hidden])');
          note('shown');
          // Searching and plotting meanwhile take nothing from it, and what is not complete says so.
          await page.fill('#filterWords', 'violet');
          await page.click('#plotTab');
          await plot(page, 'focusValue_t FOCUS_VALUE');
          const early = [await page.textContent('#listCount'), await page.textContent('#summary'), await page.isVisible('#progress')];
          assert.ok(!early[2] || /searching|so far|still reading/.test(early.join()), early.join());
          await reading(page, 600 * megabytes);
          note('listed');
        });
        const memory = await page.evaluate(() => performance.memory.usedJSHeapSize);
        const processes = await residentIn(page);
        const found = await page.textContent('#listCount');
        assert.match(found, new RegExp(`^[\\d,]+ of ${counted}$`));
        assert.ok(Number(found.split(' ')[0].replaceAll(',', '')) > count / 2, found);
        assert.doesNotMatch(await page.textContent('#summary'), /reading|only/);

        const usingPause = await longestTask(page, async () => {
          await page.focus('#plot');
          await page.keyboard.press('End');
          assert.ok((await page.textContent('#plotReading')).startsWith(lastDay), 'the curve ends where the log ends');
          await page.fill('#filterWords', '');
          await page.waitForFunction((words) => document.getElementById('listCount').textContent === words, counted);
          // To the end of a list that is taller than a browser's elements may be.
          await page.focus('#messages');
          await page.keyboard.press('End');
          await page.waitForSelector(`#messages-${count - 1}[aria-selected=true]`);
          const asked = performance.now();
          await plot(page, 'deviceStatus_t LOW_STATUS');
          const [values] = /[\d,]+ values/.exec(await says(page, '#announcer', /^LOW_STATUS: [\d,]+ values drawn\.$/));
          context.diagnostic(`${values} drawn in ${((performance.now() - asked) / 1000).toFixed(2)} s`);
          await page.selectOption('#plotBands', 'deviceStatus_t STATUS');
          await settled(page);
          const box = await page.locator('#plot .u-over').boundingBox();
          for (let at = 0; at < 20; ++at) await page.mouse.move(box.x + 20 + at * 10, box.y + 60);
        });
        context.diagnostic(
          `${count} messages: first shown after ${seconds.shown}, listed after ${seconds.listed}; longest pause ${readingPause.toFixed(0)} ms, ` +
            `then ${usingPause.toFixed(0)} ms; ${(memory / 1e6).toFixed(0)} MB of script's memory, ${(processes / 1e6).toFixed(0)} MB of all processes of the browser`,
        );
        assert.ok(Math.max(readingPause, usingPause) < longestPause, `the page did not answer for ${readingPause} ms, ${usingPause} ms`);

        // A search is seen while it goes on, and ended where it is; the list says so.
        await page.fill('#filterWhere', 'MSGS[*] ~ Nothing or FOCUS_VALUE > 1e9'); // asked of every message
        await page.press('#filterWhere', 'Enter');
        await page.click('#tasks .remove');
        await says(page, '#listCount', 'only the first');
        await page.click('#clearFilters');

        await page.setInputFiles('#file', path);
        await page.waitForSelector('#cancelReading', { state: 'visible' });
        // Another log is read beside it, each for itself.
        await page.setInputFiles('#otherFile', { name: 'yesterday.log', mimeType: '', buffer: Buffer.from([...logLines(50)].join('')) });
        await says(page, '#announcer', 'yesterday.log: 50 messages to compare with');
        await page.click('#cancelReading');
        await reading(page);
        const cancelled = Number((await page.textContent('#listCount')).replace(/\D/g, ''));
        assert.ok(cancelled < count, 'reading went on after it was cancelled');
        assert.match(await page.textContent('#summary'), /only the first .* were read/);
      });
    } finally {
      await rm(folder, { recursive: true });
    }
  },
);
