// What stands in a file, whatever it is packed in or written with: gzip and zstd are unpacked, UTF-16 becomes UTF-8, and of
// JSON (journals', containers') and of escapes comes the log that stands in them.
import type { Core } from './core.ts';
import type { Bytes } from './types.ts';
import { unwrapped } from './words.ts';
import { NotUnpacked, unpackedZstd } from './zstd.ts';

const blockSize = 2 << 20;
const telling = 256 << 10; // bytes that show what a log is wrapped in

interface Packing {
  name: string;
  start: number[];
  unpack(blob: Blob, onBytes: OnBytes): Promise<Blob>;
  command: string;
}

type OnBytes = (count: number) => void;

const packings: Packing[] = [
  { name: 'gzip', start: [0x1f, 0x8b], unpack: unpackedGzip, command: 'gunzip' },
  { name: 'zstd', start: [0x28, 0xb5, 0x2f, 0xfd], unpack: (blob, onBytes) => gathered(unpackedZstd(blob), onBytes), command: 'zstd -d' },
];
const gzipMember = [0x1f, 0x8b, 8];

const bytesOf = async (blob: Blob) => new Uint8Array(await blob.arrayBuffer());

async function gathered(unpacked: AsyncGenerator<Bytes>, onBytes: OnBytes) {
  const parts: Blob[] = [];
  let pieces: Bytes[] = [];
  let [size, kept] = [0, 0];
  for await (const piece of unpacked) {
    pieces.push(piece);
    size += piece.length;
    if (size - kept < blockSize) continue;
    parts.push(new Blob(pieces)); // which the browser may keep on disk
    pieces = [];
    kept = size;
    onBytes(size);
  }
  return new Blob([...parts, ...pieces]);
}

// One member. The browser refuses what is damaged with a TypeError.
async function* unpackedMember(blob: Blob): AsyncGenerator<Bytes> {
  const reader = blob.stream().pipeThrough(new DecompressionStream('gzip')).getReader();
  for (;;) {
    const { done, value } = await reader.read();
    if (done) return;
    yield value;
  }
}

// Where a further member may begin, and the end: the bytes of a beginning can also stand within one.
async function* memberEnds(blob: Blob) {
  for (let from = 0; from < blob.size; from += blockSize) {
    const block = await bytesOf(blob.slice(from, from + blockSize + gzipMember.length - 1));
    for (let at = block.indexOf(gzipMember[0]); at >= 0; at = block.indexOf(gzipMember[0], at + 1))
      if (from + at > 0 && at < blockSize && gzipMember.every((byte, i) => block[at + i] === byte)) yield from + at;
  }
  yield blob.size;
}

// Several members one behind the other are one file. A browser unpacks one, and refuses it when there is more.
async function unpackedGzip(blob: Blob, onBytes: OnBytes): Promise<Blob> {
  const members: Blob[] = [];
  let size = 0;
  const isTaken = async (start: number, end: number) => {
    try {
      const member = await gathered(unpackedMember(blob.slice(start, end)), (bytes) => onBytes(size + bytes));
      members.push(member);
      size += member.size;
      return true;
    } catch (error) {
      if (error instanceof TypeError) return false;
      throw error;
    }
  };
  if (await isTaken(0, blob.size)) return members[0];
  let start = 0;
  for await (const end of memberEnds(blob)) if (await isTaken(start, end)) start = end;
  if (start === blob.size) return new Blob(members);
  throw new NotUnpacked('damaged');
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
    try {
      return await plainBlob(core, await packing.unpack(blob, onBytes), file, tell, onBytes);
    } catch (error) {
      if (!(error instanceof NotUnpacked)) throw error;
      const { name, command } = packing;
      const asWord = /^[\w.+-]+$/.test(file) ? file : `'${file.replaceAll("'", "'\\''")}'`; // of a command line
      const remedy = error.options
        ? `unpack it first (${command} ${error.options} ${asWord}) and open what comes out`
        : `what stands in front of that comes out of ${command} -c ${asWord} > part.log; open part.log`;
      throw new Error(`${file} is packed with ${name}, and ${error.message}: ${remedy}.`);
    }
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
