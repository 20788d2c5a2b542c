// Looking: what is opened is listed, found by filters, and shown as a tree beside its text.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { test } from 'node:test';
import { chooseMessage, lists, openFile, paste, saved, says, toolPath, treeRows, withPage } from './browser.mjs';
import { logLines, message, samples } from './makeLog.mjs';

test('a generated log is listed whole, with its gaps and its damaged messages, and filtered', async () => {
  const facts = {};
  const text = [...logLines(3000, facts)].join('');
  await withPage(async (page) => {
    await openFile(page, { name: 'device.log', mimeType: 'text/plain', buffer: Buffer.from(text) });
    assert.equal(
      await page.textContent('#summary'),
      `3,000 messages · ${facts.kinds.size} kinds · ${facts.damaged} with errors · ${facts.damaged} damaged · ${facts.gaps} gaps with ${facts.missing} missing`,
    );
    await lists(page, '3,000 messages');

    await page.selectOption('#filterKind', '4112');
    const focusCount = facts.kinds.get(4112).toLocaleString('en');
    await lists(page, `${focusCount} of 3,000 messages`);
    await page.selectOption('#filterKind', '');
    await page.selectOption('#filterProblem', 'damaged');
    await lists(page, `${facts.damaged} of 3,000 messages`);
    await page.selectOption('#filterProblem', '');

    // Words are found in the messages alone, not in what stands in front of them, in any letter case.
    await page.fill('#filterWords', 'plate 1234 OF');
    const wanted = text.split('\n').filter((line) => line.includes('Plate 1234 of')).length;
    await lists(page, `${wanted} of 3,000 messages`);
    await page.fill('#filterWords', ' device @@');
    await lists(page, '0 of 3,000 messages');
    assert.ok(await page.isVisible('#noMessages'));
    await page.click('#clearFilters');
    await lists(page, '3,000 messages');
  });
});

test('a line says when, which way, what kind and what matters, by columns that people choose', async () => {
  const status = message(4161, 42, '{STATUS=3;LOW_STATUS=0;SEVERITY=2;NUM_OF_MESSAGES=2;MSGS={Cassette 2 is empty,Load\u202e plates,};}');
  const log = [
    `2026-03-01T08:00:02.250 host > device ${message(4112, 41, '{MEDIA_NAME=Violet;FOCUS_VALUE=1024.500000;}')}`,
    `2026-03-01T08:00:02.300 host <- device ${status}`,
    `2026-03-03T08:00:02.400 RX ${message(4101, 1, '{ARRAY_CASSETTE={{NAME=a;},{NAME=b;},};}')}`,
  ];
  const cells = (page, index) => page.$$eval(`#messages-${index} > .cell`, (all) => all.map(({ textContent }) => textContent.trim()));
  const shows = (page, index, last) => says(page, `#messages-${index} .values`, new RegExp(`^\\s*${last}\\s*$`));
  await withPage(async (page) => {
    await openFile(page, { name: 'a.log', mimeType: '', buffer: Buffer.from(log.join('\n')) });
    await shows(page, 2, 'ARRAY_CASSETTE 2×');
    assert.deepEqual(await cells(page, 0), ['03-01 08:00:02.250', 'host → device', 'focusValue_t', 'Violet FOCUS_VALUE 1024.5']);
    assert.deepEqual((await cells(page, 1)).slice(1), [
      'device → host',
      'deviceStatus_t',
      'Cassette 2 is empty; Load\\xe2\\x80\\xae plates STATUS 3 SEVERITY 2',
    ]);
    assert.equal((await cells(page, 2))[1], 'rx');
    assert.match(await page.getAttribute('#messages-1', 'class'), /device2/);

    // Where there is less room, texts and directions are shorter; the value behind a text stays in sight, whole.
    for (const width of [1024, 1200]) {
      await page.setViewportSize({ width, height: 900 });
      await says(page, '#messages-0 .direction', /^h→d$/);
      const areInSight = (values) =>
        values.every((value, at) => {
          const line = document.querySelector(`#messages-${at}`)?.getBoundingClientRect();
          const first = document.querySelector(`#messages-${at} .part`)?.querySelector(':nth-child(2)');
          const seen = first?.getBoundingClientRect();
          return first?.textContent === value && seen.right <= line.right && seen.bottom <= line.bottom;
        });
      await page.waitForFunction(areInSight, ['1024.5', '3']);
    }
    await page.setViewportSize({ width: 1400, height: 900 });

    await page.click('#columns summary');
    await page.uncheck('#columnChoices li:has-text("Direction") input');
    await page.fill('#columnPath', 'ARRAY_CASSETTE[1].NAME');
    await page.press('#columnPath', 'Enter');
    await says(page, '#messages-2 .path', /^b$/);
    await page.reload();
    await page.waitForSelector('body.isReady');
    await openFile(page, { name: 'a.log', mimeType: '', buffer: Buffer.from(log.join('\n')) });
    await shows(page, 2, 'ARRAY_CASSETTE 2×');
    assert.deepEqual((await cells(page, 2)).slice(1), ['cassetteArray_t', 'b', 'ARRAY_CASSETTE 2×']);
    const box = await page.locator('#messages').boundingBox();
    assert.ok(box.height >= 30 * 24, `${box.height} pixels are less than 30 lines`);
  });
});

test('filters are those of --where, each a chip; the address opens the same view; what passes is saved', async () => {
  const lines = [...logLines(3000)];
  const buffer = Buffer.from(lines.join(''));
  const asTool = (where) =>
    spawnSync(toolPath, ['json', '--where', where, '-'], { input: buffer, maxBuffer: 1 << 26 })
      .stdout.toString()
      .split('\n')
      .filter(Boolean).length;
  const counts = (page, count) => lists(page, `${count.toLocaleString('en')} of 3,000 messages`);
  const add = async (page, where) => {
    await page.fill('#filterWhere', where);
    await page.press('#filterWhere', 'Enter');
  };
  const first = 'MEDIA_NAME =~ "^North.* 0\\.3$" and FOCUS_VALUE >= 1030';
  const second = 'not @seq < 2000';
  await withPage(async (page) => {
    await openFile(page, { name: 'device.log', mimeType: '', buffer });
    for (const wrong of ['MEDIA_NAME =~ (', 'FOCUS_VALUE >']) {
      await add(page, wrong);
      await page.waitForSelector('#whereProblem:not(:empty)');
      assert.equal(await page.locator('.chip').count(), 0, wrong);
    }
    // What is wrong is underlined as it is typed, where it stands, and gone when it is mended.
    await page.fill('#filterWhere', '');
    await page.locator('#filterWhere').pressSequentially('MEDIA_NAME and focus');
    await page.waitForSelector('#whereMarks .wrong-error:has-text("focus")');
    const [mark, field] = await Promise.all(['#whereMarks .wrong-error', '#filterWhere'].map((one) => page.locator(one).boundingBox()));
    const letter = mark.width / 5;
    assert.ok(Math.abs(mark.x - field.x - 15 * letter) < 2 * letter, `${mark.x} in ${field.x}`);
    await page.press('#filterWhere', 'ArrowDown');
    await page.press('#filterWhere', 'Enter');
    assert.equal(await page.inputValue('#filterWhere'), 'MEDIA_NAME and FOCUS_VALUE');
    await page.waitForSelector('#whereMarks .wrong-error', { state: 'detached' });
    await says(page, '#whereProblem', /^$/);
    await add(page, first);
    await counts(page, asTool(first));
    await says(page, '#whereProblem', /^$/);
    await add(page, second);
    const both = asTool(`(${first}) and ${second}`);
    await counts(page, both);
    assert.ok(both > 0 && both < asTool(first));

    const passing = (await saved(page, '#savePassing')).toString();
    assert.equal(passing.split('\n').filter(Boolean).length, both);
    assert.ok(
      passing
        .split('\n')
        .filter(Boolean)
        .every((line) => buffer.includes(`${line}\n`)),
      'whole lines',
    );

    await page.click('.chip:nth-child(1) .switch');
    await counts(page, asTool(second));
    const address = page.url();
    await page.click('.chip:nth-child(2) .remove');
    await lists(page, '3,000 messages');
    await page.goto('about:blank');
    await page.goto(address);
    await page.waitForSelector('body.isReady');
    await openFile(page, { name: 'device.log', mimeType: '', buffer });
    await counts(page, asTool(second));
    await page.click('.chip.off .switch');
    await counts(page, both);

    // A view is kept by the browser; what the text filter finds is marked in list, tree and text, wherever its elements end.
    await page.fill('#filterWords', 'violet 0.3;FOCUS');
    await page.click('#views summary');
    await page.fill('#viewName', 'high');
    await page.press('#viewName', 'Enter');
    await page.click('#clearFilters');
    await lists(page, '3,000 messages');
    await page.click('#views summary');
    await page.click('#viewChoices button');
    await counts(page, both);
    await chooseMessage(page, 0);
    await page.waitForFunction(() => [...(CSS.highlights.get('match') ?? [])].map(String).join() === 'violet 0.3;FOCUS');
    await page.fill('#filterWords', 'violet');
    await page.waitForFunction(() => [...(CSS.highlights.get('match') ?? [])].length > 20);
  });
});

test('the selected pair is lit in the tree and in the text, whichever was chosen', async () => {
  await withPage(async (page) => {
    await paste(page, samples.find(({ name }) => name.startsWith('4101')).text);
    const lit = () => page.$$eval('#messageText mark', (marks) => marks.map((mark) => mark.textContent).join(''));
    const selected = () => page.getAttribute('#tree .row[aria-selected=true]', 'data-path');

    const { path } = (await treeRows(page)).find(({ path: one }) => one.endsWith('.VENDOR') || /\]\.[A-Z]+$/.test(one));
    await page.click(`#tree .row[data-path="${path}"]`);
    const pair = await lit();
    assert.ok(pair.startsWith(`${path.split('.').at(-1)}=`), `${path} lights ${pair}`);

    await page.click('#messageText', { position: { x: 40, y: 16 } });
    assert.notEqual(await selected(), path);
    assert.ok((await lit()).length > 0);
  });
});

test('problems say their place, what a host makes of them, and what was meant; choosing one goes there', async () => {
  await withPage(async (page) => {
    await paste(page, '@@4112    80 7 45 {MEDIA_NAME=Violet;FOCUS_VALEU=3.5;}!!');
    const problem = page.locator('#problems li[data-code=unknown-key] .problem');
    assert.match(await problem.textContent(), /FOCUS_VALEU.*a host ignores it.*did you mean FOCUS_VALUE\?/);
    await problem.click();
    await says(page, '#messageText mark', 'FOCUS_VALEU');
    assert.equal(await page.getAttribute('#tree .row[aria-selected=true]', 'data-path'), 'FOCUS_VALEU');
  });
});

test('files and texts are dropped on the page', async () => {
  await withPage(async (page) => {
    const drop = (fill) =>
      page.evaluate((given) => {
        const data = new DataTransfer();
        if (given.file) data.items.add(new File([given.file], 'dropped.log'));
        else data.setData('text/plain', given.text);
        for (const kind of ['dragover', 'drop'])
          document.body.dispatchEvent(new DragEvent(kind, { dataTransfer: data, bubbles: true, cancelable: true }));
      }, fill);
    await drop({ file: `08:00:00 ${samples[0].text}\n08:00:01 ${samples[1].text}\n` });
    await says(page, '#summary', /^2 messages · 2 kinds$/);
    assert.match(await page.textContent('#fileName'), /^dropped\.log/);
    await drop({ text: samples[2].text });
    await says(page, '#summary', /^1 message · 1 kind$/);
  });
});

test('messages in other forms, wrapped ones, and texts without any', async () => {
  await withPage(async (page) => {
    await paste(page, '{"id":4112,"echo":7,"seq":41,"focusValue_t":{"MEDIA_NAME":"Violet","FOCUS_VALUE":3.25}}');
    assert.equal(await page.textContent('#messageText'), '@@4112    62 7 41 {MEDIA_NAME=Violet;FOCUS_VALUE=3.250000;}!!');
    await paste(page, '@@4112    62 7 41 {MEDIA_NAME=Violet;\nFOCUS_VALUE=3.250000;}!!');
    await page.waitForSelector('#problems li[data-code=line-break]');
    await paste(page, 'no message at all');
    assert.ok(await page.isVisible('#noMessages'));
    assert.equal(await page.textContent('#summary'), '0 messages · 0 kinds');
    for (const empty of ['#listHead', '#filterForm', '#detailPane']) assert.ok(await page.isHidden(empty), empty);
    await paste(page, '{"id":4112,');
    assert.notEqual(await page.textContent('#readingProblem'), '');
    assert.equal(await page.locator('#messages .row:visible').count(), 0);
  });
});

test('lines that are no messages are counted where they stand, and shown folded', async () => {
  const focus = message(4112, 1, '{MEDIA_NAME=Violet;FOCUS_VALUE=1.000000;}');
  const buffer = Buffer.from(`door open\ndoor shut\nfirst ${focus} still first\nfan on\n\nfan off\nsecond ${focus}\nthird ${focus}\n`);
  await withPage(async (page) => {
    await openFile(page, { name: 'a.log', mimeType: '', buffer });
    await page.waitForFunction(() => document.querySelectorAll('#messages .between').length === 2);
    for (const [at, words] of ['door open\ndoor shut', 'fan on\nfan off'].entries()) {
      await chooseMessage(page, at);
      await says(page, '#linesCount', '2 lines in front of it');
      await says(page, '#linesText', words);
    }
    await chooseMessage(page, 2);
    await page.waitForSelector('#linesBefore', { state: 'hidden' });
  });
});
