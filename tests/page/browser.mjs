// The page in a real browser, as people open it: from disk.
import { mkdtemp, readdir, readFile, rm } from 'node:fs/promises';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { setTimeout as delay } from 'node:timers/promises';
import { chromium } from '../../tools/page/node_modules/playwright-core/index.mjs';
import firefoxDriver from '../../tools/page/node_modules/playwright-firefox/index.mjs';

const folder = new URL('../..', import.meta.url).pathname;
export const pagePath = process.env.VEK_PAGE ?? `${folder}build/page/vekmsg.html`;
export const toolPath = process.env.VEK_TOOL ?? `${folder}build/release/tools/vekmsg/vekmsg`;

const flags = [
  '--headless',
  '--no-sandbox',
  '--disable-gpu',
  '--disable-quic',
  '--no-first-run',
  '--disable-background-networking',
  '--disable-component-update',
  '--disable-sync',
];

// In a page that is slow by so many milliseconds, what a test does not wait for is missing each time, not once in a while:
// VEK_SLOW=200 node --test tests/page/*.test.mjs
const slowness = Number(process.env.VEK_SLOW ?? 0);
export const isSlow = slowness > 0;

/** Timers, pictures, what observers see and what workers answer come later by a pause. To be called in the page. */
function slowDown(pause) {
  const { setTimeout: wait, setInterval: repeat, requestAnimationFrame: draw } = window;
  const later =
    (call) =>
    (...parameters) =>
      wait(call, pause, ...parameters);
  window.setTimeout = (call, milliseconds = 0, ...parameters) => wait(call, milliseconds + pause, ...parameters);
  window.setInterval = (call, milliseconds = 0, ...parameters) => repeat(call, milliseconds + pause, ...parameters);
  window.requestAnimationFrame = (call) => wait(() => draw(call), pause);
  window.cancelAnimationFrame = clearTimeout;
  const { ResizeObserver: Observer } = window;
  window.ResizeObserver = class extends Observer {
    constructor(call) {
      super(later(call));
    }
  };
  const { get, set } = Object.getOwnPropertyDescriptor(Worker.prototype, 'onmessage');
  Object.defineProperty(Worker.prototype, 'onmessage', {
    get,
    set(call) {
      set.call(this, later(call));
    },
  });
}

/** The tests run in Chromium, or in the browser that VEK_BROWSER names: firefox. */
export const isFirefox = process.env.VEK_BROWSER === 'firefox';

// Firefox's driver asks where refused frames stand, and takes it for an error of nobody when the browser is closed before
// the answer.
function forgiveTheDriver() {
  const { emit } = process;
  process.emit = function (name, error, ...more) {
    const isDrivers = name === 'unhandledRejection' && /locateNodes.*session closed/.test(String(error?.message));
    return isDrivers || emit.call(this, name, error, ...more);
  };
}

// Debian's Firefox takes commands that newer drivers don't speak any more: it has one of its own, which can't tell it how
// to show pages, nor fetch what is downloaded. Each way of showing them is a browser of its own.
async function launchFirefox({ colorScheme, forcedColors, reducedMotion }) {
  const downloads = await mkdtemp(join(tmpdir(), 'vekmsg-'));
  const browser = await firefoxDriver.firefox.launch({
    channel: 'moz-firefox',
    executablePath: '/usr/bin/firefox-esr',
    firefoxUserPrefs: {
      'layout.css.prefers-color-scheme.content-override': colorScheme === 'dark' ? 0 : 1,
      'browser.display.document_color_use': forcedColors === 'active' ? 2 : 1,
      'ui.highlight': '#104090', // the machine's own is too light for its text
      'ui.prefersReducedMotion': reducedMotion === 'reduce' ? 1 : 0,
      'browser.download.folderList': 2,
      'browser.download.dir': downloads,
    },
  });
  browser.on('disconnected', () => rm(downloads, { recursive: true }));
  forgiveTheDriver();
  return { browser, downloads };
}

const launchChromium = async () => ({ browser: await chromium.launch({ executablePath: '/usr/bin/chromium', args: flags }) });

const idle = 300; // milliseconds after which a browser is closed
const browsers = new Map(); // by how they show pages

// Calls use() with a browser, the one of before where pages are shown as in that.
async function withBrowser(looks, use) {
  const key = isFirefox ? JSON.stringify(looks) : '';
  const one = browsers.get(key) ?? { launched: isFirefox ? launchFirefox(looks) : launchChromium() };
  browsers.set(key, one);
  clearTimeout(one.closing);
  const launched = await one.launched;
  try {
    await use(launched);
  } finally {
    one.closing = setTimeout(() => {
      browsers.delete(key);
      void launched.browser.close();
    }, idle);
  }
}

// Its driver makes two single clicks of a double one, and no more.
async function doubleClick(selector) {
  await this.click(selector);
  await this.click(selector);
  await this.dispatchEvent(selector, 'dblclick');
}

/**
 * Calls use(page) with the page open. Afterwards nothing may have gone wrong in it: no error, nothing refused by its
 * policy (unless `isRefusing`), nothing asked of a network but what a server at `address` has.
 */
export async function withPage(
  use,
  {
    width = 1400,
    height = 900,
    isDark = false,
    isForced = false,
    isStill = false,
    scale = 1,
    isRefusing = false,
    address = `file://${pagePath}`,
  } = {},
) {
  const looks = {
    colorScheme: isDark ? 'dark' : 'light',
    forcedColors: isForced ? 'active' : 'none',
    reducedMotion: isStill ? 'reduce' : 'no-preference',
  };
  await withBrowser(looks, async ({ browser, downloads }) => {
    const context = await browser.newContext({
      ...(isFirefox ? {} : looks),
      viewport: { width, height },
      deviceScaleFactor: scale,
      acceptDownloads: true,
    });
    try {
      const page = Object.assign(await context.newPage(), { downloads });
      const wrong = noteWrong(page, new URL('.', address).href);
      if (isFirefox) page.dblclick = doubleClick;
      await page.addInitScript(installHelp);
      if (slowness > 0) await page.addInitScript(slowDown, slowness);
      page.setDefaultTimeout(60_000); // for what the machine may have to do beside
      await page.goto(address);
      await page.waitForSelector('body.isReady');
      await use(page);
      if (wrong.length > 0 && !isRefusing) throw new Error(`in the page: ${wrong.join('; ')}`);
    } finally {
      await context.close();
    }
  });
}

// Keeps what goes wrong in a page from now on.
function noteWrong(page, home) {
  const wrong = [];
  page.on('pageerror', (error) => wrong.push(error.message));
  page.on('console', (message) => message.type() === 'error' && wrong.push(message.text()));
  const isSocket = (request) => request.headers()['sec-websocket-version'] !== undefined; // Firefox tells of them, too
  const isOwn = (url) => /^(file|blob|data):/.test(url) || url.startsWith(home);
  page.on('request', (request) => isOwn(request.url()) || isSocket(request) || wrong.push(request.url()));
  return wrong;
}

/**
 * Waits until an element's text has these words, or is as an expression says, and gives it: what is shown may be drawn
 * with the next picture.
 */
export async function says(page, selector, words) {
  const isSaid = ([at, text, flags]) => {
    const said = document.querySelector(at)?.textContent;
    const isSo = said !== undefined && (flags === undefined ? said.includes(text) : new RegExp(text, flags).test(said));
    return isSo && [said];
  };
  const wanted = words instanceof RegExp ? [words.source, words.flags] : [words];
  try {
    const [said] = await (await page.waitForFunction(isSaid, [selector, ...wanted])).jsonValue();
    return said;
  } catch (error) {
    throw new Error(`${selector} does not say "${words}", but "${await page.textContent(selector)}"`, { cause: error });
  }
}

/** Waits until of two messages' texts these words are marked, by a selector. */
export function marks(page, selector, words) {
  const isMarked = ([at, wanted]) => {
    const { shadowRoot } = document.getElementById('differenceTexts');
    return Array.from(shadowRoot.querySelectorAll(at), ({ textContent }) => textContent).join() === wanted;
  };
  return page.waitForFunction(isMarked, [selector, words]);
}

/** Does something and waits until an element says something else than before: gives that. */
export async function saysElse(page, selector, act) {
  const before = await page.textContent(selector);
  await act();
  const isElse = ([at, said]) => document.querySelector(at).textContent !== said;
  await page.waitForFunction(isElse, [selector, before]);
  return page.textContent(selector);
}

/** Waits until the list says that it has so many messages, in words. */
export function lists(page, words) {
  return says(page, '#listCount', new RegExp(`^${words}$`));
}

/** Opens what a bridge gives. */
export async function openLine(page, address) {
  await page.click('#openLive');
  await page.fill('#liveAddress', address);
  await page.press('#liveAddress', 'Enter');
  await page.waitForSelector('#live:not([hidden])');
}

/** Pastes a text as people do, without a clipboard of the machine. Waits until it is read. */
export async function paste(page, text) {
  await settled(page);
  await page.evaluate((words) => {
    document.activeElement?.blur();
    const clipboardData = new DataTransfer();
    clipboardData.setData('text/plain', words);
    const event = new Event('paste', { bubbles: true, cancelable: true }); // Firefox makes clipboard events of its own alone
    document.body.dispatchEvent(Object.assign(event, { clipboardData }));
  }, text);
  await leaving(page);
  await reading(page);
}

/** Opens files' bytes through the page's file choice. Waits until they are read. */
export async function openFile(page, file) {
  await settled(page);
  await page.setInputFiles('#file', file);
  await leaving(page);
  await reading(page);
}

// What was changed may go.
async function leaving(page) {
  if (await page.isVisible('#leaveDialog')) await page.click('#leaveLose');
}

/** Waits until the page has done what it was asked for. */
export async function settled(page) {
  await page.waitForSelector('#work:not([aria-busy])', { state: 'attached' });
}

/** Waits until what was opened is read, and a message is shown when there is one. */
export async function reading(page, timeout = 30_000) {
  const isRead = () => {
    const isHidden = (id) => document.getElementById(id).hidden;
    return !isHidden('work') && isHidden('progress') && (!isHidden('noMessages') || !isHidden('messagePanelBody'));
  };
  await page.waitForFunction(isRead, undefined, { timeout });
  await settled(page);
}

/** Makes a message of the list the active one, by its place in the list. */
export async function chooseMessage(page, index) {
  await page.click(`#messages-${index}`);
  await settled(page);
  await page.waitForSelector('#messagePanelBody:not([hidden])', { state: 'attached' });
}

/** What the tree shows: path and value of each row in sight. */
export function treeRows(page) {
  return page.$$eval('#tree .row:not([hidden])', (rows) =>
    rows.map((row) => ({ path: row.dataset.path, value: row.querySelector('.treeValue').textContent })),
  );
}

/** The bytes of what a button saves. */
export async function saved(page, selector) {
  if (page.downloads) return downloaded(page, selector);
  const [download] = await Promise.all([page.waitForEvent('download'), page.click(selector)]);
  const chunks = [];
  for await (const chunk of await download.createReadStream()) chunks.push(chunk);
  return Buffer.concat(chunks);
}

async function downloaded(page, selector) {
  const before = await readdir(page.downloads);
  await page.click(selector);
  for (let waited = 0; waited < 60_000; waited += 50) {
    const names = await readdir(page.downloads);
    const made = names.find((name) => !before.includes(name) && !name.endsWith('.part'));
    const bytes = made && !names.some((name) => name.endsWith('.part')) ? await readFile(join(page.downloads, made)) : '';
    if (bytes.length > 0) return bytes;
    await delay(50);
  }
  throw new Error('nothing was saved');
}

/**
 * The same, of what would be saved: for many in a row, of which a browser asks whether that is meant. As one-byte
 * characters.
 */
export async function wouldSave(page, selector) {
  await settled(page);
  return page.evaluate((at) => window.wouldSave(at), selector);
}

// What tests have in every page.
function installHelp() {
  window.wouldSave = async (selector) => {
    const { createObjectURL } = URL;
    const { click } = HTMLAnchorElement.prototype;
    HTMLAnchorElement.prototype.click = () => {};
    const taken = new Promise((resolve) => {
      URL.createObjectURL = (blob) => {
        resolve(blob);
        return '#';
      };
    });
    document.querySelector(selector).click();
    const bytes = new Uint8Array(await (await taken).arrayBuffer());
    Object.assign(HTMLAnchorElement.prototype, { click });
    URL.createObjectURL = createObjectURL;
    return Array.from(bytes, (byte) => String.fromCharCode(byte)).join('');
  };
}

/** What has the focus, as a screen reader would say it. */
export async function spokenFocus(page) {
  if (isFirefox) {
    const focused = page.locator(':focus');
    const [, role, name] = /^- '?(\w+)(?: "(.*?)")?/.exec(await focused.ariaSnapshot());
    return { role, name: name ?? (role === 'text' ? await focused.textContent() : '') };
  }
  const session = await page.context().newCDPSession(page);
  const { result } = await session.send('Runtime.evaluate', { expression: 'document.activeElement' });
  const { nodes } = await session.send('Accessibility.getPartialAXTree', { objectId: result.objectId, fetchRelatives: false });
  return { role: nodes[0].role?.value ?? '', name: nodes[0].name?.value ?? '' };
}

/** Shows the page as it is printed. */
export async function showPrinted(page) {
  if (!isFirefox) await page.emulateMedia({ media: 'print' });
  await page.evaluate((isByHand) => {
    const rules = [...document.styleSheets].flatMap(({ cssRules }) => [...cssRules]).filter(({ media }) => media);
    for (const { media } of isByHand ? rules : [])
      if (/^(print|screen)\b/.test(media.mediaText)) media.mediaText = /^print/.test(media.mediaText) ? 'all' : 'not all';
    dispatchEvent(new Event('beforeprint'));
  }, isFirefox);
}

/**
 * What the page's own thread was kept longest by while use() went on, in milliseconds of its own time: what else the
 * machine does doesn't count.
 */
export async function longestTask(page, use) {
  const browser = page.context().browser();
  await browser.startTracing(page, { categories: ['toplevel'] });
  await use();
  const { traceEvents } = JSON.parse(await browser.stopTracing());
  const thread = ({ pid, tid }) => `${pid} ${tid}`;
  const isPages = ({ name, args }) => name === 'thread_name' && args.name === 'CrRendererMain';
  const threads = new Set(traceEvents.filter(isPages).map(thread));
  const tasks = traceEvents.filter((event) => event.name.endsWith('RunTask') && threads.has(thread(event)));
  if (!tasks.some(({ tdur }) => tdur > 0)) throw new Error('no task was seen');
  return tasks.reduce((longest, { tdur }) => Math.max(longest, tdur ?? 0), 0) / 1000;
}
