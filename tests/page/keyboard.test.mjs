// Everything once without a pointer: only keys are pressed, and what has the focus has a name.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { reading, says, settled, spokenFocus, withPage } from './browser.mjs';
import { message } from './makeLog.mjs';

// The id of what has the focus, else its class; nothing when the browser itself has it.
const focused = (page) =>
  page.evaluate(() => {
    const { activeElement: active, body } = document;
    return active === body ? '' : active.id || active.className || active.localName;
  });

// Goes on with Tab until something has the focus.
async function tabTo(page, id, key = 'Tab') {
  for (let stops = 0; stops < 40; ++stops) {
    if ((await focused(page)).split(' ').includes(id)) return;
    await page.keyboard.press(key);
  }
  assert.fail(`Tab never comes to ${id}`);
}

test('a log is opened, filtered, looked at, mended, compared and plotted by keys alone', async () => {
  const log = [1, 2, 3, 4].map(
    (at) => `2026-03-01T08:00:0${at} x ${message(4112, 40 + at, `{MEDIA_NAME=Violet;FOCUS_VALUE=${at}.500000;}`)}`,
  );
  log.push(`2026-03-01T08:00:09 x ${message(4161, 45, '{STATUS=3;LOW_STATUS=0;SEVERITY=0;NUM_OF_MESSAGES=0;MSGS={};}')}`);
  await withPage(async (page) => {
    await tabTo(page, 'openPaste');
    await page.keyboard.press('Enter');
    assert.equal(await focused(page), 'pasteText');
    await page.keyboard.insertText(log.join('\n'));
    await page.keyboard.press('Tab');
    await page.keyboard.press('Tab');
    await page.keyboard.press('Enter');
    await reading(page);

    // The list has the focus: to the third message, and into it.
    await page.waitForFunction(() => document.activeElement.id === 'messages');
    assert.deepEqual(await spokenFocus(page).then(({ role }) => role), 'listbox');
    await page.keyboard.press('ArrowDown');
    await page.keyboard.press('ArrowDown');
    assert.equal(await page.getAttribute('#messages', 'aria-activedescendant'), 'messages-2');
    await says(page, '#messageText', '3.500000');
    await page.keyboard.press('Enter');
    assert.equal((await spokenFocus(page)).role, 'tree');
    await page.keyboard.press('End');
    await page.keyboard.press('Enter');
    await settled(page);
    assert.deepEqual(await spokenFocus(page), { role: 'textbox', name: 'FOCUS_VALUE' });
    await page.keyboard.press('Control+A');
    await page.keyboard.insertText('7');
    await page.keyboard.press('Enter');
    await settled(page);
    assert.equal(await focused(page), 'tree');
    await says(page, '#messageText', 'FOCUS_VALUE=7.000000;');
    for (const [keys, value] of [
      ['Control+Z', '3.500000'],
      ['Control+Shift+Z', '7.000000'],
      ['Control+Z', '3.500000'],
      ['Control+Y', '7.000000'],
    ]) {
      await page.keyboard.press(keys);
      await says(page, '#messageText', `FOCUS_VALUE=${value};`);
    }
    await settled(page);
    assert.equal(await focused(page), 'tree');

    await tabTo(page, 'messageTab', 'Shift+Tab');
    await page.keyboard.press('ArrowRight');
    await says(page, '#differenceCount', '1 difference');
    await page.keyboard.press('ArrowRight');
    await tabTo(page, 'plotKeyName');
    await page.keyboard.insertText('focusValue_t FOCUS_VALUE');
    await page.keyboard.press('Enter');
    await page.waitForSelector('#plot .u-over');
    await tabTo(page, 'plot');
    await page.keyboard.press('End');
    await says(page, '#plotReading', '08:00:04.000: FOCUS_VALUE 4.5');

    await tabTo(page, 'timeLine', 'Shift+Tab');
    await page.keyboard.press('End');
    assert.match(await page.getAttribute('#timeLine', 'aria-valuetext'), /08:00:09/);
    await page.keyboard.press('Enter');
    assert.equal(await page.getAttribute('#messages', 'aria-activedescendant'), 'messages-4');
    await tabTo(page, 'filterWords', 'Shift+Tab');
    await page.keyboard.insertText('violet');
    await says(page, '#listCount', '4 of 5 messages');
    assert.ok(await page.isVisible('#leftOut'), 'the status that is shown is not listed');

    // No stop without a name.
    const stops = new Set();
    for (let stop = 0; stop < 40; ++stop) {
      await page.keyboard.press('Tab');
      const id = await focused(page);
      if (id === '') continue;
      const { role, name } = await spokenFocus(page);
      assert.notEqual(name, '', `${id}, a ${role}, has no name`);
      stops.add(id);
    }
    assert.ok(stops.size > 10);
  });
});
