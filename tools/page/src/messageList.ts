// The list of a log's messages, a line each: when, which way, what, and the values that matter. What a message says is
// read when its line comes in sight.
import type { Catalogue } from './catalogue.ts';
import type { Log } from './log.ts';
import type { LineDigest } from './types.ts';
import { byId, element, seldom } from './elements.ts';
import { directionIn, shortDirection } from './lineHead.ts';
import { ListColumns, type ShownColumn } from './listColumns.ts';
import { lowerBound } from './search.ts';
import { VirtualList } from './virtualList.ts';
import { shown, shownWords } from './signs.ts';
import { counted, number, shortNumber, timeInWords } from './words.ts';

const severityWords = ['', 'warnings', 'errors'];
const rowHeight = 24;
const mostKept = 5000; // digests
const day = 86_400e6; // microseconds

type ShownDigest = LineDigest & { direction?: string };

function placeIn(rows: Uint32Array, row: number) {
  const at = lowerBound(rows, row);
  return rows[at] === row ? at : -1;
}

export class MessageList {
  log!: Log;
  readonly chosen: ListColumns;
  #list: VirtualList;
  #shown?: number; // the row whose message is shown, be it listed or not
  #digests = new Map<number, ShownDigest | undefined>(); // of rows, what their messages say; nothing while it is asked for
  #wanted = new Set<number>(); // rows
  #columns: ShownColumn[] = [];
  #ask = seldom(() => this.#askWanted(), 20, true);
  rows: Uint32Array = new Uint32Array();

  constructor(
    private readonly catalogue: Catalogue,
    onRow: (row: number) => void,
  ) {
    this.#list = new VirtualList(byId('messages'), {
      rowHeight,
      rowRole: 'option',
      fill: (row, index) => this.#fill(row, index),
      onActive: (index) => {
        this.#shown = this.rows[index];
        byId('leftOut').hidden = true;
        onRow(this.#shown);
      },
      onKey: (event) => this.#key(event),
    });
    this.chosen = new ListColumns(() => this.draw());
    new ResizeObserver(() => this.#layOut()).observe(this.#list.root);
  }

  // Which columns there are, and how wide.
  #layOut() {
    this.#columns = this.chosen.shown(this.#list.root.clientWidth);
    const widths = ['0.6rem', ...this.#columns.map(({ width }) => width)].join(' ');
    byId('listPane').style.setProperty('--columns', widths);
    byId('listHead').replaceChildren(element('span'), ...this.#columns.map(({ title }) => element('span', { title }, title)));
    this.#list.refresh();
  }

  reset(log: Log) {
    this.log = log;
    this.#list.active = -1;
    this.#shown = undefined;
    this.#list.root.scrollTop = 0;
    this.chosen.hasDirection = false;
    this.#digests.clear();
    this.setRows(new Uint32Array());
  }

  /**
   * Shows these rows; the active message stays the active one while it is among them. What of the log is behind `known`
   * is looked for still, or not when that was stopped.
   */
  setRows(rows: Uint32Array, known = 0, isStopped = false) {
    this.rows = rows;
    this.#list.active = this.#shown === undefined ? -1 : placeIn(rows, this.#shown);
    this.#list.setCount(rows.length);
    const { count } = this.log;
    const words = rows.length === count ? counted(count, 'message') : `${number(rows.length)} of ${counted(count, 'message')}`;
    const hasMore = known < count;
    const isPartial = hasMore || !this.log.isComplete;
    const rest = isStopped ? `: only the first ${number(known)} were looked at` : hasMore ? ', searching…' : isPartial ? ' so far' : '';
    byId('leftOut').hidden = this.#shown === undefined || this.#list.active >= 0;
    byId('listCount').textContent = words + rest;
    byId('noMessages').hidden = rows.length > 0 || isPartial;
    byId('listHead').hidden = rows.length === 0;
    byId('noMessages').textContent = count > 0 ? 'No message passes the filters: clear them, or choose others.' : this.#whyNone(this.log);
  }

  #whyNone({ isCut, encoding, size }: Log) {
    if (size === 0) return 'It is empty.';
    if (isCut) return 'No message of it was read.';
    return encoding
      ? `The messages in it ${encoding}; open what comes out.`
      : 'There is no message in it. A message begins with @@ and its number.';
  }

  /** Shows the rows again: what they say may be something else. */
  draw() {
    this.#digests.clear();
    this.#layOut();
  }

  #digestOf(row: number) {
    const digest = this.#digests.get(row);
    if (!digest && !this.#digests.has(row)) {
      this.#wanted.add(row);
      this.#ask();
    }
    return digest;
  }

  async #askWanted() {
    const { log } = this;
    const rows = [...this.#wanted];
    this.#wanted.clear();
    if (this.#digests.size > mostKept) this.#digests.clear();
    for (const row of rows) this.#digests.set(row, undefined);
    const digests = await log.digests(rows, this.chosen.paths);
    if (this.log !== log) return;
    for (const [at, row] of rows.entries()) this.#digests.set(row, { ...digests[at], direction: directionIn(digests[at].head) });
    const hasDays = log.times.last - log.times.first > day;
    const hasDirection = this.chosen.hasDirection || rows.some((row) => this.#digests.get(row)?.direction);
    if (hasDirection === this.chosen.hasDirection && hasDays === this.chosen.hasDays) return this.#list.refresh();
    Object.assign(this.chosen, { hasDirection, hasDays });
    return this.#layOut();
  }

  /** Makes the message of a row the active one; the next one that is listed when it is not. */
  choose(row: number) {
    this.#list.activate(Math.min(lowerBound(this.rows, row), this.rows.length - 1));
  }

  focus() {
    this.#list.focus();
  }

  // "n" and "p" go to the next and the previous message that something is the matter with.
  #key(event: KeyboardEvent) {
    const step = event.key === 'n' ? 1 : event.key === 'p' ? -1 : 0;
    if (!step) return false;
    const { columns } = this.log;
    const isOdd = (row: number) => columns.severity[row] > 0 || columns.isDamaged[row] || columns.missing[row] > 0;
    for (let at = this.#list.active + step; at >= 0 && at < this.rows.length; at += step)
      if (isOdd(this.rows[at])) {
        this.#list.activate(at);
        break;
      }
    return true;
  }

  #fill(element_: HTMLElement, index: number) {
    const { log } = this;
    const { columns } = log;
    const row = this.rows[index];
    const severity = columns.severity[row];
    const time = timeInWords(columns.microseconds[row], columns.hasDate[row] === 1);
    const digest = this.#digestOf(row);
    const cells: Record<string, (column: ShownColumn) => string> = {
      time: () => this.#timeOf(time) || log.placeOf(row),
      direction: ({ isShort }) => shownWords((isShort ? shortDirection : String)(digest?.direction ?? '')),
      kind: () => this.catalogue.name(columns.id[row]),
      id: () => (columns.id[row] < 0 ? '' : String(columns.id[row])),
      sequence: () => (columns.hasSequence[row] ? String(columns.sequence[row]) : ''),
      line: () => String(columns.line[row]),
      path: ({ path }) => shownWords(shortNumber(digest?.values[path ?? -1] ?? '')),
    };
    element_.className = `row device${digest?.severity ?? 0}`;
    element_.setAttribute('aria-setsize', String(this.rows.length));
    element_.setAttribute('aria-posinset', String(index + 1));
    element_.title = [time, log.files.length > 1 ? shownWords(log.placeOf(row)) : ''].filter(Boolean).join(', ');
    element_.replaceChildren(
      element('span', { class: `dot severity${severity}`, title: severityWords[severity] }),
      ...this.#columns.map((column) =>
        column.name === 'values'
          ? this.#values(row, digest)
          : element('span', { class: `cell ${column.name}` }, cells[column.name](column)),
      ),
    );
    if (severity > 0) element_.append(element('span', { class: 'visuallyHidden' }, `, ${severityWords[severity]}`));
  }

  // As much of a time as there is room for.
  #timeOf(time: string) {
    const { showsDays, hasFractions } = this.chosen;
    return time.slice(showsDays && time.length > 12 ? 5 : -12, hasFractions ? undefined : -4);
  }

  // Texts leave room for the values behind them, of which those that are whole are seen.
  #values(row: number, digest: ShownDigest | undefined) {
    const { columns } = this.log;
    const missing = columns.missing[row];
    const parts = digest?.parts ?? [];
    const texts = parts.filter(({ key }) => !key).flatMap(({ value }, at) => [at > 0 ? ' ' : '', ...shown(shortNumber(value))]);
    const pairs = parts
      .filter(({ key }) => key)
      .flatMap(({ key, value }) => [
        element(
          'span',
          { class: 'part' },
          element('span', { class: 'partKey' }, key),
          ' ',
          element('span', {}, ...shown(shortNumber(value))),
        ),
        ' ',
      ]);
    return element(
      'span',
      { class: 'cell values' },
      this.log.originals.has(row) ? element('span', { class: 'badge edited' }, 'edited') : null,
      digest?.between
        ? element('span', { class: 'badge between', title: 'Lines in front of it that are no messages' }, `+${number(digest.between)}`)
        : null,
      missing > 0 ? element('span', { class: 'badge gap' }, `${number(missing)} missing`) : null,
      columns.isDamaged[row] ? element('span', { class: 'badge damaged' }, 'damaged') : null,
      texts.length > 0 ? element('span', { class: 'partText' }, ...texts) : null,
      ' ',
      ...pairs,
    );
  }
}
