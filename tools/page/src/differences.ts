// The difference of two messages, side by side.
import { announce, busy, byId, element, option, setOptions } from './elements.ts';
import { BesideText } from './besideText.ts';
import { Panel, type Parts } from './panel.ts';
import type { Catalogue } from './catalogue.ts';
import type { Log } from './log.ts';
import type { CoreCalls } from './reader.ts';
import type { Bytes, Difference } from './types.ts';
import type { OtherLog } from './otherLog.ts';
import { Pieces } from './pieces.ts';
import { shown, shownWords } from './signs.ts';
import { counted } from './words.ts';

export class Differences extends Panel {
  static override id = 'difference';
  static override title = 'Differences';
  #marked?: { bytes: Bytes; name: string }; // a message to compare with: its bytes and what it is called

  #log?: Log;
  #row = 0;
  #bytes?: Bytes;
  #previous = -1; // row of the same kind
  readonly #core: CoreCalls;
  readonly #catalogue: Catalogue;

  readonly #others: OtherLog;
  readonly #texts = new BesideText();
  #found: Difference[] = [];
  readonly #rows = new Pieces(byId('differences'), byId('differenceTable'), (at) => differenceRow(this.#found[at], at));

  constructor({ core, catalogue, other }: Parts) {
    super();
    this.#core = core;
    this.#catalogue = catalogue;
    this.#others = other;
    other.onChange(() => {
      if (!this.#log || !this.#bytes) return;
      this.show(this.#log, this.#row, this.#bytes);
      if (this.#inOther(this.#log) !== undefined) byId('compareWith').value = 'other';
      this.open();
    });
    byId('compareWith').addEventListener('change', () => busy(this.draw()));
    byId('markMessage').addEventListener('click', () => this.#mark());
  }

  override reset() {
    this.#others.pair = undefined;
    this.#marked = undefined;
    this.#bytes = undefined;
  }

  /** The message on the right. */
  override show(log: Log, row: number, bytes: Bytes) {
    this.#log = log;
    this.#row = row;
    this.#bytes = bytes;
    this.#previous = log.previousOfKind(row);
    const choices = [];
    if (log.originals.has(row)) choices.push(option('original', 'as it was read'));
    if (this.#previous >= 0) choices.push(option('previous', `the ${this.#called(log, this.#previous)}, the one before of its kind`));
    if (this.#marked) choices.push(option('marked', `the ${this.#marked.name}, marked`));
    const other = this.#inOther(log);
    if (other)
      choices.push(option('other', `the ${this.#called(other.log, other.row)} of ${shownWords(other.log.name)}, at this time of its day`));
    setOptions(byId('compareWith'), choices);
    if (this.#others.pair?.here === row) byId('compareWith').value = 'other';
    byId('compareWith').disabled = choices.length === 0;
    if (!byId('differencePanel').hidden) busy(this.draw());
  }

  // The message of the same kind in the other log, that was the latest at this time of its day, or else the first.
  #inOther(log: Log) {
    const other = this.#others.log;
    if (!other) return undefined;
    const { pair } = this.#others;
    if (pair?.here === this.#row) return { log: other, row: pair.there };
    const ids = other.columns.id.subarray(0, other.count);
    const id = log.columns.id[this.#row];
    const before = ids.lastIndexOf(id, this.#others.rowAt(log, this.#row));
    const row = before >= 0 ? before : ids.indexOf(id);
    return row >= 0 ? { log: other, row } : undefined;
  }

  #called(log: Log, row: number) {
    return shownWords(`${this.#catalogue.name(log.columns.id[row])} of ${log.placeOf(row)}`);
  }

  #mark() {
    const log = this.#log;
    if (!log || !this.#bytes) return;
    this.#marked = { bytes: this.#bytes, name: this.#called(log, this.#row) };
    announce(`Marked: now go to another message, and choose Differences.`);
    this.show(log, this.#row, this.#bytes);
    byId('compareWith').value = 'marked';
  }

  async #other(log: Log, choice: string) {
    if (choice === 'marked' && this.#marked) return this.#marked.bytes;
    const other = choice === 'other' && this.#inOther(log);
    if (other) return other.log.message(other.row);
    return choice === 'previous' ? log.message(this.#previous) : log.original(this.#row);
  }

  override open() {
    if (this.#bytes) busy(this.draw());
  }

  async draw() {
    const choice = byId('compareWith').value;
    const table = byId('differences');
    table.hidden = byId('differenceBody').hidden = choice === '';
    if (choice === '') {
      byId('differenceCount').textContent = 'It is the first of its kind: mark another message to compare it with.';
      return;
    }
    const log = this.#log;
    const bytes = this.#bytes;
    if (!log || !bytes) return;
    const left = await this.#other(log, choice);
    const isStill = () => bytes === this.#bytes && choice === byId('compareWith').value;
    const found = await this.#core.differences(left, bytes);
    if (!isStill()) return;
    this.#found = found;
    byId('differenceCount').textContent = found.length === 0 ? 'No difference.' : counted(found.length, 'difference');
    table.hidden = found.length === 0;
    this.#rows.show(found.length);
    const texts = await this.#core.texts(left, bytes);
    if (isStill()) this.#texts.show(texts);
  }
}

function differenceRow({ path, left, right }: Difference, at: number) {
  const side = (value: string | undefined, name: string) =>
    value === undefined
      ? element('td', { class: 'absent', 'data-side': name }, 'not there')
      : element('td', { class: name, 'data-side': name }, ...shown(value));
  return element(
    'tr',
    { 'aria-rowindex': at + 1 },
    element('th', { scope: 'row' }, ...shown(path)),
    side(left, 'left'),
    side(right, 'right'),
  );
}
