// The page and the command line are one core: the same tree, problems and sealed text for every sample, whole and
// damaged, byte for byte.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { test } from 'node:test';
import { openFile, toolPath, withPage, wouldSave } from './browser.mjs';
import { samples } from './makeLog.mjs';

// The tool reads its standard input.
function tool(input, ...parameters) {
  const { stdout, error } = spawnSync(toolPath, [...parameters, '-'], { input, maxBuffer: 1 << 26 });
  if (error) throw error;
  return stdout;
}

// The comment that says where the message was; behind it, an empty line.
const withoutFirstLine = (bytes) => bytes.toString('latin1').replace(/^# -:.*\n/, '').replace(/\n$/, '');
const withoutLineEnd = (bytes) => bytes.toString('latin1').replace(/\n$/, '');
// The tool says where it found a message; the page has that in its list.
const withoutPlace = (json) => json.replace(/^\{.*?(?="(id|name|echo|seq|length|problems|text|body)":)/, '{');

async function savedAs(page, form) {
  await page.selectOption('#formChoice', form);
  return wouldSave(page, '#saveText');
}

function shownProblems(page) {
  return page.$$eval('#problems li', (items) =>
    items.map((item) => {
      const words = (name) => item.querySelector(`.${name}`)?.textContent ?? '';
      return [item.dataset.code, words('problemSeverity'), words('problemMessage'), words('problemConsequence'), words('problemMeant')];
    }),
  );
}

function toolProblems(bytes) {
  const lines = tool(bytes, 'check', '--json').toString().split('\n').filter(Boolean);
  return lines
    .map((line) => JSON.parse(line))
    .map(({ code, severity, message, consequence, suggestion }) => [code, severity, message, consequence, suggestion ? `did you mean ${suggestion}?` : '']);
}

// Without the comment that says where the message was.
const toolFlat = (bytes) => withoutLineEnd(tool(bytes, 'flat')).replace(/^# -:.*\n/, '').trimEnd();

// Whole messages alone: of a damaged one the flat form holds the text instead.
async function compareTree(page, bytes) {
  await page.press('#tree', '*');
  await page.evaluate(async () => {
    document.getElementById('tree').style.height = '26000px'; // so that every row is in sight
    for (let frame = 0; frame < 3; ++frame) await new Promise(requestAnimationFrame);
  });
  const rows = await page.$$eval('#tree .row:not([hidden])', (all) =>
    all
      .filter((row) => !row.hasAttribute('aria-expanded'))
      .sort((left, right) => left.dataset.index - right.dataset.index)
      .map((row) => `${row.dataset.path} = ${row.querySelector('.treeValue').textContent}`),
  );
  // The flat form marks texts of 16-bit characters: u"Spring".
  const lines = Buffer.from(toolFlat(bytes), 'latin1').toString().split('\n');
  assert.deepEqual(rows, lines.map((line) => line.replace(/ = u"(.*)"$/, ' = $1')));
}

async function compare(page, bytes, isWhole) {
  await openFile(page, { name: 'message.txt', mimeType: 'text/plain', buffer: bytes });
  await page.waitForSelector('#messagePanelBody:not([hidden])');
  if (isWhole) await compareTree(page, bytes);
  assert.deepEqual(await shownProblems(page), toolProblems(bytes));
  assert.equal(await savedAs(page, 'json'), withoutPlace(withoutLineEnd(tool(bytes, 'json'))));
  assert.equal((await savedAs(page, 'flat')).trimEnd(), toolFlat(bytes));
  assert.equal(await savedAs(page, 'show'), withoutFirstLine(tool(bytes, 'show')));
  if (await page.isVisible('#sealMessage')) await page.click('#sealMessage');
  // What can't be sealed without losing something stays as it is.
  assert.equal(await savedAs(page, 'message'), withoutLineEnd(tool(bytes, 'seal')) || bytes.toString('latin1'));
}

// What happens to messages on their way.
const damages = {
  'a wrong length': (text) => text.replace(/^(@@\d+ +)\d+/, '$199'),
  'a misspelt key': (text) => text.replace(/([A-Z])([A-Z])(=)/, '$2$1$3'),
  'a byte that is no UTF-8': (text) => text.replace(/=([^{};=])/, '=\xff$1'),
  'a pair twice': (text) => text.replace(/\{([A-Z_0-9]+=[^{};]*;)/, '{$1$1'),
  'a brace without its end': (text) => text.replace(/\}(?=[^}]*\}!!)/, ''),
  'a decimal comma': (text) => text.replace(/(\d)\.(\d)/, '$1,$2'),
};

test('every sample, as it is', { timeout: 300_000 }, async () => {
  await withPage(async (page) => {
    for (const { name, text } of samples) {
      await compare(page, Buffer.from(text), true).catch((error) => assert.fail(`${name}: ${error.stack}`));
    }
  });
});

test('every sample, damaged in one of many ways', { timeout: 600_000 }, async () => {
  await withPage(async (page) => {
    const ways = Object.entries(damages);
    for (const [at, { name, text }] of samples.entries()) {
      const turned = [...ways.slice(at % ways.length), ...ways.slice(0, at % ways.length)];
      const [way, damage] = turned.find(([, one]) => one(text) !== text);
      await compare(page, Buffer.from(damage(text), 'latin1'), false).catch((error) => assert.fail(`${name} with ${way}: ${error.stack}`));
    }
  });
});
