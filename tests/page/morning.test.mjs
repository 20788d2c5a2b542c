// The morning's work that docs/inspector.md tells: a device says that its cassette is empty. When, why, what was yesterday,
// the message mended, and sent.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { bridge } from './bridge.mjs';
import { marks, openFile, openLine, says, settled, withPage, wouldSave } from './browser.mjs';
import { filled, today, yesterday } from './morning.mjs';

test('a morning: an empty cassette is found, understood, compared, mended and sent', async () => {
  const { address, received, close } = await bridge();
  try {
    await withPage(async (page) => {
      await openFile(page, today);
      // When.
      await page.fill('#filterWords', 'empty');
      await says(page, '#listCount', '1 of 240 messages');
      await page.click('#messages-0');
      await says(page, '#messageFacts', '09:12:');
      await page.click('#clearFilters');
      // Why: of what it said last, the cassette has an error.
      await page.click('#stateTab');
      await says(page, '#stateMoment', '09:12:');
      await page.click('#stateRows button:text("cassette_t")');
      await says(page, '#messageFacts', '09:00:');
      await page.waitForSelector('#problems li[data-code=unknown-key]');
      // Yesterday.
      await page.click('#differenceTab');
      await page.setInputFiles('#otherFile', yesterday);
      await says(page, '#differences', 'INPUT_CONTENT');
      await marks(page, '.cm-merge-a .cm-changedText', 'EN');
      await marks(page, '.cm-merge-b .cm-changedText', 'NE');
      // Mended.
      await page.click('#messageTab');
      await page.click('.remedy button:has-text("INPUT_CONTENT")');
      await page.waitForSelector('#problemPane', { state: 'hidden' });
      await settled(page);
      assert.equal(await wouldSave(page, '#saveText'), filled);
      const log = await wouldSave(page, '#saveLog');
      assert.equal(log, today.buffer.toString().replace('INPUT_CONTNET', 'INPUT_CONTENT'));
      // Sent.
      await openLine(page, address);
      await page.click('#liveSend');
      await page.fill('#sendText', filled);
      await says(page, '#sendChanges', 'It is sealed already.');
      await page.click('#sendNow');
      assert.equal((await received).toString(), filled);
    });
  } finally {
    close();
  }
});
