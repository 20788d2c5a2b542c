// The filters above the list: by words, by conditions on values, by kind, by what was found, and by the stretch that the
// time line shows. Each is a chip that can be switched off; together they stand in the address, so that a link opens the
// same view.
import type { Catalogue } from './catalogue.ts';
import type { Log } from './log.ts';
import type { CoreCalls } from './reader.ts';
import type { Range } from './types.ts';
import { busy, byId, element, inSlices, oneByOne, option, seldom, setOptions } from './elements.ts';
import { ConditionField } from './conditionField.ts';
import { Matches } from './matches.ts';
import { RowSearch } from './rowSearch.ts';
import { saveBlob } from './saving.ts';
import { shown, shownWords } from './signs.ts';
import { makeViews } from './views.ts';
import { number } from './words.ts';

type Test = (row: number) => boolean;

// Of the rows in front of `end`, those that pass.
interface Passed {
  rows: Uint32Array;
  count: number;
  end: number;
  tests: Test[];
}

// A chip: what it is known by, what it says, and how it is taken away.
interface Chosen {
  name: string;
  label: string;
  remove: () => unknown;
}

export class Filters {
  #words = byId('filterWords');
  #kind = byId('filterKind');
  #problem = byId('filterProblem');
  #where: ConditionField;
  #conditions: string[] = []; // on values, as the command line takes them
  #off = new Set<string>(); // the chips that are switched off
  #range?: Range; // of the time line
  #searches = new Map<string, RowSearch>(); // by their chips
  log!: Log;
  #passed?: Passed;
  #told = ''; // of what onOthers() was told
  #applyRange = seldom(() => void this.#applyAnew(), 60);
  #looking = oneByOne(() => this.#look());
  #address = new URLSearchParams(location.hash.slice(1)); // that the page was opened with, or a view's
  #matches = new Matches();

  constructor(
    core: CoreCalls,
    private readonly catalogue: Catalogue,
    private readonly findingNames: string[],
    private readonly on: {
      /** These rows pass; of those from `known` on that is not known, and not looked for when a search was stopped. */
      rows: (rows: Uint32Array, known: number, isStopped: boolean) => void;
      /** What passes, the stretch aside, is something else. */
      others: (passes: Test | undefined) => void;
      stretch: (range: Range | undefined) => void;
    },
  ) {
    this.#where = new ConditionField(core, () => this.#keys());
    makeViews(
      (address) => this.#show(new URLSearchParams(address)),
      () => this.#asAddress(),
    );
    this.#kind.addEventListener('change', () => this.#applyAnew());
    this.#problem.addEventListener('change', () => this.#applyAnew());
    this.#words.addEventListener(
      'input',
      seldom(() => this.#applyAnew(), 250),
    );
    byId('filterForm').addEventListener('submit', (event) => {
      event.preventDefault();
      busy(this.#addCondition());
    });
    byId('clearFilters').addEventListener('click', () => this.clear());
    byId('savePassing').addEventListener('click', () => busy(this.#save()));
  }

  // Those of the kinds that there are most of first.
  #keys() {
    const kinds = [...this.log.kinds].sort(([, left], [, right]) => right - left);
    return kinds.flatMap(([id]) => this.catalogue.keys(id));
  }

  reset(log: Log) {
    this.log = log;
    this.#range = undefined;
    this.#empty();
    this.forget();
    this.#takeAddress();
  }

  #takeAddress() {
    this.#words.value = this.#address.get('text') ?? '';
    this.#conditions = this.#address.getAll('where');
    this.#off = new Set(this.#address.getAll('off'));
    const [from, to] = (this.#address.get('stretch') ?? '').split('..').map(Number);
    if (to > from) this.on.stretch([from, to]);
    this.refresh();
  }

  // A view.
  #show(address: URLSearchParams) {
    this.clear();
    this.#address = address;
    this.#takeAddress();
    void this.#applyAnew();
  }

  #empty() {
    for (const control of [this.#words, this.#kind, this.#problem]) control.value = '';
    this.#where.text = '';
    this.#conditions = [];
    this.#off.clear();
  }

  /** The rows are others now. */
  forget() {
    for (const search of this.#searches.values()) search.stop();
    this.#searches.clear();
    this.#passed = undefined;
    this.#told = '';
  }

  clear() {
    this.#empty();
    if (this.#range) this.on.stretch(undefined);
    void this.#applyAnew();
    this.#words.focus();
  }

  setRange(range: Range | undefined) {
    this.#range = range;
    this.#applyRange();
  }

  /** Messages were changed. */
  async update(rows: Uint32Array) {
    for (const search of this.#searches.values()) await search.update(rows);
    this.refresh();
    await this.#applyAnew();
  }

  async #addCondition() {
    const { text } = this.#where;
    if (!(await this.#where.judge()) || text === '') return;
    this.#where.text = '';
    if (!this.#conditions.includes(text)) this.#conditions.push(text);
    await this.#applyAnew();
  }

  /** The choices there are, with how many messages each has. */
  refresh() {
    const { log } = this;
    const labelled = (value: string, words: string, count: number) => option(value, `${words} (${number(count)})`);
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
      ...codes.map(([code, count]) => labelled(this.findingNames[code], this.findingNames[code].replaceAll('-', ' '), count)),
    ]);
    this.#takeChoicesOfAddress();
  }

  // What the address chooses can be chosen once the log has it.
  #takeChoicesOfAddress() {
    for (const [name, select] of Object.entries({ kind: this.#kind, problem: this.#problem })) {
      const value = this.#address.get(name);
      if (value === null || ![...select.options].some((one) => one.value === value)) continue;
      this.#address.delete(name);
      select.value = value;
      this.#passed = undefined;
    }
  }

  // What is chosen: of each its chip's name and words, and how it is taken away.
  #chosen(): Chosen[] {
    const words = (select: HTMLSelectElement) => select.selectedOptions[0]?.textContent?.replace(/ \([\d,]*\)$/, '');
    const clear = (control: { value: string }) => () => (control.value = '');
    const chosen: [boolean, string, string | undefined, () => unknown][] = [
      [this.#words.value !== '', 'text', `text "${this.#words.value}"`, clear(this.#words)],
      ...this.#conditions.map((text): (typeof chosen)[number] => [
        true,
        `where ${text}`,
        text,
        () => this.#conditions.splice(this.#conditions.indexOf(text), 1),
      ]),
      [this.#kind.value !== '', 'kind', words(this.#kind), clear(this.#kind)],
      [this.#problem.value !== '', 'problem', words(this.#problem), clear(this.#problem)],
      [this.#range !== undefined, 'stretch', 'stretch of the time line', () => this.on.stretch(undefined)],
    ];
    return chosen.filter(([isChosen]) => isChosen).map(([, name, label = '', remove]) => ({ name, label, remove }));
  }

  #showChips(chosen: Chosen[]) {
    const change = (act: () => unknown) => () => {
      act();
      void this.#applyAnew();
    };
    byId('filterChips').replaceChildren(
      ...chosen.map(({ name, label, remove }) => {
        const isOn = !this.#off.has(name);
        const toggle = change(() => (isOn ? this.#off.add(name) : this.#off.delete(name)));
        const takeAway = change(() => this.#off.delete(name) || remove());
        return element(
          'li',
          { class: isOn ? 'chip' : 'chip off' },
          element(
            'button',
            {
              type: 'button',
              class: 'switch',
              'aria-pressed': String(isOn),
              title: isOn ? 'Switch it off' : 'Switch it on',
              onclick: toggle,
            },
            ...shown(label),
          ),
          element('button', { type: 'button', class: 'remove', 'aria-label': `Take ${shownWords(label)} away`, onclick: takeAway }, '×'),
        );
      }),
    );
    byId('clearFilters').hidden = byId('savePassing').hidden = chosen.length === 0;
  }

  // As the controls stand, also where what was typed is not looked for yet.
  #asAddress() {
    const address = new URLSearchParams();
    for (const [name, { value }] of Object.entries({ text: this.#words, kind: this.#kind, problem: this.#problem }))
      if (value !== '') address.set(name, value);
    for (const condition of this.#conditions) address.append('where', condition);
    if (this.#range) address.set('stretch', this.#range.map(Math.round).join('..'));
    for (const name of this.#off) address.append('off', name);
    return String(address);
  }

  #keepInAddress() {
    const address = this.#asAddress();
    const hash = address === '' ? '' : `#${address}`;
    if (location.hash !== hash) history.replaceState(null, '', hash || location.pathname + location.search);
  }

  #testsBesideRange() {
    const { columns } = this.log;
    const isOn = (name: string) => !this.#off.has(name);
    const tests: Test[] = [];
    const id = this.#kind.value;
    if (id !== '' && isOn('kind')) tests.push((row) => columns.id[row] === Number(id));
    const problem = isOn('problem') ? this.#problem.value : '';
    const code = this.findingNames.indexOf(problem);
    if (problem === 'problems') tests.push((row) => columns.severity[row] > 0);
    else if (problem === 'errors') tests.push((row) => columns.severity[row] === 2);
    else if (problem === 'damaged') tests.push((row) => columns.isDamaged[row] === 1);
    else if (problem === 'gaps') tests.push((row) => columns.missing[row] > 0);
    else if (code >= 0) tests.push((row) => columns.hasFinding(row, code));
    for (const search of this.#searches.values()) tests.push((row) => search.isFound[row] === 1);
    return tests;
  }

  #tests() {
    const tests = this.#testsBesideRange();
    if (!this.#range || this.#off.has('stretch')) return tests;
    const [from, to] = this.#range;
    const { log } = this;
    return [(row: number) => log.positionOf(row) >= from && log.positionOf(row) <= to, ...tests];
  }

  // The searches that are wanted now; those of before go on.
  #chooseSearches() {
    const words = this.#words.value;
    const wanted = new Map<string, () => RowSearch>();
    for (const expression of this.#conditions)
      wanted.set(`where ${expression}`, () => new RowSearch(this.log, expression, 'where', { expression }));
    if (words !== '') wanted.set('text', () => new RowSearch(this.log, `"${words}"`, 'search', { words }));
    for (const name of this.#off) wanted.delete(name);
    for (const [name, search] of this.#searches)
      if (!wanted.has(name) || (name === 'text' && 'words' in search.parameters && search.parameters.words !== words)) {
        search.stop();
        this.#searches.delete(name);
        this.#passed = undefined;
      }
    for (const [name, make] of wanted)
      if (!this.#searches.has(name)) {
        this.#searches.set(name, make());
        this.#passed = undefined;
      }
  }

  // Goes on from the rows that were looked at for the same filters. What a search has not come to is not listed yet.
  async #look() {
    const { log } = this;
    const count = Math.min(log.count, ...[...this.#searches.values()].map(({ end }) => end));
    const passed = (this.#passed ??= { rows: new Uint32Array(1024), count: 0, end: 0, tests: this.#tests() });
    await inSlices(
      count,
      (from, to) => {
        if (passed.count + to - from > passed.rows.length)
          passed.rows = grown(passed.rows, passed.count, Math.max(2 * passed.rows.length, passed.count + to - from));
        passed.end = to;
        for (let row = from; row < to; ++row) if (passed.tests.every((test) => test(row))) passed.rows[passed.count++] = row;
      },
      passed.end,
    );
    if (this.#passed !== passed || this.log !== log) return;
    const isStopped = [...this.#searches.values()].some((search) => search.isStopped && search.end < log.count);
    byId('savePassing').disabled = passed.count === 0;
    this.on.rows(passed.rows.subarray(0, passed.count), count, isStopped);
    this.#tellOthers(passed.tests, count);
  }

  // What looks at the whole time follows the other filters.
  #tellOthers(tests: Test[], count: number) {
    const others = this.#chosen().filter(({ name }) => name !== 'stretch' && !this.#off.has(name));
    const told = others.length === 0 ? '' : [count, ...others.map(({ label }) => label)].join('\n');
    if (told === this.#told) return;
    this.#told = told;
    const besideRange = this.#range && !this.#off.has('stretch') ? this.#testsBesideRange() : tests;
    this.on.others(told === '' ? undefined : (row) => row < count && besideRange.every((test) => test(row)));
  }

  /** Calls on.rows() with the rows that pass, again when there are more or a search has found more. */
  async apply() {
    this.#chooseSearches();
    this.#matches.show(this.#off.has('text') ? '' : this.#words.value);
    this.#showChips(this.#chosen());
    const looked = this.#looking();
    for (const search of this.#searches.values()) void busy(this.#run(search));
    await looked;
  }

  async #run(search: RowSearch) {
    const look = () => [...this.#searches.values()].includes(search) && void this.#looking();
    await search.run(look);
    if (search.isStopped) look();
  }

  // The filters are others now, or what they look at is.
  async #applyAnew() {
    this.#passed = undefined;
    this.#keepInAddress();
    await this.apply();
  }

  async #save() {
    const { log } = this;
    if (!this.#passed) return;
    const { rows, count } = this.#passed;
    saveBlob(await log.lines(rows.slice(0, count)), `passing ${log.files.length === 1 ? log.name : 'log.txt'}`);
  }
}

function grown(rows: Uint32Array, count: number, room: number) {
  const more = new Uint32Array(room);
  more.set(rows.subarray(0, count));
  return more;
}
