// Modules of the page's sources, for tests without a browser.
import { build } from '../../tools/page/node_modules/esbuild/lib/main.js';

// What build.mjs puts into the page is nothing here, but for what a test gives.
const given = (virtual) => ({
  name: 'given',
  setup({ onResolve, onLoad }) {
    onResolve({ filter: /^page:/ }, ({ path }) => ({ path, namespace: 'page' }));
    onLoad({ filter: /.*/, namespace: 'page' }, ({ path }) => ({ contents: virtual[path] ?? '', loader: 'text' }));
  },
});

/** What a module of tools/page/src exports. */
export async function sourceModule(name, virtual = {}) {
  const entryPoints = [new URL(`../../tools/page/src/${name}.ts`, import.meta.url).pathname];
  const { outputFiles } = await build({
    entryPoints,
    bundle: true,
    format: 'esm',
    write: false,
    plugins: [given(virtual)],
  });
  return import(`data:text/javascript;base64,${Buffer.from(outputFiles[0].contents).toString('base64')}`);
}
