// What stands in a file, whatever it is packed in or written with: gzip and zstd are unpacked, UTF-16 becomes UTF-8, and of
// JSON (journals', containers') and of escapes comes the log that stands in them.
import type { Core } from './core.ts';
import type { Bytes } from './types.ts';
import { unwrapped } from './words.ts';

const blockSize = 2 << 20;
const telling = 256 << 10; // bytes that show what a log is wrapped in

interface Packing {
  name: CompressionFormat | 'zstd';
  start: number[];
  member: number[];
  remedy: string;
}

const packings: Packing[] = [
  { name: 'gzip', start: [0x1f, 0x8b], member: [0x1f, 0x8b, 8], remedy: 'gunzip' },
  { name: 'zstd', start: [0x28, 0xb5, 0x2f, 0xfd], member: [0x28, 0xb5, 0x2f, 0xfd], remedy: 'zstd -d' },
];

const bytesOf = async (blob: Blob) => new Uint8Array(await blob.arrayBuffer());

// A browser may know no zstd; it says so by refusing to make the stream.
function unpackerOf({ name, remedy }: Packing, file: string) {
  try {
    return new DecompressionStream(name as CompressionFormat);
  } catch {
    throw new Error(
      `${file} is packed with ${name}, which this browser can't unpack: unpack it first (${remedy} ${file}) and open what comes out.`,
    );
  }
}

async function unpackedMember(blob: Blob, packing: Packing, file: string, onBytes: (count: number) => void) {
  const reader = blob.stream().pipeThrough(unpackerOf(packing, file)).getReader();
  const parts: Blob[] = [];
  let pieces: Bytes[] = [];
  let size = 0;
  for (;;) {
    const { done, value } = await reader.read();
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

// Where a further member may begin, and the end: the bytes of a beginning can also stand within one.
async function* memberEnds(blob: Blob, { member }: Packing) {
  for (let from = 0; from < blob.size; from += blockSize) {
    const block = await bytesOf(blob.slice(from, from + blockSize + member.length - 1));
    for (let at = block.indexOf(member[0]); at >= 0; at = block.indexOf(member[0], at + 1))
      if (from + at > 0 && at < blockSize && member.every((byte, i) => block[at + i] === byte)) yield from + at;
  }
  yield blob.size;
}

// Several members one behind the other are one file. A browser unpacks one, and refuses it when there is more.
async function unpacked(blob: Blob, packing: Packing, file: string, onBytes: (count: number) => void): Promise<Blob> {
  const members: Blob[] = [];
  let size = 0;
  const take = async (start: number, end: number) => {
    const member = await unpackedMember(blob.slice(start, end), packing, file, (bytes) => onBytes(size + bytes));
    members.push(member);
    size += member.size;
  };
  const isRefused = (error: unknown) => error instanceof TypeError; // by the browser
  try {
    await take(0, blob.size);
    return members[0];
  } catch (error) {
    if (!isRefused(error)) throw error;
  }
  let start = 0;
  for await (const end of memberEnds(blob, packing))
    try {
      await take(start, end);
      start = end;
    } catch (error) {
      if (!isRefused(error)) throw error;
    }
  if (start === blob.size) return new Blob(members);
  throw new Error(
    `${file} is packed with ${packing.name}, and damaged: unpack it first (${packing.remedy} ${file}) and open what comes out.`,
  );
}

/** The blob's log as it is by itself. tell(words) says what it was; onBytes(count) is called while it is unpacked. */
export async function plainBlob(
  core: Core,
  blob: Blob,
  file: string,
  tell: (words: string) => void,
  onBytes: (count: number) => void,
): Promise<Blob> {
  const start = await bytesOf(blob.slice(0, 64));
  const packing = packings.find((one) => one.start.every((byte, at) => byte === start[at]));
  if (packing) {
    tell(`packed with ${packing.name}`);
    return plainBlob(core, await unpacked(blob, packing, file, onBytes), file, tell, onBytes);
  }
  const wrapping = core.beginUnwrapping(await bytesOf(blob.slice(0, telling)), blob.size <= telling);
  if (wrapping === '') return blob;
  tell(unwrapped(wrapping));
  const parts: Blob[] = [];
  for (let at = 0; at < blob.size; at += blockSize) {
    const block = await bytesOf(blob.slice(at, at + blockSize));
    onBytes(at + block.length); // which throws when a newer file is read
    parts.push(new Blob([core.takeUnwrapped(block)]));
  }
  const plain = new Blob([...parts, core.takeUnwrapped(new Uint8Array())]);
  return wrapping === 'UTF-16' ? plainBlob(core, plain, file, tell, onBytes) : plain;
}
