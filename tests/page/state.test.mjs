// The state of the device at a message, what of it changed, what was asked and answered, and another log beside this one.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { chooseMessage, marks, openFile, says, settled, showPrinted, withPage } from './browser.mjs';
import { message } from './makeLog.mjs';

const line = (day, second, echo, text) => `2026-03-0${day}T08:00:0${second} ${text.replace(' 7 ', ` ${echo} `)}\n`;
const focus = (value) => message(4112, 1, `{MEDIA_NAME=Violet;FOCUS_VALUE=${value}.000000;}`);
const job = (id) => message(4194, 1, `{JOB_NAME={83,0,};JOB_ID=${id};JOB_PORT=2;}`);
const status = message(4161, 1, '{STATUS=3;LOW_STATUS=0;SEVERITY=0;NUM_OF_MESSAGES=1;MSGS={Ready,};}');
const log = (day, last) =>
  Buffer.from(
    line(day, 1, 5, focus(1)) +
      line(day, 2, 6, job(8)) +
      line(day, 3, 6, status) +
      line(day, 4, 9, focus(last)) +
      line(day, 5, 9, focus(7)),
  );

const rows = (page, table) =>
  page.$$eval(`#${table} tr`, (all) => all.map((row) => [...row.children].map((one) => one.textContent.trim()).join(' | ')));

test('what the device said last of each kind, since when, what is not as before, and what the echo tag pairs', async () => {
  await withPage(async (page) => {
    await openFile(page, { name: 'today.log', mimeType: '', buffer: log(2, 2) });
    await chooseMessage(page, 2);
    await page.click('#stateTab');
    await says(page, '#stateMoment', '08:00:03.000 line 3: 3 kinds.');
    const latest = await rows(page, 'stateRows');
    assert.match(latest[0], /^deviceStatus_t \| 08:00:03.000 \| Ready/);
    assert.match(latest[2], /^focusValue_t \| 08:00:01.000 \| Violet FOCUS_VALUE 1/);
    assert.deepEqual(
      (await rows(page, 'exchangeRows')).map((row) => row.split(' ')[0]),
      ['jobPort_t', 'deviceStatus_t'],
    );

    await page.selectOption('#stateSince', 'start');
    await chooseMessage(page, 3);
    await says(page, '#stateMoment', '1 kind of 3 not the same');
    assert.deepEqual(await rows(page, 'stateRows'), ['focusValue_t | 08:00:04.000 | FOCUS_VALUE 1.000000 → 2.000000']);

    // Against another log: the state at this time of its day, and the message of this kind, marked in both texts.
    await page.setInputFiles('#otherFile', { name: 'yesterday.log', mimeType: '', buffer: log(1, 3) });
    await says(page, '#stateRows', 'FOCUS_VALUE 3.000000 → 2.000000');
    await page.click('#differenceTab');
    await settled(page);
    assert.match(await page.textContent('#compareWith option:checked'), /line 4 of yesterday\.log/);
    await marks(page, '.cm-merge-a .cm-changedText', '3');
    await marks(page, '.cm-merge-b .cm-changedText', '2');
    // Where there is no room for two, one stands in the other.
    await page.setViewportSize({ width: 390, height: 800 });
    await marks(page, '.cm-deletedText', '3');
    await marks(page, '.cm-changedText', '2');
    await page.setViewportSize({ width: 1400, height: 900 });
    await marks(page, '.cm-merge-a .cm-changedText', '3');

    // Both logs side by side: what differs is marked in both, and opens as two messages.
    await page.click('#besideTab');
    await says(page, '#besideWords', '4 pairs the same, 1 not.');
    await page.waitForSelector('#besideRows .differs mark');
    const marked = (side) => page.$$eval(`#besideRows .side:nth-child(${side}) mark`, (all) => all.map((one) => one.textContent).join());
    assert.deepEqual([await marked(1), await marked(2)], ['FOCUS_VALUE 3', 'FOCUS_VALUE 2']);
    await page.click('#besideOnly');
    await page.waitForFunction(() => document.querySelectorAll('#besideRows .row:not([hidden])').length === 1);
    await page.click('#besideOnly');
    await page.selectOption('#besideWay', 'echo');
    await says(page, '#besideWords', '4 pairs the same, 1 not.');
    await page.focus('#besideRows');
    await page.keyboard.press('Home');
    await page.keyboard.press('n');
    await page.keyboard.press('Enter');
    await marks(page, '.cm-merge-b .cm-changedText', '2');

    // A kind opens its message.
    await page.click('#stateTab');
    await page.selectOption('#stateSince', '');
    await says(page, '#stateMoment', '3 kinds.');
    await page.click('#stateRows button:text("deviceStatus_t")');
    await says(page, '#messageText', 'Ready');

    // On paper stand its facts, every pair and the text, and nothing of the page around.
    await showPrinted(page);
    const printed = await page.evaluate(() => document.body.innerText);
    for (const words of ['deviceStatus_t', 'today.log', 'MSGS', 'Ready', status.slice(-40)]) assert.ok(printed.includes(words), words);
    assert.ok(!printed.includes('Compared with') && !printed.includes('Message inspector'));
  });
});
