// A page that a server gives can be installed, and opens without the server: what is needed for that stands beside it
// there. One that is opened from disk asks for nothing.
import { element } from './elements.ts';
import { scriptAddress } from './reader.ts';

export function makeInstallable() {
  if (!location.protocol.startsWith('http')) return;
  document.head.append(element('link', { rel: 'manifest', href: 'inspector.webmanifest' }));
  const { serviceWorker } = navigator as { serviceWorker?: ServiceWorkerContainer }; // of safe servers alone
  serviceWorker?.register(scriptAddress('inspector-worker.js') as string, { updateViaCache: 'none' }).catch(() => {}); // where there is one
}
