// Binary searches in what stands in order.

/** The first number below `count` for which it is true, as it then is for all behind it; `count` when there is none. */
export function firstWhere(count, isTrue) {
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
export const lowerBound = (values, value, of = (one) => one) => firstWhere(values.length, (at) => of(values[at]) >= value);
