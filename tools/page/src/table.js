// Rows of one shape in columns: a table of any length goes from the worker to the page at once, and its rows are made
// when they are asked for.

function packedColumn(values) {
  if (values.every((value) => typeof value !== 'string')) return { numbers: Float64Array.from(values, (value) => Number(value ?? NaN)) };
  const ends = new Int32Array(values.length); // negative of what is not there
  let end = 0;
  for (const [at, value] of values.entries()) ends[at] = value === undefined ? ~end : (end += value.length);
  return { texts: values.join(''), ends };
}

/** rows: objects of numbers, booleans and texts, any of which may be missing. */
export function packed(rows, names) {
  return { count: rows.length, columns: Object.fromEntries(names.map((name) => [name, packedColumn(rows.map((row) => row[name]))])) };
}

export class Table {
  #columns;

  constructor({ count, columns }) {
    this.count = count;
    this.#columns = columns;
  }

  /** What a row has in a column; nothing when it has nothing. */
  get(name, at) {
    const { numbers, texts, ends } = this.#columns[name];
    if (numbers) return Number.isNaN(numbers[at]) ? undefined : numbers[at];
    const start = at === 0 ? 0 : ends[at - 1];
    return ends[at] < 0 ? undefined : texts.slice(start < 0 ? ~start : start, ends[at]);
  }

  row(at) {
    return Object.fromEntries(Object.keys(this.#columns).map((name) => [name, this.get(name, at)]));
  }

  /** The first row with this text in a column; -1 when there is none. */
  find(name, text) {
    const { texts, ends } = this.#columns[name];
    for (let at = 0, start = 0; at < this.count; ++at) {
      const end = ends[at] < 0 ? ~ends[at] : ends[at];
      if (end - start === text.length && ends[at] >= 0 && texts.startsWith(text, start)) return at;
      start = end;
    }
    return -1;
  }
}
