// The worker: reads logs block by block, searches them, takes the numbers of plots from them, and answers the calls of
// the core. Jobs run side by side, and calls are answered between their blocks. It never holds more of a log than a
// block and what the core keeps of a message that has no end yet.
import { loadLibrary } from 'vekparams2ascii/library';
import type { Bytes, LinePlace, NamedBlob } from './types.ts';
import { aligned, type Side, type Way } from './alignment.ts';
import { coreText, isSame, linesBetween } from './bytes.ts';
import { Core } from './core.ts';
import { setUnprintable } from './signs.ts';
import { bytesIn, sliceOf, type Source } from './source.ts';
import { plainBlob } from './unpacking.ts';

const blockSize = 2 << 20;
const largestForms = 64 << 20;
const longestBetween = 65_536; // bytes in front of a message whose lines are counted
const longestHead = 200; // bytes of a line in front of a message that are looked at

let core: Core;
const cancelled = new Set<number>(); // jobs

const bytesOf = async (blob: Blob) => new Uint8Array(await blob.arrayBuffer());

/** What the page is told while a job goes on. */
export interface Progress {
  note?: string;
  unpacked?: number;
  blob?: Blob;
  rows?: Bytes;
  file?: number;
  start?: number;
  done?: number;
  share?: number;
}

// As a worker has it.
const tellPage: (message: { job: number } & Progress & Record<string, unknown>, transfer?: Transferable[]) => void = postMessage as never;

class Stopped extends Error {}

function goOn(job: number) {
  if (cancelled.has(job)) throw new Stopped();
}

// Messages in another form become a log of messages, one a line.
async function asLog(blob: Blob) {
  if (!core.isForm(await bytesOf(blob.slice(0, 65536)))) return blob;
  if (blob.size > largestForms) throw new Error('A file of messages as JSON or in words can have 64 MB at most.');
  const made = core.readForms(await bytesOf(blob));
  if (made.error !== undefined) throw new Error(made.error);
  return new Blob([made.bytes]);
}

// The files one behind the other, and where each begins.
async function joined(job: number, files: NamedBlob[]) {
  const parts: (Blob | string)[] = [];
  const starts: number[] = [];
  let size = 0;
  for (const { blob, name } of files) {
    const tell = (note: string) => tellPage({ job, note: files.length > 1 ? `${name}: ${note}` : note });
    const onBytes = (bytes: number) => {
      goOn(job);
      tellPage({ job, unpacked: bytes });
    };
    const plain = await asLog(await plainBlob(core, blob, name, tell, onBytes));
    goOn(job);
    starts.push(size);
    parts.push(plain);
    size += plain.size;
    if (files.length === 1) return { blob: plain, starts, ends: [size] };
    parts.push('\n');
    ++size;
  }
  return { blob: new Blob(parts), starts, ends: [...starts.slice(1).map((start) => start - 1), size - 1] };
}

/** What the page asks for: each job with its parts, and what it gives in the end. */
export type Jobs = typeof jobs;

interface Job {
  job: number;
}

// Some messages of the log, in order.
interface Messages extends Job {
  source: Source;
  offsets: Float64Array;
  sizes: Uint32Array;
}

const jobs = {
  async open({ job, files }: Job & { files: NamedBlob[] }) {
    const { blob, starts, ends } = await joined(job, files);
    tellPage({ job, blob });
    for (const [file, start] of starts.entries()) {
      core.beginLog();
      for (let at = start; at < ends[file]; at += blockSize) {
        const end = Math.min(ends[file], at + blockSize);
        const block = await bytesOf(blob.slice(at, end));
        goOn(job); // the core reads one log at a time: a newer one may have begun
        const rows = core.takeLog(block);
        tellPage({ job, rows, file, start, done: end }, [rows.buffer]);
      }
      const rows = core.takeLog();
      tellPage({ job, rows, file, start, done: ends[file] }, [rows.buffer]);
    }
    return {};
  },

  // A log that goes on, a block as it comes: what it holds, be it wrapped, and the rows of the messages in that.
  follow({ step, bytes }: Job & { step: 'begin' | 'more' | 'end'; bytes: Bytes }) {
    const { wrapping, bytes: log } = core.takeGrowing(step === 'more' ? bytes : new Uint8Array());
    if (step === 'begin') core.beginLog();
    const blocks = log.length > 0 ? [log] : [];
    if (step === 'end') blocks.push(new Uint8Array());
    const found = blocks.map((block) => core.takeLog(block));
    return { wrapping, log, found };
  },

  // Which messages hold some bytes, letter case not counting. Bytes are compared as the characters of one-byte text.
  async search({ job, source, offsets, sizes, words }: Messages & { words: string }) {
    const oneByte = new TextDecoder('latin1');
    const wanted = oneByte.decode(new TextEncoder().encode(words)).toLowerCase();
    const isFound = new Uint8Array(offsets.length);
    await eachBlock(job, source, offsets, sizes, (block, start, first, last) => {
      const text = oneByte.decode(block).toLowerCase();
      let row = first;
      for (let at = text.indexOf(wanted); at >= 0; at = text.indexOf(wanted, at + 1)) {
        while (row < last && offsets[row] - start + sizes[row] <= at) ++row;
        if (row === last) break;
        const from = offsets[row] - start;
        if (at >= from && at + wanted.length <= from + sizes[row]) isFound[row] = 1;
      }
    });
    return { isFound };
  },

  // The numbers at some paths of messages.
  async series({ job, source, offsets, sizes, paths }: Messages & { paths: string[] }) {
    const numbers = new Float64Array(offsets.length * paths.length);
    await eachBlock(job, source, offsets, sizes, (block, start, first, last) => {
      core.chooseSeries(paths);
      numbers.set(core.takeSeries(placesIn(offsets, sizes, start, first, last), block), first * paths.length);
    });
    return { numbers };
  },

  // Which messages a condition chooses.
  async where({ job, source, offsets, sizes, expression }: Messages & { expression: string }) {
    const isFound = new Uint8Array(offsets.length);
    await eachBlock(job, source, offsets, sizes, (block, start, first, last) => {
      if (!core.chooseWhere(expression)) isFound.set(core.takeWhere(placesIn(offsets, sizes, start, first, last), block), first);
    });
    return { isFound };
  },

  // Messages with all that is certain done about a finding: which ones are others then, and what the core says of those.
  async mend({ job, source, offsets, sizes, finding }: Messages & { finding: number }) {
    const changed: number[] = [];
    const made: Bytes[] = [];
    const rows: Bytes[] = [];
    await eachBlock(job, source, offsets, sizes, (block, start, first, last) => {
      for (let at = first; at < last; ++at) {
        const message = block.subarray(offsets[at] - start, offsets[at] - start + sizes[at]);
        const mended = core.mendKind(message, finding);
        if (isSame(mended, message)) continue;
        changed.push(at);
        made.push(mended);
        rows.push(core.row(mended));
      }
    });
    const described = new Uint8Array(await new Blob(rows).arrayBuffer());
    return { changed, messages: new Blob(made), sizes: Uint32Array.from(made, ({ length }) => length), described };
  },

  // Some messages with what stands in front of them on their lines, as a log.
  async lines({ job, source, places }: Job & { source: Source; places: LinePlace[] }) {
    const parts: BlobPart[] = [];
    for (const [at, { start, size, lineAt }] of places.entries()) {
      const head = await bytesIn(source, Math.max(0, lineAt - longestHead), lineAt);
      goOn(job);
      parts.push(head.subarray(head.lastIndexOf(0x0a) + 1), sliceOf(source, start, start + size), '\n');
      if (at % 1000 === 0) tellPage({ job, share: at / places.length });
    }
    return { lines: new Blob(parts) };
  },

  // What some messages say in a line, and what stands in front of each on its line.
  async digests({ source, places, paths }: Job & { source: Source; places: LinePlace[]; paths: string[] }) {
    const digests = places.map(async ({ start, size, lineAt, after }) => {
      const [message, head] = await Promise.all([
        bytesIn(source, start, start + size),
        bytesIn(source, Math.max(after, lineAt - longestBetween), lineAt),
      ]);
      const line = head.subarray(head.lastIndexOf(0x0a) + 1);
      const between = linesBetween(head, after === 0).length;
      return { ...core.digest(message, paths), head: coreText(line.subarray(-longestHead)), between };
    });
    return { digests: await Promise.all(digests) };
  },

  /** Which of some messages are not as those of another log, header numbers aside. */
  async compare({ job, left, right }: Job & { left: Omit<Messages, 'job'>; right: Omit<Messages, 'job'> }) {
    const [there, here] = await Promise.all([messagesIn(left), messagesIn(right)]);
    goOn(job);
    const body = (message: Bytes) => message.subarray(message.indexOf(0x7b)); // {
    const isUnlike = here.map((message, at) => !isSame(body(there[at]), body(message)) && core.differences(there[at], message).length > 0);
    return { isUnlike };
  },

  // Two logs line by line.
  align({ left, right, way }: Job & { left: Side; right: Side; way: Way }) {
    return aligned(left, right, way);
  },

  // The places of numbers in their order.
  order({ numbers }: Job & { numbers: Float64Array }) {
    return { order: Uint32Array.from(numbers.keys()).sort((left, right) => numbers[left] - numbers[right] || left - right) };
  },

  call({ name, parameters }: Job & { name: keyof Core; parameters: unknown[] }) {
    return { result: (core[name] as (...all: unknown[]) => unknown)(...parameters) };
  },
};

// Some messages, read in one go where they stand near each other.
async function messagesIn({ source, offsets, sizes }: Omit<Messages, 'job'>): Promise<Bytes[]> {
  let [start, end] = [Infinity, 0];
  offsets.forEach((offset, at) => ([start, end] = [Math.min(start, offset), Math.max(end, offset + sizes[at])]));
  if (end - start > 4 * blockSize) return Promise.all(Array.from(offsets, (offset, at) => bytesIn(source, offset, offset + sizes[at])));
  const block = offsets.length > 0 ? await bytesIn(source, start, end) : new Uint8Array();
  return Array.from(offsets, (offset, at) => block.subarray(offset - start, offset - start + sizes[at]));
}

// Where the messages of a block are in it.
function placesIn(offsets: Float64Array, sizes: Uint32Array, start: number, first: number, last: number) {
  const places = new Uint32Array(2 * (last - first));
  for (let row = first; row < last; ++row) places.set([offsets[row] - start, sizes[row]], 2 * (row - first));
  return places;
}

// Calls take(bytes, their place, first message, behind the last one) with stretches that hold whole messages in their
// order: changed ones stand in a blob of their own.
type Take = (block: Bytes, start: number, first: number, last: number) => void;
async function eachBlock(job: number, source: Source, offsets: Float64Array, sizes: Uint32Array, take: Take) {
  for (let first = 0; first < offsets.length;) {
    const start = offsets[first];
    let last = first + 1;
    while (last < offsets.length && offsets[last] >= offsets[last - 1] && offsets[last] + sizes[last] - start <= blockSize) ++last;
    const block = await bytesIn(source, start, offsets[last - 1] + sizes[last - 1]);
    goOn(job);
    take(block, start, first, last);
    tellPage({ job, share: last / offsets.length });
    first = last;
  }
}

async function run(message: Job & { kind: keyof Jobs }) {
  const { job, kind } = message;
  try {
    await started;
    goOn(job);
    tellPage({ job, ...(await jobs[kind](message as never)), isLast: true });
  } catch (error) {
    if (error instanceof Stopped) tellPage({ job, isCancelled: true });
    else tellPage({ job, error: (error as Error).message });
  }
  cancelled.delete(job);
}

let isStarted: () => void;
const started = new Promise<void>((resolve) => (isStarted = resolve));
type Asked = { kind: 'start'; wasm: Bytes } | { kind: 'cancel'; job: number } | (Job & { kind: keyof Jobs });
onmessage = async ({ data }: MessageEvent<Asked>) => {
  if (data.kind === 'start') {
    core = new Core(await loadLibrary(data.wasm));
    setUnprintable(core.unprintable());
    isStarted();
  } else if (data.kind === 'cancel') {
    cancelled.add(data.job);
  } else {
    void run(data);
  }
};
