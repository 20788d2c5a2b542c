// The page open for long on a log that grows through a bridge, with a search and a plot over it: nothing is lost, and what
// stays of a message in the page is its place in the list.
//   growing.mjs [SECONDS [LINES-A-SECOND]]   60 seconds, 300 lines
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { readFileSync } from 'node:fs';
import { mkdtemp, open, readFile, rm } from 'node:fs/promises';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { setTimeout as delay } from 'node:timers/promises';
import { bridge } from './bridge.mjs';
import { openLine, reading, saved, says, toolPath, withPage } from './browser.mjs';
import { logLines } from './makeLog.mjs';

const [seconds, rate] = [60, 300].map((usual, at) => Number(process.argv[2 + at] ?? usual));
const ofEach = { memory: 300, browser: 300, heap: 0, nodes: 0, listeners: 0 }; // what may stay of a message
const measures = Math.max(10, Math.round(seconds / 60));

const resident = (process) => Number(/VmRSS:\s+(\d+)/.exec(readFileSync(`/proc/${process}/status`, 'utf8'))[1]) * 1024;

// The processes of the browser and of the page, which is busier than its others.
async function processesOf(page) {
  const session = await page.context().browser().newBrowserCDPSession();
  const { processInfo } = await session.send('SystemInfo.getProcessInfo');
  return ['browser', 'renderer'].map(
    (kind) => processInfo.filter(({ type }) => type === kind).sort((left, right) => right.cpuTime - left.cpuTime)[0].id,
  );
}

const toolCount = (path) => Number(/^([\d,]+) messages/m.exec(execFileSync(toolPath, ['summary', path]))[1].replaceAll(',', ''));

// A browser forgets when it likes: what it has least in the end is held against what it had most in the first half.
function isFlat(measured) {
  const [first, last] = [measured.slice(0, Math.ceil(measures / 2)), measured.slice(-Math.ceil(measures / 5))];
  for (const [name, ofMessage] of Object.entries(ofEach)) {
    const before = Math.max(...first.map((one) => one[name]));
    const after = Math.min(...last.map((one) => one[name]));
    const allowed = ofMessage * (last[0].messages - first.at(-1).messages);
    assert.ok(after <= before * 1.1 + allowed, `${name}: ${before} in the first half, then ${after}`);
  }
}

const folder = await mkdtemp(join(tmpdir(), 'vekmsg-'));
const path = join(folder, 'device.log');
const log = await open(path, 'w');
const { address, send, close } = await bridge();
try {
  await withPage(async (page) => {
    await openLine(page, address);
    const facts = {};
    const lines = logLines(Infinity, facts);
    let written = 0;
    const write = async (count) => {
      const text = Array.from({ length: count }, () => lines.next().value).join('');
      written += count;
      await log.write(text);
      const cut = Math.floor(text.length / 3); // pieces end anywhere
      send(text.slice(0, cut));
      send(text.slice(cut));
    };
    await write(200);
    await says(page, '#summary', '200 messages');
    await page.fill('#filterWords', 'Northlight');
    await page.click('#plotTab');
    await page.fill('#plotKeyName', 'focusValue_t FOCUS_VALUE');
    await page.press('#plotKeyName', 'Enter');

    const session = await page.context().newCDPSession(page);
    await session.send('Performance.enable');
    const processes = await processesOf(page);
    const measure = async () => {
      await session.send('HeapProfiler.collectGarbage');
      const { metrics } = await session.send('Performance.getMetrics');
      const of = Object.fromEntries(metrics.map(({ name, value }) => [name, value]));
      const [browser, memory] = processes.map(resident);
      return { messages: written, memory, browser, heap: of.JSHeapUsedSize, nodes: of.Nodes, listeners: of.JSEventListeners };
    };
    const began = performance.now();
    const measured = [];
    while (measured.length <= measures) {
      const passed = (performance.now() - began) / 1000;
      if (passed >= (measured.length * seconds) / measures) {
        const now = await measure();
        measured.push(now);
        const mega = (bytes) => `${(bytes / 1e6).toFixed(1)} MB`;
        console.log(
          `${passed.toFixed(0).padStart(6)} s  ${now.messages} messages, ${mega(now.memory)}, browser ${mega(now.browser)}, script ${mega(now.heap)}, ${now.nodes} nodes, ${now.listeners} listeners`,
        );
      }
      const due = Math.floor(passed * rate) + 200 - written;
      if (due > 0) await write(due);
      await delay(100);
    }
    // What is looked for is found to the end, the count is the tool's, and what would be saved is what was sent.
    await page.click('#liveStop');
    await reading(page, 120_000);
    const listed = await says(page, '#listCount', /^[\d,]+ of [\d,]+ messages$/);
    assert.equal(Number(listed.split(' of ')[1].replace(/\D/g, '')), toolCount(path), 'messages are lost');
    assert.ok((await saved(page, '#saveLog')).equals(await readFile(path)), 'bytes are lost');
    console.log(`${seconds} s, ${rate} lines a second: ${listed}, as vekmsg has them, and byte for byte`);
    isFlat(measured);
  });
} finally {
  close();
  await log.close();
  await rm(folder, { recursive: true });
}
