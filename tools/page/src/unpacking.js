// What stands in a file, whatever it is packed in or written with: gzip and zstd are unpacked, UTF-16 becomes UTF-8.

const blockSize = 2 << 20;

const packings = [
  { name: 'gzip', start: [0x1f, 0x8b], remedy: 'gunzip' },
  { name: 'zstd', start: [0x28, 0xb5, 0x2f, 0xfd], remedy: 'zstd -d' },
];

async function beginning(blob, size) {
  return new Uint8Array(await blob.slice(0, size).arrayBuffer());
}

// A browser may know no zstd; it says so by refusing to make the stream.
function unpackerOf({ name, remedy }, file) {
  try {
    return new DecompressionStream(name);
  } catch {
    throw new Error(`${file} is packed with ${name}, which this browser can't unpack: unpack it first (${remedy} ${file}) and open what comes out.`);
  }
}

async function unpacked(blob, packing, file, onBytes) {
  const reader = blob.stream().pipeThrough(unpackerOf(packing, file)).getReader();
  const parts = [];
  let pieces = [];
  let size = 0;
  for (;;) {
    const { done, value } = await reader.read().catch(() => {
      throw new Error(`${file} is packed with ${packing.name}, and damaged or made of several parts: unpack it first (${packing.remedy} ${file}) and open what comes out.`);
    });
    if (value) pieces.push(value);
    size += value?.length ?? 0;
    if (done || pieces.length >= 64) {
      parts.push(new Blob(pieces)); // which the browser may keep on disk
      pieces = [];
      onBytes(size);
    }
    if (done) return new Blob(parts);
  }
}

/** The blob's text as UTF-8. tell(words) says what it was; onBytes(count) is called while it is unpacked. */
export async function plainBlob(core, blob, file, tell, onBytes) {
  const start = await beginning(blob, 64);
  const packing = packings.find((one) => one.start.every((byte, at) => byte === start[at]));
  if (packing) {
    tell(`packed with ${packing.name}`);
    return plainBlob(core, await unpacked(blob, packing, file, onBytes), file, tell, onBytes);
  }
  if (!core.beginUtf16(start)) return blob;
  tell('UTF-16, read as UTF-8');
  const parts = [];
  for (let at = 0; at < blob.size; at += blockSize) {
    const block = new Uint8Array(await blob.slice(at, at + blockSize).arrayBuffer());
    onBytes(at + block.length); // which throws when a newer file is read
    parts.push(new Blob([core.takeUtf16(block)]));
  }
  return new Blob(parts);
}
