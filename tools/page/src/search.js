// Binary searches in what stands in order.

/** The first place whose value is not below this one; the length when there is none. */
export function lowerBound(values, value, of = (one) => one) {
  let from = 0;
  let to = values.length;
  while (from < to) {
    const middle = (from + to) >>> 1;
    if (of(values[middle]) < value) from = middle + 1;
    else to = middle;
  }
  return from;
}
