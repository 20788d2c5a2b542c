// Rows of one shape in columns: a table of any length goes from the worker to the page at once, and its rows are made
// when they are asked for.

type Value = string | number | boolean | undefined;
type PackedColumn =
  { numbers: Float64Array; texts?: undefined; ends?: undefined } | { numbers?: undefined; texts: string; ends: Int32Array };

export interface Packed {
  count: number;
  columns: Record<string, PackedColumn>;
}

function packedColumn(values: Value[]): PackedColumn {
  if (values.every((value) => typeof value !== 'string')) return { numbers: Float64Array.from(values, (value) => Number(value ?? NaN)) };
  const ends = new Int32Array(values.length); // negative of what is not there
  let end = 0;
  for (const [at, value] of values.entries()) ends[at] = value === undefined ? ~end : (end += String(value).length);
  return { texts: values.join(''), ends };
}

/** rows: objects of numbers, booleans and texts, any of which may be missing. */
export function packed<Name extends string>(rows: Partial<Record<Name, Value>>[], names: readonly Name[]): Packed {
  return { count: rows.length, columns: Object.fromEntries(names.map((name) => [name, packedColumn(rows.map((row) => row[name]))])) };
}

export class Table {
  readonly count: number;
  #columns: Packed['columns'];

  constructor({ count, columns }: Packed) {
    this.count = count;
    this.#columns = columns;
  }

  /** What a row has in a column; nothing when it has nothing. */
  get(name: string, at: number): string | number | undefined {
    const { numbers, texts, ends } = this.#columns[name];
    if (numbers) return Number.isNaN(numbers[at]) ? undefined : numbers[at];
    const start = at === 0 ? 0 : ends[at - 1];
    return ends[at] < 0 ? undefined : texts.slice(start < 0 ? ~start : start, ends[at]);
  }

  row(at: number) {
    return Object.fromEntries(Object.keys(this.#columns).map((name) => [name, this.get(name, at)]));
  }

  /** The first row with this text in a column; -1 when there is none. */
  find(name: string, text: string) {
    const { texts, ends } = this.#columns[name];
    if (texts === undefined) return -1;
    for (let at = 0, start = 0; at < this.count; ++at) {
      const end = ends[at] < 0 ? ~ends[at] : ends[at];
      if (end - start === text.length && ends[at] >= 0 && texts.startsWith(text, start)) return at;
      start = end;
    }
    return -1;
  }
}
