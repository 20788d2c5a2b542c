// What a plot draws: the numbers at a key of the log's messages, and what of them is drawn of a stretch of any length.
import type { Log } from './log.ts';
import { RowJob } from './rowJob.ts';
import type { Holds, KindKey, Place, Range } from './types.ts';
import { inSlices } from './elements.ts';
import { firstWhere, lowerBound } from './search.ts';

type Numbers = Uint32Array | Float64Array;
const together = <Kind extends Numbers>(Type: new (size: number) => Kind, first: Kind, second: ArrayLike<number>): Kind => {
  const both = new Type(first.length + second.length);
  both.set(first);
  both.set(second, first.length);
  return both;
};

type Points = Pick<Curve, 'xs' | 'ys'>;

/** A row of places, and of each curve a row of values. */
export type Drawn = [number[], ...(number | null)[][]];

/** A stretch in which a curve stays the same. */
export interface Band extends Place {
  value: number;
  name: string;
}

export class Curve extends RowJob {
  readonly id!: number;
  readonly path!: string;
  readonly holds!: Holds;
  readonly names?: string[];
  rows = new Uint32Array(); // of its kind, in order
  numbers = new Float64Array(); // not a number where there is none
  // Its points in order of their places: place, value and row.
  xs = new Float64Array();
  ys = new Float64Array();
  at = new Uint32Array();

  /** number: { id, path, holds, names } of the catalogue. */
  constructor(log: Log, number: KindKey & { id: number }) {
    super(log, number.path);
    Object.assign(this, number);
  }

  /** Whether it goes from value to value by steps. */
  get isState() {
    return this.holds === 'name' || this.holds === 'boolean';
  }

  nameOf(value: number): string {
    return this.holds === 'boolean' ? ['FALSE', 'TRUE'][value] : (this.names?.[value] ?? String(value));
  }

  protected override forget() {
    this.rows = new Uint32Array();
    this.numbers = new Float64Array();
  }

  protected override async take(from: number, to: number, signal: AbortSignal) {
    const { columns } = this.log;
    const own = new Uint32Array(to - from);
    let count = 0;
    for (let row = from; row < to; ++row) if (columns.id[row] === this.id) own[count++] = row;
    const more = own.slice(0, count);
    const numbers = await this.log.series(more, this.path, signal);
    return () => {
      this.rows = together(Uint32Array, this.rows, more);
      this.numbers = together(Float64Array, this.numbers, numbers);
    };
  }

  protected override async renew(changed: Uint32Array) {
    const { log } = this;
    if (changed.length > 1) {
      this.restart();
      return this.run();
    }
    const [row] = changed;
    if (row === undefined) return undefined;
    const isOfKind = log.columns.id[row] === this.id;
    const at = lowerBound(this.rows, row);
    if (this.rows[at] !== row && isOfKind) {
      this.rows = together(Uint32Array, together(Uint32Array, this.rows.subarray(0, at), [row]), this.rows.subarray(at));
      this.numbers = together(Float64Array, together(Float64Array, this.numbers.subarray(0, at), [NaN]), this.numbers.subarray(at));
    }
    if (this.rows[at] === row) this.numbers[at] = isOfKind ? (await log.series([row], this.path))[0] : NaN;
    return undefined;
  }

  /**
   * Finds its points in order of time, or of sequence numbers; those without a place or a value, and of messages that a filter leaves out, are left
   * out. The returned function takes them over, so that several curves change their places at once.
   */
  async place(isTime: boolean, passes?: (row: number) => boolean) {
    const { log } = this;
    const { microseconds, sequence } = log.columns;
    const { rows, numbers } = this;
    const xs = new Float64Array(rows.length);
    const at = new Uint32Array(rows.length);
    let count = 0;
    let isOrdered = true;
    await inSlices(rows.length, (from, to) => {
      for (let i = from; i < to; ++i) {
        const x = isTime ? microseconds[rows[i]] / 1e6 : sequence[rows[i]];
        if (!Number.isFinite(numbers[i]) || !Number.isFinite(x) || passes?.(rows[i]) === false) continue;
        isOrdered &&= count === 0 || xs[count - 1] <= x;
        xs[count] = x;
        at[count++] = i;
      }
    });
    const order = isOrdered ? undefined : await log.orderOf(xs.slice(0, count));
    const placed = { xs: new Float64Array(count), ys: new Float64Array(count), at: new Uint32Array(count) };
    await inSlices(count, (from, to) => {
      for (let i = from; i < to; ++i) {
        const point = order ? order[i] : i;
        placed.xs[i] = xs[point];
        placed.ys[i] = numbers[at[point]];
        placed.at[i] = rows[at[point]];
      }
    });
    return () => void Object.assign(this, placed);
  }

  /** The number of its last point at a place or in front of it; -1 when there is none. */
  lastUpTo(x: number) {
    return firstWhere(this.xs.length, (at) => this.xs[at] > x) - 1;
  }

  /** The stretches in which it stayed the same, in order. */
  stretches() {
    const found: Band[] = [];
    for (let at = 0; at < this.xs.length; ++at) {
      const latest = found.at(-1);
      if (latest?.value === this.ys[at]) continue;
      if (latest) latest.end = this.xs[at];
      found.push({ value: this.ys[at], name: this.nameOf(this.ys[at]), start: this.xs[at], end: Infinity });
    }
    return found;
  }
}

/** First and last place of some curves; nothing when they have none. */
export function extent(curves: Points[]): Range | undefined {
  const some = curves.filter(({ xs }) => xs.length > 0);
  if (some.length === 0) return undefined;
  return [Math.min(...some.map(({ xs }) => xs[0])), Math.max(...some.map(({ xs }) => xs.at(-1)!))];
}

/** The nearest place of a point. */
export function nearestPlace(curves: Points[], x: number) {
  let nearest: number | undefined;
  for (const { xs } of curves)
    for (const at of [lowerBound(xs, x) - 1, lowerBound(xs, x)])
      if (at in xs && !(Math.abs(xs[at] - x) >= Math.abs((nearest ?? Infinity) - x))) nearest = xs[at];
  return nearest;
}

/** The place of the next point behind a place, or of the one before. */
export function nextPlace(curves: Points[], x: number, isBack: boolean) {
  const places = curves.map(({ xs }) => (isBack ? xs[lowerBound(xs, x) - 1] : xs[firstWhere(xs.length, (at) => xs[at] > x)]));
  const there = places.filter((place) => place !== undefined);
  if (there.length === 0) return undefined;
  return isBack ? Math.max(...there) : Math.min(...there);
}

// All points of some stretches of curves over one row of places; null where a curve has no value.
function merged(curves: Points[], stretches: Range[]): Drawn {
  const next = stretches.map(([first]) => first);
  const places: number[] = [];
  const values = curves.map((): (number | null)[] => []);
  for (;;) {
    let x = Infinity;
    for (const [i, { xs }] of curves.entries()) if (next[i] < stretches[i][1]) x = Math.min(x, xs[next[i]]);
    if (x === Infinity) return [places, ...values];
    places.push(x);
    for (const [i, { xs, ys }] of curves.entries()) values[i].push(next[i] < stretches[i][1] && xs[next[i]] === x ? ys[next[i]++] : null);
  }
}

// Of each curve and column of pixels, the least and the greatest value, in the order in which they come.
function envelope(curves: Points[], stretches: Range[], from: number, to: number, columns: number): Drawn {
  const width = (to - from) / columns;
  const places = Array.from({ length: 2 * columns }, (_one, at) => from + (at / 2 + 0.25) * width);
  const values = curves.map(({ xs, ys }, i) => {
    const drawn = new Array<number | null>(2 * columns).fill(null);
    for (let at = stretches[i][0]; at < stretches[i][1];) {
      const column = Math.min(columns - 1, Math.max(0, Math.floor((xs[at] - from) / width)));
      const end = column === columns - 1 ? Infinity : from + (column + 1) * width;
      let least = at;
      let greatest = at;
      for (++at; at < stretches[i][1] && xs[at] < end; ++at) {
        if (ys[at] < ys[least]) least = at;
        if (ys[at] > ys[greatest]) greatest = at;
      }
      drawn[2 * column] = ys[Math.min(least, greatest)];
      if (least !== greatest) drawn[2 * column + 1] = ys[Math.max(least, greatest)];
    }
    return drawn;
  });
  return [places, ...values];
}

/** All points of a stretch. */
export function pointsIn(curves: Points[], [from, to]: Range): Drawn {
  return merged(
    curves,
    curves.map(({ xs }) => [lowerBound(xs, from), firstWhere(xs.length, (at) => xs[at] > to)]),
  );
}

/** What is drawn of a stretch of the curves: every point, or as much of them as can be seen. */
export function drawn(curves: Points[], [from, to]: Range, columns: number): Drawn {
  const stretches = curves.map(({ xs }): Range => [
    Math.max(0, lowerBound(xs, from) - 1),
    Math.min(xs.length, firstWhere(xs.length, (at) => xs[at] > to) + 1),
  ]);
  const count = stretches.reduce((sum, [first, last]) => sum + last - first, 0);
  return count <= 2 * columns || to <= from ? merged(curves, stretches) : envelope(curves, stretches, from, to, columns);
}
