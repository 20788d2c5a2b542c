// Makes vekmsg.html of the page's parts: build.mjs CORE.wasm EXAMPLE.log VERSION OUTPUT.html
import { createHash } from 'node:crypto';
import { readFileSync, writeFileSync } from 'node:fs';
import { gzipSync } from 'node:zlib';
import { build } from 'esbuild';

const [corePath, examplePath, version, outputPath] = process.argv.slice(2);
const folder = new URL('.', import.meta.url).pathname;
const read = (path) => readFileSync(path, 'utf8');
const largest = 1_000_000;

async function bundle(entry, virtual = {}) {
  const texts = {
    name: 'texts',
    setup({ onResolve, onLoad }) {
      onResolve({ filter: /^page:/ }, ({ path }) => ({ path, namespace: 'page' }));
      onLoad({ filter: /.*/, namespace: 'page' }, ({ path }) => ({ contents: virtual[path], loader: 'text' }));
    },
  };
  const { outputFiles } = await build({
    entryPoints: [folder + entry],
    bundle: true,
    minify: true,
    format: 'esm',
    target: 'es2022',
    legalComments: 'none',
    charset: 'utf8',
    write: false,
    plugins: [texts],
  });
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
const escaped = (text) => text.replaceAll('&', '&amp;').replaceAll('<', '&lt;').replaceAll('"', '&quot;');

// The licences of what is compiled into the core, as Debian states them.
const copyrightOf = (name) => `${name}\n\n${read(`/usr/share/doc/${name}/copyright`)}`;

const worker = await bundle('src/worker.ts');
// What ends a script element must not stand in one.
const script = (await bundle('src/main.ts', { 'page:worker': worker, 'page:example': read(examplePath) })).replaceAll(
  '</script',
  '<\\/script',
);
const style = await bundleStyles();
const policy = [
  "default-src 'none'",
  `script-src ${hashOf(script)} 'wasm-unsafe-eval'`,
  `style-src ${hashOf(style)}`,
  'worker-src blob:',
  "base-uri 'none'",
  "form-action 'none'",
  "require-trusted-types-for 'script'",
  'trusted-types page',
].join('; ');
const parts = {
  policy,
  style,
  script,
  version: escaped(version),
  core: gzipSync(readFileSync(corePath), { level: 9 }).toString('base64'),
  uplotLicence: escaped(read(`${folder}node_modules/uplot/LICENSE`)),
  otherLicences: escaped(['libfast-float-dev', 'nlohmann-json3-dev'].map(copyrightOf).join('\n\n')),
};
const page = read(`${folder}index.html`).replaceAll(/\{\{(\w+)\}\}/g, (_all, name) => parts[name]);
if (Buffer.byteLength(page) >= largest) throw new Error(`the page has ${Buffer.byteLength(page)} bytes, and ${largest} are too many`);
writeFileSync(outputPath, page);
console.log(`${outputPath}: ${Buffer.byteLength(page)} bytes`);
