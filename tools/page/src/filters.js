// The filters above the list: by kind, by words, by what was found, and by the stretch that the time line shows.
import { busy, byId, inSlices, oneByOne, option, seldom, setOptions } from './elements.js';
import { Cancelled } from './reader.js';
import { number } from './words.js';

const atOnce = 200_000; // messages

// Which messages hold some words: known for the first rows, and looked for in the others as they come.
class Search {
  isFound = new Uint8Array();
  count = 0; // rows that were looked at
  #stop = new AbortController();

  constructor(log, words) {
    Object.assign(this, { log, words });
  }

  end() {
    this.#stop.abort();
  }

  /** Looks at the rows that are not known yet; onMore is called with each stretch. */
  async run(onMore) {
    if (this.isRunning) return;
    this.isRunning = true;
    try {
      while (this.count < this.log.count) await this.#take(Math.min(this.log.count, this.count + atOnce), onMore);
    } catch (error) {
      if (!(error instanceof Cancelled)) throw error;
    } finally {
      this.isRunning = false;
    }
  }

  async #take(end, onMore) {
    const rows = new Uint32Array(end - this.count);
    for (let at = 0; at < rows.length; ++at) rows[at] = this.count + at;
    const isFound = await this.log.search(rows, this.words, this.#stop.signal);
    const all = new Uint8Array(end);
    all.set(this.isFound.subarray(0, this.count));
    all.set(isFound, this.count);
    this.isFound = all;
    this.count = end;
    onMore();
  }

  /** A message was changed. */
  async update(row) {
    if (row < this.count) this.isFound[row] = (await this.log.search([row], this.words))[0];
  }
}

export class Filters {
  #kind = byId('filterKind');
  #words = byId('filterWords');
  #problem = byId('filterProblem');
  #range; // of the time line
  #search;
  #passed; // { rows, count, end, tests }: of the rows in front of `end`, those that pass
  #looking = oneByOne(() => this.#look());

  /** onResult(rows, whether more may come) */
  constructor(catalogue, findingNames, onResult) {
    Object.assign(this, { catalogue, findingNames, onResult });
    this.#kind.addEventListener('change', () => this.#applyAnew());
    this.#problem.addEventListener('change', () => this.#applyAnew());
    this.#words.addEventListener('input', seldom(() => this.#applyAnew(), 250));
    byId('filterForm').addEventListener('submit', (event) => event.preventDefault());
    byId('clearFilters').addEventListener('click', () => this.clear());
  }

  get controls() {
    return [this.#kind, this.#words, this.#problem];
  }

  reset(log) {
    this.log = log;
    this.#range = undefined;
    this.forget();
    for (const control of this.controls) control.value = '';
    this.refresh();
  }

  /** The rows are others now. */
  forget() {
    this.#search?.end();
    this.#search = undefined;
    this.#passed = undefined;
  }

  clear() {
    for (const control of this.controls) control.value = '';
    this.#applyAnew();
    this.#words.focus();
  }

  setRange(range) {
    this.#range = range;
    this.#applyAnew();
  }

  /** A message was changed. */
  async update(row) {
    await this.#search?.update(row);
    this.refresh();
    await this.#applyAnew();
  }

  /** The choices there are, with how many messages each has. */
  refresh() {
    const { log } = this;
    const labelled = (value, words, count) => option(value, `${words} (${number(count)})`);
    const kinds = [...log.kinds].sort(([left], [right]) => left - right);
    setOptions(this.#kind, [
      option('', 'All kinds'),
      ...kinds.map(([id, count]) => labelled(String(id), `${this.catalogue.name(id)}${id < 0 ? '' : ` ${id}`}`, count)),
    ]);
    const { withProblems, withErrors, damaged, gaps } = log.counts;
    const codes = [...log.findings].sort(([left], [right]) => left - right);
    setOptions(this.#problem, [
      option('', 'All messages'),
      labelled('problems', 'Any problem', withProblems),
      labelled('errors', 'Errors', withErrors),
      labelled('damaged', 'Damaged ends', damaged),
      labelled('gaps', 'Behind a gap', gaps),
      ...codes.map(([code, count]) => labelled(String(code), this.findingNames[code].replaceAll('-', ' '), count)),
    ]);
  }

  #tests() {
    const { columns } = this.log;
    const tests = [];
    const id = this.#kind.value === '' ? undefined : Number(this.#kind.value);
    if (id !== undefined) tests.push((row) => columns.id[row] === id);
    const problem = this.#problem.value;
    if (problem === 'problems') tests.push((row) => columns.severity[row] > 0);
    else if (problem === 'errors') tests.push((row) => columns.severity[row] === 2);
    else if (problem === 'damaged') tests.push((row) => columns.isDamaged[row] === 1);
    else if (problem === 'gaps') tests.push((row) => columns.missing[row] > 0);
    else if (problem !== '') tests.push((row) => columns.hasFinding(row, Number(problem)));
    if (this.#range) {
      const [from, to] = this.#range;
      tests.push((row) => this.log.positionOf(row) >= from && this.log.positionOf(row) <= to);
    }
    const search = this.#searchFor(this.#words.value);
    if (search) tests.push((row) => search.isFound[row] === 1);
    return tests;
  }

  #searchFor(words) {
    if (this.#search?.words !== words) this.forget();
    if (words !== '') this.#search ??= new Search(this.log, words);
    return this.#search;
  }

  // Goes on from the rows that were looked at for the same filters. What a search has not come to is not listed yet.
  async #look() {
    const { log } = this;
    const search = this.#searchFor(this.#words.value);
    const count = search ? Math.min(search.count, log.count) : log.count;
    const passed = (this.#passed ??= { rows: new Uint32Array(1024), count: 0, end: 0, tests: this.#tests() });
    await inSlices(
      count,
      (from, to) => {
        if (passed.count + to - from > passed.rows.length) passed.rows = grown(passed.rows, passed.count, Math.max(2 * passed.rows.length, passed.count + to - from));
        passed.end = to;
        for (let row = from; row < to; ++row) if (passed.tests.every((test) => test(row))) passed.rows[passed.count++] = row;
      },
      passed.end,
    );
    if (this.#passed === passed && this.log === log) this.onResult(passed.rows.subarray(0, passed.count), search !== undefined && search.count < log.count);
  }

  /** Calls onResult with the rows that pass, again when there are more or the search has found more. */
  async apply() {
    byId('clearFilters').hidden = this.controls.every(({ value }) => value === '');
    const search = this.#searchFor(this.#words.value);
    const looked = this.#looking();
    if (search) busy(search.run(() => this.#search === search && this.#looking()));
    await looked;
  }

  // The filters are others now, or what they look at is.
  #applyAnew() {
    this.#passed = undefined;
    return this.apply();
  }
}

function grown(rows, count, room) {
  const more = new Uint32Array(room);
  more.set(rows.subarray(0, count));
  return more;
}
