// Binary searches in what stands in order, and what of something else does.

/** The first number below `count` for which it is true, as it then is for all behind it; `count` when there is none. */
export function firstWhere(count: number, isTrue: (at: number) => boolean) {
  let from = 0;
  let to = count;
  while (from < to) {
    const middle = (from + to) >>> 1;
    if (isTrue(middle)) to = middle;
    else from = middle + 1;
  }
  return from;
}

/** The first place whose value is not below this one; the length when there is none. */
export function lowerBound(values: ArrayLike<number>, value: number): number;
export function lowerBound<Value>(values: ArrayLike<Value>, value: number, of: (one: Value) => number): number;
export function lowerBound(values: ArrayLike<unknown>, value: number, of = (one: unknown) => one as number): number {
  return firstWhere(values.length, (at) => of(values[at]) >= value);
}

/** Of each row its partner, -1 for none: the most of them that rise; the others lose theirs. */
export function uncrossed(partners: Int32Array) {
  const ends: number[] = []; // of a rising sequence of each length the row with the least partner
  const before = new Int32Array(partners.length).fill(-1);
  for (let row = 0; row < partners.length; ++row) {
    if (partners[row] < 0) continue;
    const length = firstWhere(ends.length, (at) => partners[ends[at]] >= partners[row]);
    before[row] = length > 0 ? ends[length - 1] : -1;
    ends[length] = row;
  }
  const kept = new Int32Array(partners.length).fill(-1);
  for (let row = ends.at(-1) ?? -1; row >= 0; row = before[row]) kept[row] = partners[row];
  return kept;
}
