// Keeps the page of a server for when there is no network. With each version of the page it is another worker, which
// keeps that one: what is open stays as it is, and the next page that is opened is the new one.
const ours = `inspector ${registration.scope} `;
const kept = `${ours}{{digest}}`;
const addresses = ['inspector.html', 'inspector.webmanifest'].map((name) => new URL(name, location.href).href);

async function keep() {
  const cache = await caches.open(kept);
  await cache.addAll(addresses.map((address) => new Request(address, { cache: 'reload' })));
  await skipWaiting();
}

async function dropOlder() {
  const names = await caches.keys();
  await Promise.all(names.filter((name) => name.startsWith(ours) && name !== kept).map((name) => caches.delete(name)));
}

addEventListener('install', (event) => event.waitUntil(keep()));
addEventListener('activate', (event) => event.waitUntil(dropOlder()));
addEventListener('fetch', (event) => {
  const address = event.request.url.replace(/[?#].*$/s, '');
  if (!addresses.includes(address)) return;
  event.respondWith(caches.match(address, { cacheName: kept }).then((found) => found ?? fetch(event.request)));
});
