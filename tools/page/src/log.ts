// The log in hand: where its messages are, what was found in them, and what people changed. Searches, plots and
// comparisons see a changed message as what there is; what was read stays where it is, and may go on meanwhile.
import { inSlices } from './elements.ts';
import { isSame, linesBetween } from './bytes.ts';
import { Columns } from './columns.ts';
import type { Lane, Queue } from './queue.ts';
import { bytesIn, changesAt, extended, noSource, sliceOf } from './source.ts';
import { Cancelled } from './cancelled.ts';
import type { Bytes, LinePlace, NamedBlob, Stretch } from './types.ts';
import type { Progress } from './worker.ts';
import { unwrapped } from './words.ts';

const pieceSize = 50_000; // messages
const longestStart = 1 << 18; // bytes that tell what a log without messages is

const noCounts = () => ({ damaged: 0, withProblems: 0, withErrors: 0, gaps: 0, missing: 0, timed: 0 });

/** Messages that rows have or had: where they stand, and what the core says of them. */
export interface Snapshot {
  offsets: Float64Array;
  sizes: Uint32Array;
  described: Bytes;
}

type Rows = Uint32Array | number[];
type Asked = 'search' | 'where' | 'series';

/** Of each kind the latest row up to one. */
export function latestOfKinds(log: Log, row: number): Map<number, number> {
  const rows = new Map<number, number>();
  for (let at = row; at >= 0 && rows.size < log.kinds.size; --at) if (!rows.has(log.columns.id[at])) rows.set(log.columns.id[at], at);
  return rows;
}

export class Log {
  columns = new Columns();
  source = noSource();
  size: number;
  kinds!: Map<number, number>; // messages of each id
  findings!: Map<number, number>; // messages of each finding code
  counts!: ReturnType<typeof noCounts>;
  times!: { first: number; last: number };
  isCut = false;
  originals = new Map<number, Stretch>(); // of changed messages: row to { start, size } of what was read
  notes: string[] = []; // what was done to read it
  encoding = ''; // of messages that are not found for it, with what decodes them
  done = 0;
  isComplete = false;
  isLive = false; // it goes on
  keptSize = Infinity; // so much of it is kept elsewhere: nothing of what comes over a line until it is saved
  #isRenumbered = false; // by changes
  order = 0; // changes when the messages stand in another one
  #stop = new AbortController();

  constructor(
    readonly name: string,
    readonly files: NamedBlob[],
    readonly queue: Queue,
    readonly lane: Lane,
  ) {
    this.size = files.reduce((sum, { blob }) => sum + blob.size, 0);
    this.#forget();
  }

  get count() {
    return this.columns.count;
  }

  /** Reads it all; onChange is called with every block. */
  async read(onChange: () => void) {
    const onProgress = (part: Progress) => {
      if (part.note) this.notes.push(part.note);
      if (part.blob) {
        this.source = { ...this.source, read: part.blob };
        this.size = part.blob.size;
      }
      if (part.rows) this.#append(part.rows, part.file ?? 0, part.start ?? 0);
      this.done = part.done ?? part.unpacked ?? this.done;
      onChange();
    };
    try {
      await this.queue.run('open', { files: this.files }, { onProgress, signal: this.#stop.signal, lane: this.lane });
    } catch (error) {
      this.isCut = true;
      if (!(error instanceof Cancelled)) throw error;
    } finally {
      this.isComplete = true;
    }
    if (this.count === 0) this.encoding = await this.queue.core.encoding(await this.#bytesAt({ start: 0, size: longestStart }));
  }

  /** Takes what has come of a log that goes on, in the order of the calls; gives whether there are more messages now. */
  async follow(step: 'begin' | 'more' | 'end', bytes: Bytes = new Uint8Array()) {
    this.isLive = true;
    const { wrapping, log, found } = await this.queue.run('follow', { step, bytes }, { lane: this.lane });
    const before = this.count;
    this.source = extended(this.source, log);
    this.size = this.done = this.size + log.length;
    if (wrapping) this.notes = [unwrapped(wrapping)];
    for (const rows of found) this.#append(rows, 0, 0);
    this.isLive = step !== 'end';
    this.isComplete = !this.isLive;
    if (this.#isRenumbered) await this.#countMissing(0); // the core knows what was read alone
    return this.count > before;
  }

  cancel() {
    this.#stop.abort();
  }

  #append(rows: Bytes, file: number, start: number) {
    const first = this.columns.count;
    this.columns.append(rows, file, start, this.size);
    this.#countFrom(first);
  }

  #forget() {
    this.kinds = new Map();
    this.findings = new Map();
    this.counts = noCounts();
    this.times = { first: Infinity, last: -Infinity };
  }

  #countFrom(first: number) {
    for (let row = first; row < this.columns.count; ++row) {
      this.#count(row, 1);
      this.#takeTime(this.columns.microseconds[row]);
    }
  }

  // Takes a message into account, or, with -1, out of it.
  #count(row: number, by: number) {
    const { columns, counts, kinds, findings } = this;
    const add = (map: Map<number, number>, key: number) => map.set(key, (map.get(key) ?? 0) + by) && map.get(key) === 0 && map.delete(key);
    add(kinds, columns.id[row]);
    counts.damaged += by * columns.isDamaged[row];
    counts.missing += by * columns.missing[row];
    if (columns.missing[row] > 0) counts.gaps += by;
    if (columns.severity[row] === 0) return;
    counts.withProblems += by;
    if (columns.severity[row] === 2) counts.withErrors += by;
    for (let code = 0; code < 64; ++code) if (columns.hasFinding(row, code)) add(findings, code);
  }

  #takeTime(microseconds: number) {
    if (Number.isNaN(microseconds)) return;
    ++this.counts.timed;
    this.times.first = Math.min(this.times.first, microseconds);
    this.times.last = Math.max(this.times.last, microseconds);
  }

  /**
   * Puts the messages of several files in order of time; those without a time stay behind the one before in their
   * file. Gives where each row went, or nothing when there is one file.
   */
  async orderByTime() {
    const { columns, count } = this;
    if (this.files.length === 1) return undefined;
    const keys = new Float64Array(count);
    const latest = this.files.map(() => -Infinity);
    await inSlices(count, (from, to) => {
      for (let row = from; row < to; ++row) {
        const file = columns.file[row];
        if (columns.microseconds[row] > latest[file]) latest[file] = columns.microseconds[row];
        keys[row] = latest[file];
      }
    });
    const rows = await this.orderOf(keys);
    await columns.order(rows);
    ++this.order;
    const places = new Uint32Array(count);
    await inSlices(count, (from, to) => {
      for (let place = from; place < to; ++place) places[rows[place]] = place;
    });
    return places;
  }

  /** Whether most messages have a time, so that time is what they are drawn over. */
  get isTimed() {
    return this.counts.timed * 2 > this.count;
  }

  /** Where a message stands on the time line: its time, or else its number. */
  positionOf(row: number) {
    return this.isTimed ? this.columns.microseconds[row] : row;
  }

  /** "line 5", with the file's name when there are several. */
  placeOf(row: number) {
    const { columns, files } = this;
    const line = `line ${columns.line[row].toLocaleString('en')}`;
    return files.length > 1 ? `${line} of ${files[columns.file[row]].name}` : line;
  }

  /** A message as it is now. */
  async message(row: number) {
    return this.#bytesAt(this.#placeIn(row));
  }

  /** A message as it was read. */
  async original(row: number) {
    const original = this.originals.get(row);
    return original ? this.#bytesAt(original) : this.message(row);
  }

  #bytesAt({ start, size }: Stretch) {
    return bytesIn(this.source, start, start + size);
  }

  #placeIn(row: number): Stretch {
    return { start: this.columns.offset[row], size: this.columns.size[row] };
  }

  /** All of it, with the changed messages in their places. */
  whole() {
    const parts: Blob[] = [];
    let at = 0;
    for (const [row, { start, size }] of [...this.originals].sort(([, left], [, right]) => left.start - right.start)) {
      const now = this.#placeIn(row);
      parts.push(sliceOf(this.source, at, start), sliceOf(this.source, now.start, now.start + now.size));
      at = start + size;
    }
    return new Blob([...parts, sliceOf(this.source, at, this.size)]);
  }

  /** The latest message of the same kind in front of this one; -1 when there is none. */
  previousOfKind(row: number) {
    const ids = this.columns.id;
    for (let at = row - 1; at >= 0; --at) if (ids[at] === ids[row]) return at;
    return -1;
  }

  /** Where some messages stand. */
  places(rows: ArrayLike<number>) {
    const { offset, size } = this.columns;
    const offsets = new Float64Array(rows.length);
    const sizes = new Uint32Array(rows.length);
    for (let at = 0; at < rows.length; ++at) {
      offsets[at] = offset[rows[at]];
      sizes[at] = size[rows[at]];
    }
    return { source: this.source, offsets, sizes };
  }

  // A job over some rows, a piece of them after the other, so that the page answers meanwhile; while the worker is at one,
  // the next is made ready and its bytes are read. Results come in the order of the rows; they are read in the order of
  // their bytes.
  async #ask<Kind extends Asked, Result extends Uint8Array | Float64Array>(
    kind: Kind,
    rows: Rows,
    parts: object,
    result: Result,
    signal?: AbortSignal,
  ): Promise<Result> {
    const { offset } = this.columns;
    const answer = async (from: number) => {
      const piece = rows.slice(from, from + pieceSize);
      const order =
        this.files.length > 1
          ? Uint32Array.from(piece, (_row, at) => at).sort((left, right) => offset[piece[left]] - offset[piece[right]])
          : undefined;
      const places = this.places(order ? order.map((at) => piece[at]) : piece);
      const found = await this.queue.run(kind, { ...places, ...parts } as never, { signal });
      const some = 'numbers' in found ? found.numbers : found.isFound;
      if (order) order.forEach((at: number, i: number) => (result[from + at] = some[i]));
      else result.set(some, from);
    };
    let before = Promise.resolve();
    for (let from = 0; from < rows.length; from += pieceSize) {
      const next = answer(from);
      next.catch(() => {}); // that it fails is seen when its turn comes
      await before;
      before = next;
    }
    await before;
    return result;
  }

  /** Of some rows, in order, what the worker's job finds of their messages: 0 or 1. */
  find(job: 'search' | 'where', rows: Rows, parameters: object, signal?: AbortSignal) {
    return this.#ask(job, rows, parameters, new Uint8Array(rows.length), signal);
  }

  /** The numbers at a path of some rows. */
  series(rows: Rows, path: string, signal?: AbortSignal) {
    return this.#ask('series', rows, { paths: [path] }, new Float64Array(rows.length), signal);
  }

  /** What the messages of some rows say in a line, with what stands at some paths, and in front of them on their lines. */
  async digests(rows: Rows, paths: string[]) {
    return (await this.queue.run('digests', { source: this.source, places: this.#linePlaces(rows), paths })).digests;
  }

  // Where messages stand, and where their lines have them: a changed one stands elsewhere.
  #linePlaces(rows: Rows): LinePlace[] {
    return Array.from(rows, (row) => ({ ...this.#placeIn(row), lineAt: this.#readAt(row).start, after: this.#endInFrontOf(row) }));
  }

  // Where a message was read.
  #readAt(row: number) {
    return this.originals.get(row) ?? this.#placeIn(row);
  }

  // Where the one in front of it in its file was read to.
  #endInFrontOf(row: number) {
    const { file } = this.columns;
    let at = row - 1;
    while (at >= 0 && file[at] !== file[row]) --at;
    if (at < 0) return this.files.length === 1 ? 0 : this.#readAt(row).start;
    const { start, size } = this.#readAt(at);
    return Math.min(start + size, this.#readAt(row).start);
  }

  /** The lines between a message and the one in front of it. */
  async linesInFrontOf(row: number) {
    const [from, to] = [this.#endInFrontOf(row), this.#readAt(row).start];
    return linesBetween(await this.#bytesAt({ start: from, size: to - from }), from === 0);
  }

  /** The messages of some rows as a log. */
  async lines(rows: Rows) {
    return (await this.queue.run('lines', { source: this.source, places: this.#linePlaces(rows) })).lines;
  }

  /** The order in which some numbers are to stand so that they rise. */
  async orderOf(numbers: Float64Array) {
    return (await this.queue.run('order', { numbers })).order;
  }

  /** Where messages of some rows stand, and what the core says of them. */
  snapshot(rows: Uint32Array): Snapshot {
    const { offsets, sizes } = this.places(rows);
    return { offsets, sizes, described: this.columns.described(rows) };
  }

  /** Takes other messages for some rows, to be put in their places. A message that is as it was read is that one again. */
  async take(rows: Uint32Array, messages: Blob, sizes: Uint32Array, described: Bytes): Promise<Snapshot> {
    const offsets = new Float64Array(rows.length);
    const read = this.#readAt(rows[0]);
    if (rows.length === 1 && isSame(await this.#bytesAt(read), new Uint8Array(await messages.arrayBuffer()))) {
      offsets[0] = read.start;
      return { offsets, sizes, described };
    }
    const { changed } = this.source;
    for (let at = 0, end = changesAt + changed.size; at < rows.length; end += sizes[at++]) offsets[at] = end;
    this.source = { ...this.source, changed: new Blob([changed, messages]) };
    return { offsets, sizes, described };
  }

  /** Puts messages in their rows' places. */
  async put(rows: Uint32Array, { offsets, sizes, described }: Snapshot) {
    const { columns, originals } = this;
    const files = new Set<number>(); // whose sequence numbers are others now
    await inSlices(rows.length, (from, to) => {
      for (let at = from; at < to; ++at) {
        const row = rows[at];
        const read = this.#readAt(row);
        const old = [columns.sequence[row], columns.hasSequence[row]];
        this.#count(row, -1);
        if (offsets[at] === read.start) originals.delete(row);
        else originals.set(row, read);
        columns.offset[row] = offsets[at];
        columns.size[row] = sizes[at];
        columns.change(row, described, at);
        this.#count(row, 1);
        if (old[0] !== columns.sequence[row] || old[1] !== columns.hasSequence[row]) files.add(columns.file[row]);
      }
    });
    this.#isRenumbered ||= files.size > 0;
    for (const file of files) await this.#countMissing(file);
  }

  /** What of the messages with a finding is mended when all that is certain is done about it: rows, and what they become. */
  async mended(finding: number) {
    const rows: number[] = [];
    await inSlices(this.count, (from, to) => {
      for (let row = from; row < to; ++row) if (this.columns.hasFinding(row, finding)) rows.push(row);
    });
    const { changed, messages, sizes, described } = await this.queue.run('mend', { ...this.places(rows), finding });
    return { rows: Uint32Array.from(changed, (at) => rows[at]), messages, sizes, described };
  }

  // Which numbers are missing in a file, from its start on.
  async #countMissing(file: number) {
    const { columns, counts } = this;
    const { count } = columns; // it may become more
    const numbers = new Int32Array(count);
    const rows = new Uint32Array(count);
    let found = 0;
    await inSlices(count, (from, to) => {
      for (let row = from; row < to; ++row)
        if (columns.file[row] === file && columns.hasSequence[row]) {
          numbers[found] = columns.sequence[row];
          rows[found++] = row;
        }
    });
    const missing = await this.queue.core.missing(numbers.slice(0, found));
    const put = (row: number, value: number) => {
      counts.missing += value - columns.missing[row];
      counts.gaps += (value > 0 ? 1 : 0) - (columns.missing[row] > 0 ? 1 : 0);
      columns.missing[row] = value;
    };
    let next = 0;
    await inSlices(count, (from, to) => {
      for (let row = from; row < to; ++row)
        if (columns.file[row] === file) put(row, rows[next] === row && next < found ? missing[next++] : 0);
    });
  }
}
