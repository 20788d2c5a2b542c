// Makes the pictures of docs/inspector.md: pictures.mjs FOLDER
import { mkdirSync } from 'node:fs';
import { marks, openFile, paste, settled, withPage } from './browser.mjs';
import { logLines, samples } from './makeLog.mjs';
import { today, yesterday } from './morning.mjs';

const folder = process.argv[2];
mkdirSync(folder, { recursive: true });
const log = { name: 'device.log', mimeType: 'text/plain', buffer: Buffer.from([...logLines(3000)].join('')) };
const frames = (page) => page.evaluate(() => new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve))));

// When all is shown. What is said for a while, a picture need not wait for.
async function settle(page) {
  await settled(page);
  await page.$eval('#announcer', ({ style }) => (style.visibility = 'hidden'));
  await frames(page);
}

async function picture(page, name) {
  await page.evaluate(() => document.activeElement?.blur());
  await settle(page);
  await page.screenshot({ path: `${folder}/${name}.png`, animations: 'disabled' });
}

async function lookAt(page) {
  await openFile(page, log);
  await page.selectOption('#filterProblem', '');
  await page.keyboard.press('n');
  await page.waitForSelector('#problemPane:not([hidden])', { state: 'attached' });
}

async function look(page, name) {
  await lookAt(page);
  await picture(page, name);
}

async function lookClosely(page, name) {
  await lookAt(page);
  await page.keyboard.press('Enter');
  await picture(page, name);
}

async function plot(page, name) {
  await lookAt(page);
  await page.click('#plotTab');
  for (const [at, label] of ['focusValue_t FOCUS_VALUE', 'deviceStatus_t LOW_STATUS'].entries()) {
    await page.fill('#plotKeyName', label);
    await page.press('#plotKeyName', 'Enter');
    await page.waitForFunction((curves) => document.querySelectorAll('#plotCurves li').length > curves, at);
  }
  await page.selectOption('#plotBands', 'deviceStatus_t STATUS');
  await page.waitForSelector('#plot[aria-label$="bands of STATUS"]');
  const box = await page.locator('#plot .u-over').boundingBox();
  await page.mouse.move(box.x + box.width * 0.62, box.y + box.height * 0.4);
  await picture(page, name);
}

async function mend(page, name) {
  await paste(page, samples.find(({ name: one }) => one.startsWith('4100')).text);
  const row = page.locator('#tree .row', { has: page.locator('.holds-name, .holds-boolean') }).first();
  await row.dblclick();
  await page.waitForSelector('#editorValue');
  await settle(page);
  await page.screenshot({ path: `${folder}/${name}.png`, animations: 'disabled' });
}

async function compare(page, name) {
  await openFile(page, today);
  await page.selectOption('#filterProblem', 'problems');
  await page.waitForFunction(() => document.getElementById('listCount').textContent.startsWith('1 of'));
  await page.click('#messages-0');
  await settled(page);
  await page.setInputFiles('#otherFile', yesterday);
  await page.click('#differenceTab');
  await marks(page, '.cm-changedText', 'EN,NE');
  await picture(page, name);
}

async function beside(page, name) {
  await openFile(page, today);
  await page.setInputFiles('#otherFile', yesterday);
  await page.click('#besideTab');
  await page.waitForSelector('#besideRows .row');
  await settled(page);
  await page.click('#besideNext');
  await page.waitForSelector('#besideRows mark');
  await picture(page, name);
}

async function stateOf(page, name) {
  await openFile(page, today);
  await page.fill('#filterWords', 'empty');
  await page.waitForFunction(() => document.getElementById('listCount').textContent.startsWith('1 of'));
  await page.click('#messages-0');
  await settled(page);
  await page.click('#stateTab');
  await picture(page, name);
}

const pictures = [
  ['looking-light', look, {}],
  ['looking-dark', look, { isDark: true }],
  ['plot-light', plot, {}],
  ['plot-dark', plot, { isDark: true }],
  ['mending', mend, { height: 720 }],
  ['morning-state', stateOf, { height: 620 }],
  ['morning-yesterday', compare, {}],
  ['two-logs', beside, {}],
  ['phone', lookClosely, { width: 390, height: 780 }],
];
for (const [name, make, options] of pictures) await withPage((page) => make(page, name), { width: 1280, height: 800, ...options });
