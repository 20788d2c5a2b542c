// The worker: reads logs block by block, searches them, and takes the numbers of plots from them. It never holds more
// of a log than a block and what the core keeps of a message that has no end yet.
import { Core } from './core.js';

const blockSize = 2 << 20;
const largestForms = 64 << 20;

let core;
let latestJob = 0;

const bytesIn = async (blob, start, end) => new Uint8Array(await blob.slice(start, end).arrayBuffer());

// Messages in another form become a log of messages, one a line.
async function asLog(blob) {
  if (!core.isForm(await bytesIn(blob, 0, 65536))) return { blob };
  if (blob.size > largestForms) return { error: 'A file of messages as JSON or in words can have 64 MB at most.' };
  const { bytes, error } = core.readForms(await bytesIn(blob, 0, blob.size));
  return error ? { error } : { blob: new Blob([bytes]) };
}

const jobs = {
  async open({ job, blob: given }) {
    const { blob, error } = await asLog(given);
    if (error) return postMessage({ job, error });
    if (blob !== given) postMessage({ job, blob });
    core.beginLog();
    for (let at = 0; at < blob.size && job === latestJob; at += blockSize) {
      const block = await bytesIn(blob, at, at + blockSize);
      const rows = core.takeLog(block);
      postMessage({ job, rows, done: Math.min(blob.size, at + blockSize) }, [rows.buffer]);
    }
    if (job !== latestJob) return postMessage({ job, isCancelled: true });
    const rows = core.takeLog();
    postMessage({ job, rows, done: blob.size, isLast: true }, [rows.buffer]);
  },

  // Which messages hold some bytes, letter case not counting. Bytes are compared as the characters of one-byte text.
  async search({ job, blob, offsets, sizes, words }) {
    const oneByte = new TextDecoder('latin1');
    const wanted = oneByte.decode(new TextEncoder().encode(words)).toLowerCase();
    const isFound = new Uint8Array(offsets.length);
    await eachBlock(job, blob, offsets, sizes, (block, start, first, last) => {
      const text = oneByte.decode(block).toLowerCase();
      let row = first;
      for (let at = text.indexOf(wanted); at >= 0; at = text.indexOf(wanted, at + 1)) {
        while (row < last && offsets[row] - start + sizes[row] <= at) ++row;
        if (row === last) break;
        const from = offsets[row] - start;
        if (at >= from && at + wanted.length <= from + sizes[row]) isFound[row] = 1;
      }
    });
    if (job === latestJob) postMessage({ job, isFound, isLast: true }, [isFound.buffer]);
  },

  // The numbers at some paths of messages.
  async series({ job, blob, offsets, sizes, paths }) {
    core.chooseSeries(paths);
    const numbers = new Float64Array(offsets.length * paths.length);
    await eachBlock(job, blob, offsets, sizes, (block, start, first, last) => {
      const places = new Uint32Array(2 * (last - first));
      for (let row = first; row < last; ++row) places.set([offsets[row] - start, sizes[row]], 2 * (row - first));
      numbers.set(core.takeSeries(places, block), first * paths.length);
    });
    if (job === latestJob) postMessage({ job, numbers, isLast: true }, [numbers.buffer]);
  },
};

// Calls take(bytes, their place, first message, behind the last one) with stretches that hold whole messages.
async function eachBlock(job, blob, offsets, sizes, take) {
  for (let first = 0; first < offsets.length && job === latestJob; ) {
    const start = offsets[first];
    let last = first + 1;
    while (last < offsets.length && offsets[last] + sizes[last] - start <= blockSize) ++last;
    take(await bytesIn(blob, start, offsets[last - 1] + sizes[last - 1]), start, first, last);
    postMessage({ job, share: last / offsets.length });
    first = last;
  }
}

async function run(message) {
  try {
    await jobs[message.kind](message);
  } catch (error) {
    postMessage({ job: message.job, error: `The log can't be read: ${error.message}. Open it again.` });
  }
}

// One job at a time; a newer one, or a cancellation, ends the one before.
let queue = Promise.resolve();
onmessage = ({ data }) => {
  if (data.kind === 'start') {
    queue = queue.then(async () => (core = await Core.load(data.wasm)));
    return;
  }
  latestJob = data.job;
  if (data.kind !== 'cancel') queue = queue.then(() => run(data));
};
