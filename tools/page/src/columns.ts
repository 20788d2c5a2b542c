// The rows of a log's messages, column by column, so that a million of them take some fifty megabytes.
import type { Bytes } from './types.ts';
import { inSlices, nextTask } from './elements.ts';

export const rowSize = 56; // row_t in core/logRows.hpp

// Of a column, its type and where it stands in a row.
const layout = {
  offset: [Float64Array, 0],
  microseconds: [Float64Array, 8],
  size: [Uint32Array, 16],
  line: [Uint32Array, 20],
  id: [Int32Array, 24],
  sequence: [Int32Array, 28],
  missing: [Uint32Array, 32],
  findingsLow: [Uint32Array, 36],
  findingsHigh: [Uint32Array, 40],
  severity: [Uint8Array, 44],
  isDamaged: [Uint8Array, 45],
  hasDate: [Uint8Array, 46],
  hasSequence: [Uint8Array, 47],
  echo: [Int32Array, 48],
  hasEcho: [Uint8Array, 52],
} as const;

type Name = keyof typeof layout;

// Beside what the core says of a message: the file that it stands in.
type Type = (typeof layout)[Name][0] | typeof Uint16Array;
const types = { ...Object.fromEntries(Object.entries(layout).map(([name, [type]]) => [name, type])), file: Uint16Array } as Record<
  Name | 'file',
  Type
>;
const names = Object.keys(types) as (Name | 'file')[];

export class Columns {
  count = 0;
  offset!: Float64Array;
  microseconds!: Float64Array;
  size!: Uint32Array;
  line!: Uint32Array;
  id!: Int32Array;
  sequence!: Int32Array;
  missing!: Uint32Array;
  findingsLow!: Uint32Array;
  findingsHigh!: Uint32Array;
  severity!: Uint8Array;
  isDamaged!: Uint8Array;
  hasDate!: Uint8Array;
  hasSequence!: Uint8Array;
  echo!: Int32Array;
  hasEcho!: Uint8Array;
  file!: Uint16Array;
  #room = 0;

  constructor() {
    this.#grow(1024);
  }

  #grow(room: number) {
    for (const name of names) {
      const column = new types[name](room);
      if (this.count > 0) column.set(this[name].subarray(0, this.count));
      this[name] = column as never;
    }
    this.#room = room;
  }

  /** Takes rows as the core gives them, of a file that begins at `start` in a log of `size` bytes. */
  append(bytes: Bytes, file: number, start: number, size: number) {
    const added = bytes.byteLength / rowSize;
    if (this.count + added > this.#room) this.#grow(this.#roomFor(added, bytes, start, size));
    for (const [name, [type, start]] of Object.entries(layout)) {
      const column = this[name as Name];
      const step = rowSize / type.BYTES_PER_ELEMENT;
      const words = new type(bytes.buffer, 0, bytes.byteLength / type.BYTES_PER_ELEMENT);
      for (let i = 0, at = start / type.BYTES_PER_ELEMENT; i < added; ++i, at += step) column[this.count + i] = words[at];
    }
    for (let row = this.count; row < this.count + added; ++row) {
      this.offset[row] += start;
      this.file[row] = file;
    }
    this.count += added;
  }

  // Room for as many as there will be when it goes on as up to here, so that they are seldom moved.
  #roomFor(added: number, bytes: Bytes, start: number, size: number) {
    const count = this.count + added;
    const latest = start + new Float64Array(bytes.buffer, bytes.byteLength - rowSize, 1)[0];
    return Math.max(this.#room * 2, Math.ceil(1.05 * count * (size / Math.max(latest, 1))) || count, count);
  }

  /** Takes what the core says of a message that was changed, the one at a place of several: all but where and when it stands. */
  change(row: number, bytes: Bytes, at: number) {
    for (const name of [
      'id',
      'sequence',
      'findingsLow',
      'findingsHigh',
      'severity',
      'isDamaged',
      'hasSequence',
      'echo',
      'hasEcho',
    ] as const) {
      const [type, start] = layout[name];
      this[name][row] = new type(bytes.buffer, at * rowSize + start, 1)[0];
    }
  }

  /** What the core said of some rows, as it gave it. */
  described(rows: Uint32Array): Bytes {
    const bytes = new Uint8Array(rows.length * rowSize);
    for (const [name, [type, start]] of Object.entries(layout)) {
      const words = new type(bytes.buffer);
      const step = rowSize / type.BYTES_PER_ELEMENT;
      for (let i = 0, at = start / type.BYTES_PER_ELEMENT; i < rows.length; ++i, at += step) words[at] = this[name as Name][rows[i]];
    }
    return bytes;
  }

  /** Puts the rows into another order: `rows` has them as they shall stand. */
  async order(rows: Uint32Array) {
    const ordered: Partial<Record<string, ArrayLike<number>>> = {};
    for (const name of names) {
      const column = this[name];
      const other = (ordered[name] = new types[name](this.#room));
      await inSlices(this.count, (from, to) => {
        for (let at = from; at < to; ++at) other[at] = column[rows[at]];
      });
      await nextTask();
    }
    Object.assign(this, ordered);
  }

  hasFinding(row: number, code: number) {
    return ((code < 32 ? this.findingsLow[row] >>> code : this.findingsHigh[row] >>> (code - 32)) & 1) === 1;
  }
}
