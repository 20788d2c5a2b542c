// Another log and the one in hand side by side, line by line: what belongs together, what differs in it, marked on both
// sides, and what is in one of them alone. What messages say is read when their line comes in sight.
import type { Alignment, Side, Way } from './alignment.ts';
import { Cancelled } from './cancelled.ts';
import { busy, byId, element, seldom } from './elements.ts';
import type { Log } from './log.ts';
import { Panel, type Parts } from './panel.ts';
import { shown, shownWords } from './signs.ts';
import type { Difference, LineDigest } from './types.ts';
import { VirtualList } from './virtualList.ts';
import { counted, number, shortNumber, timeInWords } from './words.ts';

const atOnce = 2000; // lines that are compared
const mostKept = 4000; // digests of either side
const mostFound = 6; // differences of a message that are shown in its line
const rowHeight = 40;

// Of a pair, once it is compared.
const same = 1;
const differs = 2;

interface Shown {
  log: Log;
  rows: Int32Array;
  digests: Map<number, LineDigest | undefined>; // of rows; nothing while it is asked for
}

export class Beside extends Panel {
  static override id = 'beside';
  static override title = 'Two logs';
  #log?: Log;
  #row = -1; // of the log in hand, whose message is shown
  #sides: Shown[] = []; // there, here
  #likeness = new Uint8Array(); // of each line
  #found = new Map<number, Difference[]>(); // of lines that differ, once they are seen
  #wanted = new Set<number>(); // of these, to be asked for
  #compared = 0; // lines in front of it are
  #listed?: Uint32Array; // lines, when not all are
  #isWayChosen = false; // by people
  #madeOf = ''; // what the lines were made of
  #stop = new AbortController();
  #list: VirtualList;
  #ask = seldom(() => void busy(this.#readWanted()), 30);
  #count = seldom(() => this.#say(), 200);

  constructor(private readonly parts: Parts) {
    super();
    this.#list = new VirtualList(byId('besideRows'), {
      rowHeight,
      rowRole: 'option',
      fill: (made, at) => this.#fill(made, this.#line(at)),
      onActive: () => {},
      onKey: (event) => this.#key(event),
      onDouble: () => this.#open(),
      meant: (at) => `${this.#madeOf} ${this.#line(at)}`,
    });
    byId('besideWay').addEventListener('change', () => {
      this.#isWayChosen = true;
      this.open();
    });
    byId('besideOnly').addEventListener('change', () => this.#relist());
    byId('besideNext').addEventListener('click', () => this.#step(1));
    byId('besideBefore').addEventListener('click', () => this.#step(-1));
    parts.other.onChange(() => this.open());
  }

  override reset(log: Log) {
    this.#log = log;
    this.#row = -1;
    this.#forget();
  }

  override show(_log: Log, row: number) {
    this.#row = row;
  }

  override update() {
    this.#forget();
    return this.complete();
  }

  override complete() {
    this.open();
    return Promise.resolve();
  }

  override open() {
    if (!byId('besidePanel').hidden) void busy(this.#make());
  }

  #forget() {
    this.#stop.abort();
    this.#madeOf = '';
    this.#sides = [];
    this.#found.clear();
    this.#wanted.clear();
    this.#list.setCount(0);
    this.#say();
  }

  // Puts the lines of both together, unless they are.
  async #make() {
    const { log: other } = this.parts.other;
    const log = this.#log;
    byId('besideBody').hidden = !other;
    byId('besideNone').hidden = other !== undefined;
    if (!other || !log) return;
    if (!this.#isWayChosen) byId('besideWay').value = log.isTimed && other.isTimed ? 'time' : 'echo';
    const way = byId('besideWay').value as Way;
    const madeOf = [way, log.count, log.order, other.name, other.count].join();
    if (madeOf === this.#madeOf) return this.#list.refresh();
    this.#forget();
    this.#madeOf = madeOf;
    this.#stop = new AbortController();
    const { signal } = this.#stop;
    const side = ({ columns, count }: Log): Side => ({
      id: columns.id.slice(0, count),
      echo: columns.echo.slice(0, count),
      hasEcho: columns.hasEcho.slice(0, count),
      microseconds: columns.microseconds.slice(0, count),
    });
    const lines: Alignment = await log.queue.run('align', { left: side(other), right: side(log), way });
    if (signal.aborted) return;
    this.#sides = [
      { log: other, rows: lines.left, digests: new Map() },
      { log, rows: lines.right, digests: new Map() },
    ];
    this.#likeness = new Uint8Array(lines.left.length);
    this.#compared = 0;
    this.#relist();
    const near = lines.right.indexOf(this.#row);
    if (near >= 0 && !this.#listed) this.#list.activate(near, true);
    void busy(this.#compare(signal));
  }

  // Finds out which lines differ, from the first one on.
  async #compare(signal: AbortSignal) {
    const [there, here] = this.#sides;
    const stop = () => this.#stop.abort();
    const share = () => this.#compared / Math.max(1, this.#likeness.length);
    const task = {
      words: 'what differs',
      stop,
      get share() {
        return share();
      },
    };
    here.log.queue.tasks.add(task);
    try {
      for (let from = 0; from < here.rows.length; from += atOnce) {
        const lines = Array.from(here.rows.subarray(from, from + atOnce), (_one, at) => from + at);
        const pairs = lines.filter((line) => there.rows[line] >= 0 && here.rows[line] >= 0);
        const places = (side: Shown) => side.log.places(pairs.map((line) => side.rows[line]));
        const { isUnlike } = await here.log.queue.run('compare', { left: places(there), right: places(here) }, { signal });
        pairs.forEach((line, at) => (this.#likeness[line] = isUnlike[at] ? differs : same));
        this.#compared = from + lines.length;
        this.#count();
      }
    } catch (error) {
      if (!(error instanceof Cancelled)) throw error;
    } finally {
      here.log.queue.tasks.delete(task);
    }
    if (this.#sides[1] === here) this.#say();
  }

  #isPair(line: number) {
    return this.#sides.every(({ rows }) => rows[line] >= 0);
  }
  #isOdd(line: number) {
    return !this.#isPair(line) || this.#likeness[line] === differs;
  }
  #line(at: number) {
    return this.#listed ? this.#listed[at] : at;
  }

  #relist() {
    const all = this.#sides[0]?.rows.length ?? 0;
    const isOnly = byId('besideOnly').checked;
    this.#listed = isOnly ? Uint32Array.from({ length: all }, (_one, at) => at).filter((line) => this.#isOdd(line)) : undefined;
    this.#list.setCount(this.#listed?.length ?? all);
    this.#say();
  }

  #say() {
    if (this.#sides.length === 0) return void (byId('besideWords').textContent = '');
    const [there, here] = this.#sides;
    let [alike, unlike, onlyThere, onlyHere] = [0, 0, 0, 0];
    for (let line = 0; line < here.rows.length; ++line) {
      if (there.rows[line] < 0) ++onlyHere;
      else if (here.rows[line] < 0) ++onlyThere;
      else if (this.#likeness[line] === same) ++alike;
      else if (this.#likeness[line] === differs) ++unlike;
    }
    const rest = this.#compared < here.rows.length ? `, of the first ${number(this.#compared)} lines` : '';
    byId('besideThere').textContent = `${shownWords(there.log.name)}: ${number(onlyThere)} only there`;
    byId('besideHere').textContent = `${shownWords(here.log.name)}: ${number(onlyHere)} only here`;
    byId('besideWords').textContent = `${counted(alike, 'pair')} the same, ${number(unlike)} not${rest}.`;
    if (byId('besideOnly').checked && this.#compared === here.rows.length && this.#list.count === 0)
      byId('besideWords').textContent += ' Nothing differs.';
    return this.#list.refresh();
  }

  // The next line that differs, of those that were compared.
  #step(by: number) {
    for (let at = this.#list.active + by; at >= 0 && at < this.#list.count; at += by)
      if (this.#isOdd(this.#line(at))) return this.#list.activate(at);
    return undefined;
  }

  #key({ key }: KeyboardEvent) {
    if (key === 'Enter') this.#open();
    else if (key === 'n' || key === 'p') this.#step(key === 'n' ? 1 : -1);
    else return false;
    return true;
  }

  // Both messages, one beside the other.
  #open() {
    const line = this.#line(this.#list.active);
    const [there, here] = this.#sides.map(({ rows }) => rows[line]);
    if (!(here >= 0)) return;
    this.parts.other.pair = there >= 0 ? { here, there } : undefined;
    this.parts.onRow(here, there >= 0 ? 'differenceTab' : 'messageTab');
  }

  #fill(made: HTMLElement, line: number) {
    const isOdd = this.#isOdd(line);
    const isPair = this.#isPair(line);
    made.className = `row ${isOdd ? (isPair ? 'differs' : 'alone') : ''}`;
    const words = !isPair ? 'only in one log' : isOdd ? 'differs' : '';
    const found = isPair && isOdd ? this.#foundOf(line) : [];
    made.replaceChildren(
      ...this.#sides.map((side, at) => this.#cell(side, side.rows[line], found, at === 0 ? 'left' : 'right')),
      element('span', { class: 'visuallyHidden' }, words),
    );
  }

  // What differs stands in front, marked; behind it what else the message says.
  #cell(side: Shown, row: number, found: Difference[], which: 'left' | 'right') {
    if (row < 0) return element('span', { class: 'side none' });
    const { columns } = side.log;
    const said = (key: string | undefined, value: string, name: 'mark' | 'span') => [
      element(name, {}, ...(key ? [element('span', { class: 'partKey' }, ...shown(key)), ' '] : []), ...shown(shortNumber(value))),
      ' ',
    ];
    const isElse = (key: string | undefined, value: string) =>
      !found.some((one) => (key === undefined ? one[which] === value : one.path.startsWith(key)));
    const time = timeInWords(columns.microseconds[row], false) || side.log.placeOf(row);
    const parts = (this.#digestOf(side, row)?.parts ?? []).filter(({ key, value }) => isElse(key, value));
    return element(
      'span',
      { class: 'side' },
      element('span', { class: 'sideHead' }, element('b', {}, this.parts.catalogue.name(columns.id[row])), ' ', time),
      element(
        'span',
        { class: 'sideValues' },
        ...found.slice(0, mostFound).flatMap((one) => said(one.path, one[which] ?? 'not there', 'mark')),
        ...parts.flatMap(({ key, value }) => said(key, value, 'span')),
      ),
    );
  }

  #foundOf(line: number) {
    const found = this.#found.get(line);
    if (!found) this.#wanted.add(line);
    if (!found) this.#ask();
    return found ?? [];
  }

  #digestOf({ digests }: Shown, row: number) {
    if (row < 0) return undefined;
    if (!digests.has(row)) {
      if (digests.size > mostKept) digests.clear();
      digests.set(row, undefined);
      this.#ask();
    }
    return digests.get(row);
  }

  async #readWanted() {
    const sides = this.#sides;
    const lines = [...this.#wanted];
    this.#wanted.clear();
    for (const { log, digests } of sides) {
      const rows = [...digests].filter(([, digest]) => !digest).map(([row]) => row);
      const found = await log.digests(rows, []);
      rows.forEach((row, at) => digests.set(row, found[at]));
    }
    for (const line of lines) {
      const [there, here] = await Promise.all(sides.map(({ log, rows }) => log.message(rows[line])));
      const found = await this.parts.core.differences(there, here);
      if (this.#sides !== sides) return;
      this.#found.set(line, found);
    }
    if (this.#sides === sides) this.#list.refresh();
  }
}
