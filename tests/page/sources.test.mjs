// What the command line reads the page reads: packed files, UTF-16, logs in JSON and in escapes, a lost "@", several files
// as one log. What is not complete says so.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { mkdir, mkdtemp, rm, writeFile } from 'node:fs/promises';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { test } from 'node:test';
import { gzipSync } from 'node:zlib';
import { chooseMessage, isFirefox, lists, openFile, says, toolPath, withPage, wouldSave } from './browser.mjs';
import { message } from './makeLog.mjs';

const focus = (sequence, name = 'Gr\u00fcn \u{1f600}') => message(4112, sequence, `{MEDIA_NAME=${name};FOCUS_VALUE=${sequence}.500000;}`);
const log = `2026-03-01T08:00:01 a ${focus(1)}\n2026-03-01T08:00:03 a ${focus(3)}\n`;
const other = `2026-03-01T08:00:02 b ${focus(2)}\n2026-03-01T08:00:04 b ${focus(4)}\n`;
const bigEndian = (text) => Buffer.from(text, 'utf16le').swap16();
const zstd = (bytes, ...options) => spawnSync('zstd', ['-qc', ...options], { input: bytes }).stdout;

// Stored as it is.
const beginnings = gzipSync(Buffer.from([10, 0x1f, 0x8b, 8, 0, 0x1f, 0x8b, 8, 10]), { level: 0 });

test('packed files, UTF-16 and a damaged start are read, and say what they are', async () => {
  const cases = [
    ['gzip', gzipSync(log), /packed with gzip/],
    [
      'gzip in several members, one of them full of what begins one',
      Buffer.concat([gzipSync(log.slice(0, 50)), gzipSync(log.slice(50)), gzipSync(''), beginnings]),
      /packed with gzip/,
    ],
    ['zstd', zstd(log), /packed with zstd/],
    ['zstd in several frames, packed again', gzipSync(Buffer.concat([zstd(log.slice(0, 50)), zstd(log.slice(50), '-19')])), /gzip.*zstd/],
    ['UTF-16 with a mark', Buffer.from(`\ufeff${log}`, 'utf16le'), /UTF-16, read as UTF-8/],
    ['UTF-16 without', Buffer.from(log, 'utf16le'), /UTF-16, read as UTF-8/],
    ['UTF-16, the other way', bigEndian(`\ufeff${log}`), /UTF-16/],
    ['packed UTF-16', gzipSync(bigEndian(log)), /gzip.*UTF-16/],
  ];
  await withPage(async (page) => {
    for (const [name, buffer, words] of cases) {
      await openFile(page, { name: 'a.log', mimeType: '', buffer });
      assert.equal(await page.textContent('#summary'), '2 messages · 1 kind · 1 gap with 1 missing', name);
      assert.match(await page.textContent('#fileName'), words, name);
      assert.equal(Buffer.from(await wouldSave(page, '#saveText'), 'latin1').toString(), focus(1), name);
    }
    await openFile(page, { name: 'a.txt', mimeType: '', buffer: Buffer.from(focus(1).slice(1)) });
    await page.waitForSelector('#problems li[data-code=no-start-marker]');

    // What must be decoded first is named, as vekmsg names it.
    await openFile(page, { name: 'a.b64', mimeType: '', buffer: Buffer.from(Buffer.from(focus(1)).toString('base64')) });
    await says(page, '#noMessages', 'The messages in it are base64 (QEA0 is @@4): base64 -d decodes them; open what comes out.');

    // What can't be unpacked says so, and what to do.
    await openFile(page, { name: 'a.zst', mimeType: '', buffer: zstd(log).subarray(0, 60) });
    await says(
      page,
      '#readingProblem',
      'a.zst is packed with zstd, and cut off: what stands in front of that comes out of zstd -d -c a.zst > part.log; open part.log.',
    );
    await says(page, '#announcer', 'zstd -d -c a.zst');
    await says(page, '#noMessages', 'No message of it was read.');
    await openFile(page, { name: 'a.zst', mimeType: '', buffer: zstd(log, '--long=31') });
    await says(page, '#readingProblem', 'zstd -d --long=31 a.zst');
    await openFile(page, { name: 'b.gz', mimeType: '', buffer: gzipSync(log).subarray(0, 60) });
    await says(page, '#readingProblem', 'gunzip -c b.gz');
    await openFile(page, { name: "a device's.gz", mimeType: '', buffer: Buffer.concat([gzipSync(log), Buffer.from('rest')]) });
    await says(page, '#readingProblem', String.raw`gunzip -c 'a device'\''s.gz' > part.log`);
  });
});

test('logs in JSON and in escapes are read as the command line reads them', async () => {
  const whole = [1, 2, 3].map((at) => `a > b ${focus(at)}`);
  const time = (at) => `2026-03-01T08:00:0${at}.500Z`;
  const entries = {
    journal: whole.map((text, at) => ({ __REALTIME_TIMESTAMP: String(Date.parse(time(at)) * 1000), MESSAGE: text })),
    container: whole.flatMap((text, at) => [
      { log: text.slice(0, 40), stream: 'stdout', time: time(at) }, // a long line comes in pieces
      { log: `${text.slice(40)}\n`, stream: 'stdout', time: time(at) },
    ]),
  };
  const logs = Object.values(entries).map((all) => all.map((one) => `${JSON.stringify(one)}\n`).join(''));
  logs.push(
    JSON.stringify(entries.journal, undefined, 1),
    whole.map((text, at) => `${time(at)} ${text.replaceAll('\u00fc', '\\xc3\\xbc')}\n`).join(''),
  );
  await withPage(async (page) => {
    for (const [text, buffer] of [...logs.map((one) => [one, Buffer.from(one)]), [logs[0], gzipSync(bigEndian(logs[0]))]]) {
      const { stdout } = spawnSync(toolPath, ['json', '-'], { input: text });
      const expected = stdout.toString().split('\n').filter(Boolean);
      assert.equal(expected.length, 3);
      await openFile(page, { name: 'a.log', mimeType: '', buffer });
      await says(page, '#fileName', /, of which the log in it is read$/);
      await lists(page, '3 messages');
      for (const [at, { line, time: when, seq }] of expected.map((one) => JSON.parse(one)).entries()) {
        await chooseMessage(page, at);
        await says(page, '#messageFacts', `${when.replace('T', ' ').replace('Z', '')} · line ${line} · `);
        assert.equal(await wouldSave(page, '#saveText'), Buffer.from(focus(seq)).toString('latin1'));
      }
    }
  });
});

test('several files are one log in order of time, and each line knows its file', async () => {
  await withPage(async (page) => {
    await openFile(page, [
      { name: 'a.log', mimeType: '', buffer: Buffer.from(log) },
      { name: 'b.log.gz', mimeType: '', buffer: gzipSync(other) },
    ]);
    assert.match(await page.textContent('#summary'), /^4 messages/);
    const expected = [
      ['line 1 of a.log', '1'],
      ['line 1 of b.log.gz', '2'],
      ['line 2 of a.log', '3'],
      ['line 2 of b.log.gz', '4'],
    ];
    for (const [at, [place, sequence]] of expected.entries()) {
      await page.click(`#messages-${at}`);
      await says(page, '#messageFacts', place);
      assert.equal(await page.textContent('#tree .row[data-path="@seq"] .treeValue'), sequence);
    }
    await page.fill('#filterWords', '2.5');
    await says(page, '#listCount', '1 of 4 messages');
    assert.match(await page.getAttribute('#messages-0', 'title'), /b\.log\.gz/);
  });
});

// As an operating system gives it, which a script can't.
test('a folder that is dropped on the page is one log of what is in it and in its folders', async (context) => {
  if (isFirefox) return context.skip('its driver drops nothing');
  const folder = await mkdtemp(join(tmpdir(), 'vekmsg-'));
  try {
    await mkdir(join(folder, 'press', 'older'), { recursive: true });
    await writeFile(join(folder, 'press', 'b.log'), log);
    await writeFile(join(folder, 'press', 'older', 'a.log.gz'), gzipSync(other));
    await writeFile(join(folder, 'one more.log'), `2026-03-01T08:00:09 ${focus(5)}\n`);
    await withPage(async (page) => {
      const session = await page.context().newCDPSession(page);
      const data = { items: [], files: [join(folder, 'press'), join(folder, 'one more.log')], dragOperationsMask: 1 };
      for (const type of ['dragEnter', 'dragOver', 'drop']) await session.send('Input.dispatchDragEvent', { type, x: 300, y: 300, data });
      await says(page, '#summary', /^5 messages · 1 kind/);
      await says(page, '#fileName', /^3 files/);
      const places = ['b.log', 'a.log.gz', 'b.log', 'a.log.gz', 'one more.log'];
      for (const [at, place] of places.entries()) {
        await chooseMessage(page, at);
        await says(page, '#messageFacts', place);
        await says(page, '#messageText', `FOCUS_VALUE=${at + 1}.5`);
      }
    });
  } finally {
    await rm(folder, { recursive: true });
  }
});
