// How it looks, at each width and in each colour scheme: nothing is wider than the screen, nothing is hidden by going to
// a message, and an audit of contrast, names and roles finds nothing in any state, be something wrong or nothing there.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';
import { gzipSync } from 'node:zlib';
import { bridge } from './bridge.mjs';
import { openFile, openLine, says, settled, withPage } from './browser.mjs';
import { logLines, message } from './makeLog.mjs';

const audit = readFileSync(new URL('../../tools/page/node_modules/axe-core/axe.min.js', import.meta.url), 'utf8');
const unknown = message(4112, 9, '{MEDIA_NAME=a\u202eb;X=1;FOCUS_VALUE=3,5;Y=;}');
const lines = [...logLines(60)];
const log = { name: 'device with a rather long name of its file.log', mimeType: '', buffer: Buffer.from(`${lines.join('')}${unknown}\n`) };

async function look(page, state) {
  const wide = await page.evaluate(() => {
    const isOutside = (one) => one.getBoundingClientRect().right > innerWidth + 1 && !one.closest('.row, .visuallyHidden');
    const outside = [...document.querySelectorAll('body *')].filter(isOutside).map((one) => one.id || one.className || one.localName);
    return document.documentElement.scrollWidth > innerWidth ? ['the page', ...outside] : outside;
  });
  assert.deepEqual(wide, [], `${state}: wider than the screen`);
  const found = await page.evaluate(async () => {
    const { violations } = await window.axe.run(document, { resultTypes: ['violations'] });
    return violations.map(
      ({ id, nodes }) =>
        `${id}: ${nodes
          .slice(0, 3)
          .map(({ target, failureSummary }) => `${target} ${failureSummary.slice(0, 200)}`)
          .join(' | ')}`,
    );
  });
  assert.deepEqual(found, [], state);
}

// Chooses the last message, the one with problems, and sees that its head is in sight.
async function chooseLast(page) {
  await page.focus('#messages');
  await page.keyboard.press('End');
  await settled(page);
  await page.keyboard.press('Enter');
  await page.waitForSelector('#problems li');
  for (const part of ['#messageName', '#problemCount']) {
    const box = await page.locator(part).boundingBox();
    const tabs = await page.locator('.detailHead').boundingBox();
    assert.ok(box.y >= tabs.y + tabs.height - 1, `${part} is under the tabs`);
  }
}

const states = {
  welcome: async () => {},
  log: (page) => openFile(page, log),
  message: chooseLast,
  'in words': (page) => page.selectOption('#formChoice', 'show'),
  change: async (page) => {
    await page.focus('#tree');
    await page.keyboard.press('Home');
    await page.keyboard.press('Enter');
  },
  text: async (page) => {
    await page.keyboard.press('Escape');
    await page.click('#editText');
    await page.waitForSelector('#rawText .cm-content');
  },
  differences: async (page) => {
    await page.click('#rawCancel');
    await page.click('#differenceTab');
  },
  plot: async (page) => {
    await page.click('#plotTab');
    await page.fill('#plotKeyName', 'focusValue_t FOCUS_VALUE');
    await page.press('#plotKeyName', 'Enter');
    await settled(page);
    await page.selectOption('#plotBands', 'deviceStatus_t STATUS');
  },
  state: (page) => page.click('#stateTab'),
  'two logs': async (page) => {
    await page.setInputFiles('#otherFile', { ...log, buffer: Buffer.from(lines.slice(5).join('')) });
    await page.click('#besideTab');
    await page.waitForSelector('#besideRows .row');
  },
  views: async (page) => {
    if (await page.isVisible('#backToList')) await page.click('#backToList');
    await page.click('#views summary');
  },
  live: async (page) => {
    await page.keyboard.press('Escape');
    await page.click('#openLive');
  },
  list: async (page) => {
    await page.click('#liveCancel');
    await openFile(page, {
      name: 'a',
      mimeType: '',
      buffer: Buffer.from(message(4161, 1, '{STATUS=3;LOW_STATUS=0;SEVERITY=0;NUM_OF_MESSAGES=2;MSGS={one,two,};}')),
    });
    await page.dblclick('#tree .row[data-path=MSGS]');
  },
};

const long = 'a_name_of_a_file_without_any_space_that_is_longer_than_a_phone_is_wide_at_least'; // as others give them
const damaged = { name: `${long}.log.gz`, mimeType: '', buffer: gzipSync(lines.join('')).fill(0, 200, 300) };
const withText = (page, text) => openFile(page, { name: `${long}.log`, mimeType: '', buffer: Buffer.from(text) });
const focus = message(4112, 41, '{MEDIA_NAME=Violet;FOCUS_VALUE=3.250000;}');

// Whether all of an element is seen, without scrolling.
const isInSight = (page, selector) =>
  page.$eval(
    selector,
    (told) =>
      new Promise((resolve) => new IntersectionObserver(([{ intersectionRatio }]) => resolve(intersectionRatio > 0.99)).observe(told)),
  );

async function refuseValue(page, path, value) {
  await page.dblclick(`#tree .row[data-path="${path}"]`);
  await page.fill('#editorValue', value);
  await page.press('#editorValue', 'Enter');
}

async function refuseText(page, words) {
  await page.click('#editText');
  await page.waitForSelector('#rawText .cm-content');
  await page.keyboard.press('Control+a');
  await page.keyboard.type(words);
  await page.keyboard.press('Control+Enter');
  await says(page, '#rawWords', 'sealed');
}

// What can be wrong, or not there, one after the other: what does it, and where the page tells of it in which words.
const troubles = {
  'a damaged file': [(page) => openFile(page, damaged), '#readingProblem', 'damaged'],
  'no message': [(page) => withText(page, '\0\x01 no message'), '#noMessages', 'begins with @@'],
  'nothing at all': [(page) => withText(page, ''), '#noMessages', 'empty'],
  'encoded messages': [(page) => withText(page, Buffer.from(focus).toString('base64')), '#noMessages', 'base64'],
  'a condition': [
    async (page) => {
      await openFile(page, log);
      await page.fill('#filterWhere', 'MEDIA_NAME =~ "["');
      await page.fill('#filterWords', 'nobody says this');
      await says(page, '#listCount', /^0 of/);
      await page.press('#filterWhere', 'Enter');
    },
    '#whereProblem',
    /./,
  ],
  'a value': [async (page) => (await withText(page, focus), await refuseValue(page, 'FOCUS_VALUE', long)), '#editorError', 'is no number'],
  'a text': [async (page) => (await withText(page, focus), await refuseText(page, `@@4112 ${long}`)), '#rawWords', 'sealed'],
  'a bridge elsewhere': [
    async (page) => {
      await page.click('#openLive');
      await page.fill('#liveAddress', `ws://192.0.2.1/${long}`);
      await page.press('#liveAddress', 'Enter');
    },
    '#liveProblem',
    'this machine',
  ],
  'what is sent': [
    async (page, { address, send }) => {
      await openLine(page, `${address}${long}`);
      send(`${focus}\n`);
      await says(page, '#messageText', 'FOCUS_VALUE');
      await page.click('#liveSend');
      await page.fill('#sendText', long);
    },
    '#sendProblem',
    "can't be sent",
  ],
  'a line that ends': [
    async (page, { close }) => {
      close();
      await page.waitForSelector('#live', { state: 'hidden' });
      await page.waitForSelector('#messageName'); // what it sent stays in sight
    },
    '#announcer',
    'has ended',
  ],
  'a log that is not saved': [(page) => page.setInputFiles('#file', damaged), '#leaveTitle', 'not saved'],
  'a number': [
    async (page) => {
      await withText(page, focus);
      await page.click('#plotTab');
      await page.fill('#plotKeyName', long);
      await page.press('#plotKeyName', 'Enter');
    },
    '#plotProblem',
    'choose one',
  ],
  'no difference': [(page) => page.click('#differenceTab'), '#differenceCount', 'first of its kind'],
  'no other log': [(page) => page.click('#besideTab'), '#besideNone', 'Choose the log'],
  'another log': [(page) => page.setInputFiles('#otherFile', damaged), '#announcer', 'damaged'],
  'a browser that keeps nothing': [
    async (page) => {
      await openFile(page, log);
      await page.evaluate(
        () =>
          (Storage.prototype.setItem = () => {
            throw new Error('no room');
          }),
      );
      await page.click('#views summary');
      await page.fill('#viewName', long);
      await page.press('#viewName', 'Enter');
    },
    '#announcer',
    'keeps nothing',
  ],
  'an old browser': [
    async (page) => {
      await page.addInitScript(() => delete window.DecompressionStream);
      await page.reload();
      await page.evaluate(audit);
    },
    '#readingProblem',
    "can't start",
  ],
};

const ways = {
  'light, 1024': { width: 1024, height: 768 },
  'dark, 1440': { width: 1440, height: 900, isDark: true },
  'a phone': { width: 390, height: 844 },
  'forced colours': { width: 1024, height: 768, isForced: true, isDark: true },
};

for (const [way, options] of Object.entries(ways)) {
  test(`every trouble: ${way}`, async () => {
    const line = await bridge();
    const tell = async (page) => {
      await page.evaluate(audit);
      for (const [trouble, [go, place, words]] of Object.entries(troubles)) {
        await page.evaluate(() => document.querySelectorAll('dialog[open]').forEach((dialog) => dialog.close()));
        await go(page, line);
        await says(page, place, words);
        assert.ok(await isInSight(page, place), `${way}: ${trouble} is told where nobody sees it`);
        await look(page, `${way}: ${trouble}`);
      }
    };
    try {
      await withPage(tell, { ...options, isStill: true });
    } finally {
      line.close();
    }
  });

  test(`every state: ${way}`, async () => {
    await withPage(
      async (page) => {
        await page.evaluate(audit);
        for (const [state, go] of Object.entries(states)) {
          await go(page);
          await settled(page);
          await page.evaluate(() => new Promise((resolve) => setTimeout(resolve, 120))); // what was done is said
          await look(page, `${way}: ${state}`);
        }
        if (!options.isForced) return;
        // Without the page's colours, what is chosen is told from what isn't.
        const styles = (selector, name) => page.$$eval(selector, (all, key) => all.map((one) => getComputedStyle(one)[key]), name);
        await page.click('#listCancel');
        assert.equal(new Set(await styles('#tree .row:not([hidden])', 'backgroundColor')).size, 2);
        assert.equal(new Set(await styles('[role=tab]', 'borderBottomWidth')).size, 2);
      },
      { ...options, isStill: true },
    );
  });
}
