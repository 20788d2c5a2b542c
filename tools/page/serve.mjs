// Serves the page while it is worked on, made anew of its parts whenever it is asked for: npm run dev
import { spawnSync } from 'node:child_process';
import { readFileSync } from 'node:fs';
import { createServer } from 'node:http';

const root = new URL('../..', import.meta.url).pathname;
const core = `${root}build/page/tools/bindings/vekBindings.wasm`;
const made = `${root}build/page/dev.html`;
const port = Number(process.env.PORT ?? 8000);

createServer(({ url }, response) => {
  if (!/^\/($|\?)/.test(url)) return void response.writeHead(404).end(); // it is not to be kept
  const { status, stderr } = spawnSync(process.execPath, [`${root}tools/page/build.mjs`, core, `${root}examples/device.log`, 'dev', made]);
  response.writeHead(status === 0 ? 200 : 500, { 'content-type': status === 0 ? 'text/html; charset=utf-8' : 'text/plain' });
  response.end(status === 0 ? readFileSync(made) : stderr);
}).listen(port, '127.0.0.1', () => console.log(`http://127.0.0.1:${port}/ (scripts/page.sh makes the core)`));
