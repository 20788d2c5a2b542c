// Seeing: the time line, and numbers plotted over time, read off by pointing, zoomed; a status as bands.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { lists, openFile, says, saysElse, settled, withPage, wouldSave } from './browser.mjs';
import { logLines } from './makeLog.mjs';

const facts = {};
const log = { name: 'device.log', mimeType: 'text/plain', buffer: Buffer.from([...logLines(3000, facts)].join('')) };

async function drawn(page, label, count) {
  await page.fill('#plotKeyName', label);
  await page.press('#plotKeyName', 'Enter');
  await page
    .locator('#plotCurves li')
    .nth(count - 1)
    .waitFor();
  await settled(page);
}

test('the time line says how many there are, goes to messages, and zooms what is listed', async () => {
  await withPage(async (page) => {
    await openFile(page, log);
    const box = await page.locator('#timeLine').boundingBox();
    const at = (share) => box.x + 160 + (box.width - 170) * share;
    const y = box.y + 20;
    await page.mouse.move(at(0.5), y);
    await says(page, '#timeLineWords', /^2026-03-01 \d\d:\d\d.*: \d+ messages?/);
    await page.mouse.click(at(0.5), y);
    const middle = Number((await page.getAttribute('#messages', 'aria-activedescendant')).split('-')[1]);
    assert.ok(middle > 1300 && middle < 1700, `the middle of the time is at message ${middle}`);

    await page.mouse.move(at(0.25), y);
    await page.mouse.down();
    await page.mouse.move(at(0.5), y);
    await page.mouse.up();
    const inRange = Number.parseInt(await lists(page, '[\\d,]+ of 3,000 messages'), 10);
    assert.ok(inRange > 600 && inRange < 900, `a quarter of the time has ${inRange} messages`);
    await page.click('#wholeTime');
    await lists(page, '3,000 messages');
  });
});

test('several numbers are plotted, read off by pointing and by keys, and zoomed', async () => {
  await withPage(async (page) => {
    await openFile(page, log);
    await page.click('#plotTab');
    await drawn(page, 'focusValue_t FOCUS_VALUE', 1);
    await drawn(page, 'deviceStatus_t LOW_STATUS', 2);
    await page.selectOption('#plotBands', 'deviceStatus_t STATUS');
    await page.waitForSelector('#plot[aria-label$="bands of STATUS"]');
    await settled(page);

    // The values that keys go through are those of the log, in order.
    await page.focus('#plot');
    await page.keyboard.press('Home');
    const read = [];
    for (let i = 0; i < 12; ++i) {
      const reading = await page.textContent('#plotReading');
      const value = /FOCUS_VALUE ([\d.]+)/.exec(reading);
      if (value && Number(value[1]) !== read.at(-1)) read.push(Number(value[1])); // it stays between its messages
      await page.keyboard.press('ArrowRight');
    }
    assert.ok(read.length > 2);
    assert.deepEqual(read, facts.focus.slice(0, read.length));
    await says(page, '#plotReading', /STATUS \d/);

    const box = await page.locator('#plot .u-over').boundingBox();
    const point = (share) => page.mouse.move(box.x + box.width * share, box.y + 50);
    const whole = await saysElse(page, '#plotReading', () => point(0.5));
    assert.match(whole, /^2026-03-01 \d\d:\d\d:\d\d/);
    await page.mouse.move(box.x + box.width * 0.2, box.y + 50);
    await page.mouse.down();
    await page.mouse.move(box.x + box.width * 0.3, box.y + 60);
    await page.mouse.up();
    await page.waitForSelector('#plotWhole', { state: 'visible' });
    const zoomed = await saysElse(page, '#plotReading', () => point(0.5));
    assert.ok(zoomed < whole, 'the middle of the first third is earlier than the middle');
    await page.click('#plotWhole');
    await page.waitForSelector('#plotWhole', { state: 'hidden' });

    // What is read off is of the places that are drawn, at any moment, and is read anew when they change under the pointer.
    await page.evaluate(() => {
      globalThis.readings = [];
      new MutationObserver(() => readings.push(document.getElementById('plotReading').textContent)).observe(
        document.getElementById('plotReading'),
        { childList: true },
      );
    });
    await page.selectOption('#plotOver', 'sequence');
    for (let at = 0.4; at < 0.45; at += 0.01) await page.mouse.move(box.x + box.width * at, box.y + 50);
    await says(page, '#plotReading', 'sequence ');
    const readings = await page.evaluate(() => readings.filter((words) => words !== ''));
    assert.deepEqual(
      readings.filter((words) => !/^(2026-03-01 \d\d:\d\d:\d\d[^:]*|sequence [\d,]+): /.test(words)),
      [],
    );
    await page.click('#plotCurves button');
    await page.locator('#plotCurves li').nth(1).waitFor({ state: 'detached' });
  });
});

test('plot and time line look at one stretch; a point opens its message; what is in sight is saved; filters are followed', async () => {
  await withPage(async (page) => {
    await openFile(page, log);
    await page.click('#plotTab');
    await drawn(page, 'focusValue_t FOCUS_VALUE', 1);
    const csv = async () => (await wouldSave(page, '#plotCsv')).split('\n').slice(1, -1);
    const whole = await csv();
    const values = whole.map((line) => Number(line.split(',')[1])); // those of damaged messages too
    assert.deepEqual(
      facts.focus.filter((value) => !values.includes(value)),
      [],
    );

    // The wheel zooms about the pointer; the time line and the list go with it, and back.
    const box = await page.locator('#plot .u-over').boundingBox();
    await page.mouse.move(box.x + box.width / 2, box.y + box.height / 2);
    await page.mouse.wheel(0, -240);
    await lists(page, '[\\d,]+ of 3,000 messages');
    const seen = await csv();
    assert.ok(seen.length > whole.length / 3 && seen.length < (2 * whole.length) / 3, `${seen.length} of ${whole.length} are in sight`);
    const ends = await page.textContent('#timeLineWords');
    assert.ok(seen[0].slice(0, 19) >= ends.slice(0, 19) && seen.at(-1).slice(0, 19) <= ends.slice(27, 46), `${ends} holds ${seen[0]}`);
    // With Shift it zooms the values, and they can be dragged over.
    await page.keyboard.down('Shift');
    await page.mouse.wheel(0, -240);
    await page.keyboard.up('Shift');
    assert.equal((await csv()).length, seen.length);
    await page.click('#wholeTime');
    await lists(page, '3,000 messages');
    assert.equal((await csv()).length, whole.length);

    const svg = await wouldSave(page, '#plotSvg');
    assert.match(svg, /^<svg .*FOCUS_VALUE.*<\/svg>\n$/s);
    assert.ok(!/NaN|undefined/.test(svg));
    assert.match(await wouldSave(page, '#plotPng'), /^\x89PNG/);

    await page.fill('#filterWhere', 'FOCUS_VALUE > 1040');
    await page.press('#filterWhere', 'Enter');
    await page.selectOption('#filterKind', '4112');
    const high = values.filter((value) => value > 1040);
    await lists(page, `${high.length} of 3,000 messages`);
    await settled(page);
    assert.equal((await csv()).length, high.length);

    // The first point's message is opened by Enter, one beside the pointer by a click.
    await page.focus('#plot');
    await page.keyboard.press('Home');
    await page.keyboard.press('Enter');
    await says(page, '#messageText', `FOCUS_VALUE=${high[0].toFixed(6)}`);
    await page.click('#plotTab');
    await page.focus('#plot');
    await page.keyboard.press('Home');
    const boxOf = (selector) => page.$eval(selector, (one) => one.getBoundingClientRect().toJSON());
    await page.mouse.click((await boxOf('#plot .u-cursor-x')).x, (await boxOf('#plot .u-cursor-y')).y);
    await says(page, '#messageText', `FOCUS_VALUE=${high[0].toFixed(6)}`);
    assert.ok(await page.isVisible('#messagePanelBody'));
  });
});
