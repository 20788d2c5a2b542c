// The page and the command line are one core: the same tree, problems and sealed text for every sample, whole and
// damaged in every way, byte for byte. All of them are one log, which the tool reads at once.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { test } from 'node:test';
import { openFile, settled, toolPath, withPage, wouldSave } from './browser.mjs';
import { samples } from './makeLog.mjs';

// What happens to messages on their way.
const damages = {
  'as it is': (text) => text,
  'a wrong length': (text) => text.replace(/^(@@\d+ +)\d+/, '$199'),
  'a misspelt key': (text) => text.replace(/([A-Z])([A-Z])(=)/, '$2$1$3'),
  'a byte that is no UTF-8': (text) => text.replace(/=([^{};=])/, '=\xff$1'),
  'a pair twice': (text) => text.replace(/\{([A-Z_0-9]+=[^{};]*;)/, '{$1$1'),
  'a brace without its end': (text) => text.replace(/\}(?=[^}]*\}!!)/, ''),
  'a decimal comma': (text) => text.replace(/(\d)\.(\d)/, '$1,$2'),
};
const cases = samples.flatMap(({ name, text }) =>
  Object.entries(damages)
    .map(([way, damage]) => ({ name: `${name}, ${way}`, isWhole: way === 'as it is', text: damage(text) }))
    .filter((one) => one.isWhole || one.text !== text),
);
const log = Buffer.from(cases.map(({ text }) => `${text}\n`).join(''), 'latin1');

// What the tool says of the log, as one-byte characters.
function tool(...parameters) {
  const { stdout, error } = spawnSync(toolPath, [...parameters, '-'], { input: log, maxBuffer: 1 << 28 });
  if (error) throw error;
  return stdout.toString('latin1');
}

const lines = (text) => text.split('\n').filter(Boolean);
// Behind each comment that says where a message was.
const pieces = (text) => text.split(/^# -:\d+:\d+\n/m).slice(1);
// The tool says where it found a message; the page has that in its list.
const withoutPlace = (json) => json.replace(/^\{.*?(?="(id|name|echo|seq|length|problems|text|body)":)/, '{');

// Of each message, by where it begins.
function toolProblems() {
  const found = new Map();
  for (const line of lines(Buffer.from(tool('check', '--json'), 'latin1').toString())) {
    const { offset, code, severity, message, consequence, suggestion } = JSON.parse(line);
    if (!found.has(offset)) found.set(offset, []);
    found.get(offset).push([code, severity, message, consequence, suggestion ? `did you mean ${suggestion}?` : '']);
  }
  return found;
}

function shownProblems(page) {
  return page.$$eval('#problemPane:not([hidden]) li', (items) =>
    items.map((item) => {
      const words = (name) => item.querySelector(`.${name}`)?.textContent ?? '';
      return [item.dataset.code, words('problemSeverity'), words('problemMessage'), words('problemConsequence'), words('problemMeant')];
    }),
  );
}

async function savedAs(page, form) {
  await page.selectOption('#formChoice', form);
  return wouldSave(page, '#saveText');
}

// What every row of the tree shows.
async function shownTree(page) {
  await page.press('#tree', '*');
  return page.$eval('#tree', async (tree) => {
    tree.style.height = tree.querySelector('.spacer').style.height; // so that every row is in sight
    for (let frame = 0; frame < 3; ++frame) await new Promise(requestAnimationFrame);
    const rows = [...tree.querySelectorAll('.row:not([hidden], [aria-expanded])')].sort(
      (left, right) => left.dataset.index - right.dataset.index,
    );
    const shown = rows.map((row) => `${row.dataset.path} = ${row.querySelector('.treeValue').textContent}`);
    tree.style.height = '';
    return shown;
  });
}

test('every sample, whole and damaged in every way', { timeout: 600_000 }, async () => {
  const expected = { json: lines(tool('json')).map(withoutPlace), flat: pieces(tool('flat')), show: pieces(tool('show')) };
  const problems = toolProblems();
  const sealed = [];
  await withPage(async (page) => {
    await openFile(page, { name: 'messages.log', mimeType: '', buffer: log });
    await page.waitForFunction((count) => document.getElementById('listCount').textContent === `${count} messages`, cases.length);
    for (const [at, { name, text, isWhole }] of cases.entries()) {
      if (at > 0) await page.press('#messages', 'ArrowDown');
      await settled(page);
      const offset = cases.slice(0, at).reduce((sum, one) => sum + one.text.length + 1, 0);
      assert.deepEqual(await shownProblems(page), problems.get(offset) ?? [], name);
      assert.equal(await savedAs(page, 'json'), expected.json[at], name);
      const flat = (await savedAs(page, 'flat')).trimEnd();
      assert.equal(flat, expected.flat[at].trimEnd(), name);
      assert.equal((await savedAs(page, 'show')).trimEnd(), expected.show[at].trimEnd(), name);
      // The flat form of a damaged message holds its text; it marks texts of 16-bit characters: u"Spring".
      if (isWhole)
        assert.deepEqual(
          await shownTree(page),
          lines(
            Buffer.from(flat, 'latin1')
              .toString()
              .replaceAll(/ = u"(.*)"$/gm, ' = $1'),
          ),
          name,
        );

      const isOpen = await page.isVisible('#sealMessage');
      if (isOpen) await page.click('#sealMessage');
      const made = await savedAs(page, 'message');
      // What can't be sealed without losing something stays as it is.
      if (!isOpen || made !== text) sealed.push(made);
    }
    assert.deepEqual(sealed, lines(tool('seal')));
  });
});
