// Binary searches in what stands in order.

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
