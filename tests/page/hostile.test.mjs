// Hostile text: nothing that stands in a message becomes markup, script, or a request.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { isFirefox, openFile, paste, reading, withPage } from './browser.mjs';
import { message } from './makeLog.mjs';

const hostile = [
  '<script>window.wasHere=1</script>',
  '<img src=x onerror=window.wasHere=1>',
  '"\'><svg onload=window.wasHere=1>',
  '</pre></textarea><iframe srcdoc="<script>parent.wasHere=1</script>">',
  'javascript:window.wasHere=1',
  '{{core}}${window.wasHere=1}&lt;b&gt;&#x3c;b&#x3e;',
  '\u202e\u0000\u0007\u2028\u0085',
  '__proto__',
];

const marked = (character) => [...Buffer.from(character)].map((byte) => `\\x${byte.toString(16).padStart(2, '0')}`).join('');

const kindsOfElements = (page) => page.$$eval('main *, header *', (all) => [...new Set(all.map((one) => one.localName))].sort().join(' '));

test('messages full of tags and quotes are shown as they are', async () => {
  await withPage(async (page) => {
    await page.click('#openExample');
    await reading(page);
    const usual = `${await kindsOfElements(page)} b del ins li mark td th tr wbr`; // of problems and differences
    for (const words of hostile) {
      const text = message(
        4112,
        41,
        `{MEDIA_NAME=${words.replaceAll(/[;{}]/g, '')};${words.replaceAll(/[;={}]/g, '')}=1;FOCUS_VALUE=1.0;}`,
      );
      const log = `${words} ${text}\n${words} ${message(4112, 43, `{MEDIA_NAME="${words}";}`)}\n`;
      await openFile(page, { name: `${words.replaceAll(/[\0/]/g, '')}.log`, mimeType: 'text/plain', buffer: Buffer.from(log) });
      await page.waitForSelector('#messagePanelBody:not([hidden])');
      assert.equal(await page.textContent('#messageText'), text.replaceAll(/[\u0000-\u001f\u0080-\u009f\u2028\u202e]/g, marked));
      // What would be obeyed stands nowhere, be it in a title.
      const obeyed = await page.evaluate(() => {
        const all = [...document.querySelectorAll('body *')].filter(({ localName }) => localName !== 'script');
        const titles = all.map(({ title }) => title ?? '');
        const texts = document.getElementById('differenceTexts').shadowRoot.textContent;
        return [document.body.innerText, texts, ...titles].filter((one) => /[\u0000-\u0008\u0080-\u009f\u2028\u202e]/.test(one));
      });
      assert.deepEqual(obeyed, []);
      for (const form of ['show', 'json', 'flat', 'message']) await page.selectOption('#formChoice', form);
      await page.keyboard.press('ArrowDown');
      await page.click('#differenceTab');
      await page.click('#messageTab');
      for (const kind of (await kindsOfElements(page)).split(' ')) assert.ok(usual.split(' ').includes(kind), `${words} made a ${kind}`);
    }
    assert.equal(await page.evaluate(() => window.wasHere), undefined);
  });
});

test('the page refuses markup, code from strings and requests, whoever asks', async () => {
  await withPage(
    async (page) => {
      const refused = await page.evaluate(async () => {
        const attempts = {
          markup: () => (document.body.innerHTML = '<b>x</b>'),
          attribute: () => document.body.setAttribute('onclick', 'window.wasHere=1'),
          code: () => new Function('window.wasHere=1')(),
          trust: () => trustedTypes.createPolicy('another', { createScript: (text) => text }),
        };
        const results = {};
        await new Promise((resolve) => setTimeout(resolve)); // what a tool evaluates at once may do more than the page
        for (const [name, attempt] of Object.entries(attempts))
          try {
            attempt();
            results[name] = name === 'attribute' ? 'inert' : 'done';
          } catch {
            results[name] = 'refused';
          }
        document.body.click();
        results.wasHere = window.wasHere ?? 'never';
        return results;
      });
      assert.equal(refused.markup, 'refused');
      assert.equal(refused.code, 'refused');
      assert.equal(refused.trust, 'refused');
      assert.equal(refused.wasHere, 'never');
    },
    { isRefusing: true },
  );
});

test('every kind of request is refused by the policy', async () => {
  await withPage(
    async (page) => {
      // A browser asks for a manifest when somebody wants to install the page: Chromium when it is told to, Firefox never.
      const session = isFirefox ? undefined : await page.context().newCDPSession(page);
      await page.exposeFunction('askForManifest', () => void session.send('Page.getAppManifest'));
      // What must be trusted is, as if the page's own script asked.
      await page.addInitScript(() => {
        const { createPolicy } = TrustedTypePolicyFactory.prototype;
        TrustedTypePolicyFactory.prototype.createPolicy = function (name, rules) {
          const policy = createPolicy.call(this, name, rules);
          if (name === 'page') window.trusted = (address) => policy.createScriptURL(address);
          return policy;
        };
      });
      await page.reload();
      await page.waitForSelector('body.isReady');
      const sent = await page.evaluate(async (hasManifests) => {
        await new Promise((resolve) => setTimeout(resolve));
        const address = 'http://192.0.2.1/asked'; // Firefox refuses some ports by itself
        const { trusted } = window;
        const add = (kind, members) => document.body.append(Object.assign(document.createElement(kind), members));
        const attempts = {
          'connect-src fetch': () => fetch(address),
          'connect-src beacon': () => navigator.sendBeacon(address, 'x'),
          'connect-src request': () => {
            const request = new XMLHttpRequest();
            request.open('GET', address);
            request.send();
          },
          'connect-src socket': () => new WebSocket('ws://192.0.2.1:9/asked'),
          'connect-src events': () => new EventSource(address),
          'img-src image': () => add('img', { src: address }),
          'media-src sound': () => add('audio', { src: address }),
          'style-src style': () => add('link', { rel: 'stylesheet', href: address }),
          'font-src font': () => new FontFace('asked', `url(${address})`).load(),
          'frame-src frame': () => add('iframe', { src: address }),
          'object-src object': () => add('object', { data: trusted(address) }),
          'worker-src worker': () => new Worker(trusted('data:,')), // another server's is none anyway
          'script-src script': () => import(address), // which need not be trusted, as an element's does
          'base-uri base': () => add('base', { href: address }),
          'form-action form': () => {
            add('form', { action: address, method: 'post', id: 'asked' });
            document.querySelector('#asked').submit();
          },
          ...(hasManifests && {
            'manifest-src manifest': () => {
              document.head.append(Object.assign(document.createElement('link'), { rel: 'manifest', href: address }));
              return window.askForManifest();
            },
          }),
        };
        const sentKinds = [];
        for (const [name, attempt] of Object.entries(attempts)) {
          const [directive, kind] = name.split(' ');
          const isRefused = new Promise((resolve) => {
            addEventListener(
              'securitypolicyviolation',
              ({ effectiveDirective }) => effectiveDirective.startsWith(directive) && resolve(true),
            );
            setTimeout(() => resolve(false), 5000);
          });
          try {
            Promise.resolve(attempt()).catch(() => {});
          } catch {
            // It tells of it all the same.
          }
          if (!(await isRefused)) sentKinds.push(kind);
        }
        return sentKinds;
      }, !isFirefox);
      assert.deepEqual(sent, []);
    },
    { isRefusing: true },
  );
});

test('a message of as many braces and bytes as it may have', async () => {
  await withPage(async (page) => {
    await paste(page, message(4101, 1, `{ARRAY_CASSETTE=${'{'.repeat(20_000)}${'}'.repeat(20_000)};}`));
    await page.waitForSelector('#messagePanelBody:not([hidden])');
    assert.match(await page.textContent('#messageName'), /cassette/i);
    await openFile(page, {
      name: 'bytes',
      mimeType: '',
      buffer: Buffer.from(Array.from({ length: 300_000 }, (_one, at) => (at * 7919) % 256)),
    });
    assert.equal(await page.textContent('#summary'), '0 messages · 0 kinds');
  });
});
