// The log in hand: where its messages are, what was found in them, and what people changed.
import { Columns } from './columns.js';
import { Cancelled } from './reader.js';

export class Log {
  columns = new Columns();
  kinds = new Map(); // messages of each id
  findings = new Map(); // messages of each finding code
  counts = { damaged: 0, withProblems: 0, withErrors: 0, gaps: 0, missing: 0, timed: 0 };
  times = { first: Infinity, last: -Infinity };
  edits = new Map(); // row to bytes
  done = 0;
  isComplete = false;

  constructor(name, blob, reader) {
    Object.assign(this, { name, blob, reader });
  }

  get count() {
    return this.columns.count;
  }

  /** Reads it all; onChange is called with every block. */
  async read(onChange) {
    try {
      await this.reader.run('open', { blob: this.blob }, (part) => {
        if (part.blob) this.blob = part.blob;
        if (part.rows) this.#append(part.rows);
        this.done = part.done ?? this.done;
        onChange();
      });
    } catch (error) {
      if (!(error instanceof Cancelled)) throw error;
      this.isCancelled = true;
    } finally {
      this.isComplete = true;
    }
  }

  #append(rows) {
    const { columns, counts } = this;
    let row = columns.count;
    columns.append(rows);
    for (; row < columns.count; ++row) {
      this.kinds.set(columns.id[row], (this.kinds.get(columns.id[row]) ?? 0) + 1);
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

  /** Whether most messages have a time, so that time is what they are drawn over. */
  get isTimed() {
    return this.counts.timed * 2 > this.count;
  }

  /** Where a message stands on the time line: its time, or else its number. */
  positionOf(row) {
    return this.isTimed ? this.columns.microseconds[row] : row;
  }

  /** A message as it was read. */
  async original(row) {
    const start = this.columns.offset[row];
    return new Uint8Array(await this.blob.slice(start, start + this.columns.size[row]).arrayBuffer());
  }

  /** A message as it is now. */
  async message(row) {
    return this.edits.get(row) ?? this.original(row);
  }

  /** The latest message of the same kind in front of this one; -1 when there is none. */
  previousOfKind(row) {
    const ids = this.columns.id;
    for (let at = row - 1; at >= 0; --at) if (ids[at] === ids[row]) return at;
    return -1;
  }

  #places(rows) {
    return {
      blob: this.blob,
      offsets: Float64Array.from(rows, (row) => this.columns.offset[row]),
      sizes: Uint32Array.from(rows, (row) => this.columns.size[row]),
    };
  }

  /** Of some rows, in order, those whose message holds some words. */
  async search(rows, words) {
    const { isFound } = await this.reader.run('search', { ...this.#places(rows), words });
    return rows.filter((_row, at) => isFound[at] === 1);
  }

  /** The numbers at some paths of some rows, row by row. */
  async series(rows, paths, onProgress) {
    const { numbers } = await this.reader.run('series', { ...this.#places(rows), paths }, onProgress);
    return numbers;
  }

  /** The log with what was changed in it. */
  withEdits() {
    const parts = [];
    let at = 0;
    for (const row of [...this.edits.keys()].sort((left, right) => left - right)) {
      const start = this.columns.offset[row];
      parts.push(this.blob.slice(at, start), this.edits.get(row));
      at = start + this.columns.size[row];
    }
    return new Blob([...parts, this.blob.slice(at)]);
  }
}
