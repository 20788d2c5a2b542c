// Makes vekmsg.html of the page's parts, and beside it what a server gives with it: build.mjs CORE.wasm EXAMPLE.log VERSION OUTPUT.html
import { createHash } from 'node:crypto';
import { readFileSync, writeFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { gzipSync } from 'node:zlib';
import { build } from 'esbuild';
import { zstdCore } from './zstdCore.mjs';

const [corePath, examplePath, version, outputPath] = process.argv.slice(2);
const folder = new URL('.', import.meta.url).pathname;
const read = (path) => readFileSync(path, 'utf8');
const largest = 1_000_000;
const modules = new Set(['zstddec']); // of others, that are bundled

async function bundle(entry, virtual = {}) {
  const texts = {
    name: 'texts',
    setup({ onResolve, onLoad, resolve }) {
      onResolve({ filter: /^page:/ }, ({ path }) => ({ path, namespace: 'page' }));
      onLoad({ filter: /.*/, namespace: 'page' }, ({ path }) => ({ contents: virtual[path], loader: 'text' }));
      // They only define things: what isn't asked of them may go, though they don't say so.
      onResolve({ filter: /^@lezer\// }, async ({ path, pluginData, ...from }) =>
        pluginData ? undefined : { ...(await resolve(path, { ...from, pluginData: true })), sideEffects: false },
      );
    },
  };
  const { outputFiles, metafile } = await build({
    entryPoints: [folder + entry],
    bundle: true,
    metafile: true,
    minify: true,
    format: 'esm',
    target: 'es2022',
    legalComments: 'none',
    charset: 'utf8',
    write: false,
    plugins: [texts],
  });
  for (const input of Object.keys(metafile.inputs)) {
    const name = /node_modules\/((?:@[^/]+\/)?[^/]+)\//.exec(input)?.[1];
    if (name) modules.add(name);
  }
  return outputFiles[0].text.trim();
}

async function bundleStyles() {
  const { outputFiles } = await build({
    entryPoints: [`${folder}styles/page.css`],
    bundle: true,
    minify: true,
    charset: 'utf8',
    write: false,
  });
  return outputFiles[0].text.trim();
}

const hashOf = (text) => `'sha256-${createHash('sha256').update(text).digest('base64')}'`;
const packed = (bytes) => gzipSync(bytes, { level: 9 }).toString('base64');
const escaped = (text) => text.replaceAll('&', '&amp;').replaceAll('<', '&lt;').replaceAll('"', '&quot;');

// The licences of what is inside: of the modules that were bundled, and of what is compiled into the core.
const noticeOf = (name) => read(`${folder}../../packaging/notices/${name}.txt`);
const licenceOf = (name) => `Name: ${name}\n\n${read(`${folder}node_modules/${name}/LICENSE`)}`;

const worker = await bundle('src/worker.ts', { 'page:zstd': packed(zstdCore()) });
const script = await bundle('src/main.ts', { 'page:worker': worker, 'page:example': read(examplePath) });
const start = await bundle('src/start.ts');
const style = await bundleStyles();
const policy = [
  "default-src 'none'",
  `script-src ${hashOf(start)} ${hashOf(script)} 'wasm-unsafe-eval'`,
  `style-src ${hashOf(style)}`,
  "worker-src blob: 'self'", // of a server, to be installed
  "manifest-src 'self'",
  'img-src data:', // its icon
  'connect-src ws://127.0.0.1:* ws://localhost:*', // a bridge on this machine
  "base-uri 'none'",
  "form-action 'none'",
  "require-trusted-types-for 'script'",
  'trusted-types start page',
].join('; ');
const icon = `data:image/svg+xml;base64,${readFileSync(`${folder}installed/icon.svg`, 'base64')}`;
const parts = {
  policy,
  icon,
  style,
  start,
  script: packed(script),
  version: escaped(version),
  core: packed(readFileSync(corePath)),
  licences: escaped(
    [...[...modules].sort().map(licenceOf), ...['nlohmann-json', 'fast_float', 'emscripten'].map(noticeOf)].join('\n----\n\n'),
  ),
};
const filled = (path) => read(folder + path).replaceAll(/\{\{(\w+)\}\}/g, (_all, name) => parts[name]);
const page = filled('index.html');
if (Buffer.byteLength(page) >= largest) throw new Error(`the page has ${Buffer.byteLength(page)} bytes, and ${largest} are too many`);
writeFileSync(outputPath, page);
parts.digest = createHash('sha256').update(page).digest('hex').slice(0, 16);
for (const name of ['inspector.webmanifest', 'inspector-worker.js'])
  writeFileSync(join(dirname(outputPath), name), filled(`installed/${name}`));
console.log(`${outputPath}: ${Buffer.byteLength(page)} bytes`);
