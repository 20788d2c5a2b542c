// The log in hand: where its messages are, what was found in them, and what people changed. A change is one of the log's
// bytes, so that searches, plots and comparisons see it as what there is.
import { Columns } from './columns.js';
import { Cancelled } from './reader.js';

const pieceSize = 50_000; // messages

const noCounts = () => ({ damaged: 0, withProblems: 0, withErrors: 0, gaps: 0, missing: 0, timed: 0 });

export class Log {
  columns = new Columns();
  originals = new Map(); // of changed messages: row to the bytes that were read
  notes = []; // what was done to read it
  done = 0;
  isComplete = false;
  order = 0; // changes when the messages stand in another one
  #stop = new AbortController();

  /** files: [{ name, blob }]; `asking` is the worker for what is asked while another reads. */
  constructor(name, files, reader, asking) {
    Object.assign(this, { name, files, reader, asking });
    this.size = files.reduce((sum, { blob }) => sum + blob.size, 0);
    this.#forget();
  }

  get count() {
    return this.columns.count;
  }

  /** Reads it all; onChange is called with every block. */
  async read(onChange) {
    const onProgress = (part) => {
      if (part.note) this.notes.push(part.note);
      if (part.blob) {
        this.blob = part.blob;
        this.size = part.blob.size;
      }
      if (part.rows) this.#append(part);
      this.done = part.done ?? part.unpacked ?? this.done;
      onChange();
    };
    try {
      await this.reader.run('open', { files: this.files }, { onProgress, signal: this.#stop.signal });
    } catch (error) {
      this.isCut = true;
      if (!(error instanceof Cancelled)) throw error;
    } finally {
      this.isComplete = true;
    }
  }

  cancel() {
    this.#stop.abort();
  }

  #append({ rows, file, start }) {
    const first = this.columns.count;
    this.columns.append(rows, file, start);
    this.#countFrom(first);
  }

  #forget() {
    this.kinds = new Map(); // messages of each id
    this.findings = new Map(); // messages of each finding code
    this.counts = noCounts();
    this.times = { first: Infinity, last: -Infinity };
  }

  #countFrom(first) {
    const { columns, counts, kinds } = this;
    for (let row = first; row < columns.count; ++row) {
      kinds.set(columns.id[row], (kinds.get(columns.id[row]) ?? 0) + 1);
      counts.damaged += columns.isDamaged[row];
      counts.missing += columns.missing[row];
      if (columns.missing[row] > 0) ++counts.gaps;
      this.#takeTime(columns.microseconds[row]);
      if (columns.severity[row] > 0) this.#countFindings(row);
    }
  }

  #takeTime(microseconds) {
    if (Number.isNaN(microseconds)) return;
    ++this.counts.timed;
    this.times.first = Math.min(this.times.first, microseconds);
    this.times.last = Math.max(this.times.last, microseconds);
  }

  #countFindings(row) {
    ++this.counts.withProblems;
    if (this.columns.severity[row] === 2) ++this.counts.withErrors;
    for (let code = 0; code < 64; ++code)
      if (this.columns.hasFinding(row, code)) this.findings.set(code, (this.findings.get(code) ?? 0) + 1);
  }

  /**
   * Puts the messages of several files in order of time; those without a time stay behind the one before in their
   * file. Gives where each row went, or nothing when all stand as they were.
   */
  orderByTime() {
    const { columns, count } = this;
    if (this.files.length === 1) return undefined;
    const keys = new Float64Array(count);
    const latest = this.files.map(() => -Infinity);
    for (let row = 0; row < count; ++row) {
      const file = columns.file[row];
      if (columns.microseconds[row] > latest[file]) latest[file] = columns.microseconds[row];
      keys[row] = latest[file];
    }
    const rows = Uint32Array.from(keys, (_key, row) => row).sort((left, right) => (keys[left] === keys[right] ? left - right : keys[left] - keys[right]));
    columns.order(rows);
    ++this.order;
    const places = new Uint32Array(count);
    rows.forEach((row, place) => (places[row] = place));
    return places;
  }

  /** Whether most messages have a time, so that time is what they are drawn over. */
  get isTimed() {
    return this.counts.timed * 2 > this.count;
  }

  /** Where a message stands on the time line: its time, or else its number. */
  positionOf(row) {
    return this.isTimed ? this.columns.microseconds[row] : row;
  }

  /** "line 5", with the file's name when there are several. */
  placeOf(row) {
    const { columns, files } = this;
    const line = `line ${columns.line[row].toLocaleString('en')}`;
    return files.length > 1 ? `${line} of ${files[columns.file[row]].name}` : line;
  }

  /** A message as it is now. */
  async message(row) {
    const start = this.columns.offset[row];
    return new Uint8Array(await this.blob.slice(start, start + this.columns.size[row]).arrayBuffer());
  }

  /** A message as it was read. */
  async original(row) {
    return this.originals.get(row) ?? this.message(row);
  }

  /** The latest message of the same kind in front of this one; -1 when there is none. */
  previousOfKind(row) {
    const ids = this.columns.id;
    for (let at = row - 1; at >= 0; --at) if (ids[at] === ids[row]) return at;
    return -1;
  }

  // Where some messages stand.
  #places(rows) {
    const { offset, size } = this.columns;
    const offsets = new Float64Array(rows.length);
    const sizes = new Uint32Array(rows.length);
    for (let at = 0; at < rows.length; ++at) {
      offsets[at] = offset[rows[at]];
      sizes[at] = size[rows[at]];
    }
    return { blob: this.blob, offsets, sizes };
  }

  // A job over some rows, a piece of them after the other, so that the page answers meanwhile. Results come in the order
  // of the rows; they are read in the order of their bytes.
  async #ask(kind, rows, parts, result, { onProgress, signal } = {}) {
    const { offset } = this.columns;
    const answers = kind === 'search' ? 'isFound' : 'numbers';
    for (let from = 0; from < rows.length; from += pieceSize) {
      const piece = rows.slice(from, from + pieceSize);
      const order = this.files.length > 1 ? Uint32Array.from(piece, (_row, at) => at).sort((left, right) => offset[piece[left]] - offset[piece[right]]) : undefined;
      const places = this.#places(order ? order.map((at) => piece[at]) : piece);
      const some = (await this.asking.run(kind, { ...places, ...parts }, { signal }))[answers];
      if (order) order.forEach((at, i) => (result[from + at] = some[i]));
      else result.set(some, from);
      onProgress?.(Math.min(1, (from + pieceSize) / rows.length));
    }
    return result;
  }

  /** Of some rows, in order, whether their message holds some words: 0 or 1. */
  search(rows, words, signal) {
    return this.#ask('search', rows, { words }, new Uint8Array(rows.length), { signal });
  }

  /** The numbers at a path of some rows. */
  series(rows, path, options) {
    return this.#ask('series', rows, { paths: [path] }, new Float64Array(rows.length), options);
  }

  /** The order in which some numbers are to stand so that they rise. */
  async orderOf(numbers) {
    return (await this.asking.run('order', { numbers })).order;
  }

  /** Puts another message in a row's place. `described` is the core's row of it. */
  async change(row, bytes, described, core) {
    const { columns } = this;
    const start = columns.offset[row];
    const end = start + columns.size[row];
    const before = await this.message(row);
    if (!this.originals.has(row)) this.originals.set(row, before);
    const original = this.originals.get(row);
    if (original.length === bytes.length && original.every((byte, at) => byte === bytes[at])) this.originals.delete(row);
    this.blob = new Blob([this.blob.slice(0, start), bytes, this.blob.slice(end)]);
    const more = bytes.length - (end - start);
    for (let at = 0; at < columns.count; ++at) if (columns.offset[at] > start) columns.offset[at] += more;
    columns.size[row] = bytes.length;
    const old = [columns.sequence[row], columns.hasSequence[row]];
    columns.change(row, described);
    if (old[0] !== columns.sequence[row] || old[1] !== columns.hasSequence[row]) await this.#countMissing(core, columns.file[row]);
    this.#forget();
    this.#countFrom(0);
  }

  // Which numbers are missing in a file, from its start on.
  async #countMissing(core, file) {
    const { columns } = this;
    const rows = [];
    for (let row = 0; row < columns.count; ++row) if (columns.file[row] === file && columns.hasSequence[row]) rows.push(row);
    const missing = await core.missing(Int32Array.from(rows, (row) => columns.sequence[row]));
    for (let row = 0; row < columns.count; ++row) if (columns.file[row] === file) columns.missing[row] = 0;
    rows.forEach((row, at) => (columns.missing[row] = missing[at]));
  }
}
