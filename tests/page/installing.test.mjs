// A page that a server gives: a browser may install it, it opens when the server is gone, and the next version takes its
// place. The same file without what makes that possible is the page all the same.
import assert from 'node:assert/strict';
import { readFile } from 'node:fs/promises';
import { createServer } from 'node:http';
import { dirname } from 'node:path';
import { test } from 'node:test';
import { isFirefox, lists, pagePath, withPage } from './browser.mjs';

const types = { html: 'text/html; charset=utf-8', webmanifest: 'application/manifest+json', js: 'text/javascript' };
const files = { 'inspector.html': await readFile(pagePath) };
for (const name of ['inspector.webmanifest', 'inspector-worker.js']) files[name] = await readFile(`${dirname(pagePath)}/${name}`);

async function withServer(given, use) {
  const server = createServer(({ url }, response) => {
    const name = url.slice('/tools/'.length);
    response.writeHead(given[name] ? 200 : 404, { 'content-type': types[name.split('.').pop()] ?? 'text/plain' });
    response.end(given[name]);
  });
  await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
  const stop = () => (server.closeAllConnections(), new Promise((resolve) => server.close(resolve)));
  try {
    await use(`http://127.0.0.1:${server.address().port}/tools/inspector.html`, stop);
  } finally {
    if (server.listening) await stop();
  }
}

// Waits until a version of the page is kept, and no other.
const isKept = (page, digest) =>
  page.evaluate(async (wanted) => {
    for (;;) {
      const { active } = await navigator.serviceWorker.ready;
      const names = await caches.keys();
      if (active.state === 'activated' && names.length === 1 && names[0].endsWith(wanted)) return;
      await new Promise((resolve) => setTimeout(resolve, 20));
    }
  }, digest);

async function works(page) {
  await page.waitForSelector('body.isReady');
  await page.click('#openExample');
  await lists(page, '\\d+ messages');
}

test('it can be installed, opens without its server, and the next version takes its place', async () => {
  const given = { ...files };
  await withServer(given, (address, stop) =>
    withPage(
      async (page) => {
        const [, digest] = /\$\{ours\}(\w{16})`/.exec(files['inspector-worker.js']);
        await isKept(page, digest);
        if (!isFirefox) {
          const session = await page.context().newCDPSession(page);
          const { installabilityErrors } = await session.send('Page.getInstallabilityErrors');
          // A browser that is started anew for each test keeps nothing.
          assert.deepEqual(
            installabilityErrors.filter(({ errorId }) => errorId !== 'in-incognito'),
            [],
          );
          const { errors, data } = await session.send('Page.getAppManifest');
          assert.deepEqual([errors, JSON.parse(data).name], [[], 'Message inspector']);
        }
        given['inspector-worker.js'] = `${files['inspector-worker.js']}`.replace(digest, '0123456789abcdef');
        given['inspector.html'] = `${files['inspector.html']}`.replace('<h1>Message inspector', '<h1>Next inspector');
        await page.reload();
        await isKept(page, '0123456789abcdef');
        await stop();
        if (!isFirefox) await page.context().setOffline(true); // which its driver can't
        await page.reload();
        assert.equal(await page.textContent('h1'), 'Next inspector');
        await works(page);
        await page.goto(`${address}?from=a#link`);
        await works(page);
      },
      { address },
    ),
  );
});

test('without what stands beside it a page of a server works, and is not kept', async () => {
  await withServer({ 'inspector.html': files['inspector.html'] }, (address) =>
    withPage(
      async (page) => {
        await works(page);
        assert.deepEqual(await page.evaluate(() => caches.keys()), []);
      },
      { address, isRefusing: true },
    ),
  );
});
