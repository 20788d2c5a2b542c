// How it looks, at each width and in each colour scheme: nothing is wider than the screen, nothing is hidden by going to
// a message, and an audit of contrast, names and roles finds nothing in any state.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';
import { openFile, settled, withPage } from './browser.mjs';
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

const ways = {
  'light, 1024': { width: 1024, height: 768 },
  'dark, 1440': { width: 1440, height: 900, isDark: true },
  'a phone': { width: 390, height: 844 },
  'forced colours': { width: 1024, height: 768, isForced: true, isDark: true },
};

for (const [way, options] of Object.entries(ways))
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
