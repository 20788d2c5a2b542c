// The page and the command line are one core: the same tree, problems and sealed text for every sample, whole and
// damaged in every way, byte for byte. All of them are one log, which the tool reads at once.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { test } from 'node:test';
import { lists, openFile, settled, toolPath, withPage } from './browser.mjs';
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
const atOnce = 100;
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

// What the page shows of the message at a place of its list and of those behind it, and what it saves of each, sealed at
// last. In the page: as many calls from outside take minutes.
async function shownFrom([from, wholes]) {
  const byId = (id) => document.getElementById(id);
  const tree = byId('tree');
  const quiet = () =>
    new Promise((resolve) => {
      const look = () => byId('work').hasAttribute('aria-busy') || resolve();
      new MutationObserver(look).observe(byId('work'), { attributes: true });
      look();
    });
  const press = (target, key) => target.dispatchEvent(new KeyboardEvent('keydown', { key }));
  const savedAs = async (form) => {
    byId('formChoice').value = form;
    byId('formChoice').dispatchEvent(new Event('change'));
    await quiet();
    return window.wouldSave('#saveText');
  };
  const problemOf = (item) => {
    const words = (name) => item.querySelector(`.${name}`)?.textContent ?? '';
    return [item.dataset.code, words('problemSeverity'), words('problemMessage'), words('problemConsequence'), words('problemMeant')];
  };
  // What every row shows.
  const treeRows = () => {
    press(tree, '*');
    tree.style.height = tree.querySelector('.spacer').style.height; // so that every row is in sight
    tree.dispatchEvent(new Event('scroll'));
    const rows = [...tree.querySelectorAll('.row:not([hidden], [aria-expanded])')];
    rows.sort((left, right) => left.dataset.index - right.dataset.index);
    const shown = rows.map((row) => `${row.dataset.path} = ${row.querySelector('.treeValue').textContent}`);
    tree.style.height = '';
    return shown;
  };
  const all = [];
  for (const [i, isWhole] of wholes.entries()) {
    if (from + i > 0) press(byId('messages'), 'ArrowDown');
    await quiet();
    const problems = [...document.querySelectorAll('#problemPane:not([hidden]) li')].map(problemOf);
    const one = { problems, tree: isWhole && treeRows(), isOpen: !byId('sealMessage').hidden };
    for (const form of ['json', 'flat', 'show']) one[form] = await savedAs(form);
    if (one.isOpen) byId('sealMessage').click();
    await quiet();
    one.message = await savedAs('message');
    all.push(one);
  }
  return all;
}

test('every sample, whole and damaged in every way', { timeout: 600_000 }, async () => {
  const expected = { json: lines(tool('json')).map(withoutPlace), flat: pieces(tool('flat')), show: pieces(tool('show')) };
  const problems = toolProblems();
  const sealed = [];
  await withPage(
    async (page) => {
      await openFile(page, { name: 'messages.log', mimeType: '', buffer: log });
      await lists(page, `${cases.length} messages`);
      await settled(page);
      let offset = 0;
      for (let from = 0; from < cases.length; from += atOnce) {
        const wholes = cases.slice(from, from + atOnce).map(({ isWhole }) => isWhole);
        const some = await page.evaluate(shownFrom, [from, wholes]);
        for (const [i, shown] of some.entries()) {
          const at = from + i;
          const { name, text, isWhole } = cases[at];
          assert.deepEqual(shown.problems, problems.get(offset) ?? [], name);
          offset += text.length + 1;
          for (const form of ['json', 'flat', 'show']) assert.equal(shown[form].trimEnd(), expected[form][at].trimEnd(), name);
          // The flat form of a damaged message holds its text; it marks texts of 16-bit characters: u"Spring".
          const flat = Buffer.from(shown.flat, 'latin1').toString();
          if (isWhole) assert.deepEqual(shown.tree, lines(flat.replaceAll(/ = u"(.*)"$/gm, ' = $1')), name);
          // What can't be sealed without losing something stays as it is.
          if (!shown.isOpen || shown.message !== text) sealed.push(shown.message);
        }
      }
      assert.deepEqual(sealed, lines(tool('seal')));
    },
    { height: 300 },
  );
});
