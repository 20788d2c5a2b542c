// Logs that go on: through a WebSocket of a bridge and as a file that grows; followed or held; messages sent after a look.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { bridge } from './bridge.mjs';
import { says, settled, withPage } from './browser.mjs';
import { message } from './makeLog.mjs';

const focus = (sequence) => message(4112, sequence, `{MEDIA_NAME=Violet;FOCUS_VALUE=${sequence}.500000;}`);
const line = (sequence) => `2026-03-01T08:00:0${sequence} ${focus(sequence)}\n`;

test('messages of a bridge appear as they come, are held, and one is sent after a look', async () => {
  const { address, received, send, close } = await bridge();
  try {
    await withPage(async (page) => {
      await page.click('#openLive');
      await page.fill('#liveAddress', address);
      await page.press('#liveAddress', 'Enter');
      await page.waitForSelector('#live:not([hidden])');
      // A message in two pieces is one.
      send(line(1).slice(0, 40));
      send(line(1).slice(40));
      await says(page, '#messageText', 'FOCUS_VALUE=1.5');
      send(line(2));
      await says(page, '#messageText', 'FOCUS_VALUE=2.5');
      await page.click('#liveHold');
      send(line(4));
      await says(page, '#summary', '3 messages · 1 kind · 1 gap with 1 missing · live');
      await says(page, '#messageText', 'FOCUS_VALUE=2.5');
      await page.click('#liveHold');
      await says(page, '#messageText', 'FOCUS_VALUE=4.5');

      await page.click('#liveSend');
      assert.equal(await page.inputValue('#sendText'), focus(4));
      assert.equal(await page.textContent('#sendChanges'), 'It is sealed already.');
      await page.click('#sendNow');
      assert.equal((await received).toString(), focus(4));

      // What was read stays, and can be changed then.
      await page.click('#liveStop');
      await settled(page);
      await says(page, '#listCount', '3 messages');
      assert.ok(!(await page.textContent('#summary')).includes('live'));
    });
  } finally {
    close();
  }
});

test('a file that grows is followed within a moment; one that becomes shorter says so', async () => {
  await withPage(async (page) => {
    await page.evaluate((start) => {
      window.parts = [start];
      window.showOpenFilePicker = () => [{ name: 'device.log', getFile: () => new File(window.parts, 'device.log') }];
    }, line(1));
    const taken = await page.evaluate(
      async ([second]) => {
        const seen = (words) =>
          new Promise((resolve) => {
            const look = () =>
              document.getElementById('summary').textContent.startsWith(words) ? resolve(performance.now()) : setTimeout(look, 1);
            look();
          });
        document.getElementById('liveFile').disabled = false;
        document.getElementById('liveFile').click();
        await seen('1 message ');
        const start = performance.now();
        window.parts.push(second);
        return (await seen('2 messages')) - start;
      },
      [line(2)],
    );
    console.log(`# a line of a file appears after ${Math.round(taken)} ms`);
    await page.evaluate(() => window.parts.shift());
    await says(page, '#announcer', 'has become shorter');
    assert.ok(await page.isHidden('#live'));
    await says(page, '#listCount', '2 messages');
  });
});
