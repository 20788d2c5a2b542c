// The decoder that zstddec brings, zstd's own as WebAssembly. Its script is not taken: that asks the page's policy for
// what is forbidden, and of damaged files it never comes to an end. src/zstd.ts is in its place.
import { readFileSync } from 'node:fs';

const needed = ['memory', 'malloc', 'ZSTD_createDCtx', 'ZSTD_decompressStream'];

/** Its bytes. */
export function zstdCore() {
  const script = readFileSync(new URL('node_modules/zstddec/dist/zstddec-stream.mjs', import.meta.url), 'latin1');
  const found = /["']([A-Za-z0-9+/=]{10000,})["']/.exec(script);
  const bytes = Buffer.from(found?.[1] ?? '', 'base64');
  const names = WebAssembly.Module.exports(new WebAssembly.Module(bytes)).map(({ name }) => name);
  for (const name of needed)
    if (!names.includes(name)) throw new Error(`zstddec has no ${name}: another version than the one that was tried`);
  return bytes;
}
