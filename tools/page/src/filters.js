// The filters above the list: by kind, by words, by what was found, and by the stretch that the time line shows.
import { byId, option, seldom, setOptions } from './elements.js';
import { Cancelled } from './reader.js';
import { number } from './words.js';

export class Filters {
  #kind = byId('filterKind');
  #words = byId('filterWords');
  #problem = byId('filterProblem');
  #range; // of the time line
  #round = 0;

  constructor(catalogue, findingNames, onResult) {
    Object.assign(this, { catalogue, findingNames, onResult });
    this.#kind.addEventListener('change', () => this.apply());
    this.#problem.addEventListener('change', () => this.apply());
    this.#words.addEventListener('input', seldom(() => this.apply(), 250));
    byId('filterForm').addEventListener('submit', (event) => event.preventDefault());
    byId('clearFilters').addEventListener('click', () => this.clear());
  }

  reset(log) {
    this.log = log;
    this.#range = undefined;
    for (const control of [this.#kind, this.#words, this.#problem]) control.value = '';
    this.refresh();
  }

  clear() {
    for (const control of [this.#kind, this.#words, this.#problem]) control.value = '';
    this.apply();
    this.#words.focus();
  }

  setRange(range) {
    this.#range = range;
    this.apply();
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

  #test() {
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
    return tests;
  }

  #passing(tests) {
    const rows = new Uint32Array(this.log.count);
    let count = 0;
    for (let row = 0; row < rows.length; ++row) if (tests.every((test) => test(row))) rows[count++] = row;
    return rows.subarray(0, count);
  }

  /** Calls onResult with the rows that pass. */
  async apply() {
    const round = ++this.#round;
    const { log } = this;
    const tests = this.#test();
    const words = this.#words.value;
    byId('clearFilters').hidden = this.#kind.value === '' && words === '' && this.#problem.value === '';
    let rows = this.#passing(tests);
    if (words !== '' && log.isComplete) {
      try {
        rows = await log.search(rows, words);
      } catch (error) {
        if (error instanceof Cancelled) return;
        throw error;
      }
    }
    if (round === this.#round) this.onResult(rows);
  }
}
