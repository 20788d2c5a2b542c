// What the device said last of each kind, at the message that is shown; what of it is something else than at another
// moment, or in another log; and what was asked and answered with the same echo tag.
import type { Catalogue } from './catalogue.ts';
import { busy, byId, element, option, setOptions } from './elements.ts';
import { latestOfKinds, type Log } from './log.ts';
import { Panel, type Parts } from './panel.ts';
import { shown, shownWords } from './signs.ts';
import type { Bytes, Difference, LineDigest } from './types.ts';
import { counted, timeInWords } from './words.ts';

const mostAround = 4; // with the same echo tag, in front and behind
const farthest = 100_000; // rows that are looked at for them

// A moment: the messages up to a row.
interface Moment {
  log: Log;
  row: number;
}

export class State extends Panel {
  static override id = 'state';
  static override title = 'State';
  #now?: Moment;
  #marked?: Moment;
  #round = 0;
  readonly #catalogue: Catalogue;

  constructor(private readonly parts: Parts) {
    super();
    this.#catalogue = parts.catalogue;
    byId('stateSince').addEventListener('change', () => busy(this.#draw()));
    byId('markMessage').addEventListener('click', () => {
      this.#marked = this.#now;
      this.#listMoments();
      byId('stateSince').value = 'marked';
    });
    parts.other.onChange(() => {
      this.#listMoments();
      byId('stateSince').value = 'other';
      this.open();
    });
  }

  override reset() {
    this.#now = undefined;
    this.#marked = undefined;
    this.#listMoments();
  }

  override show(log: Log, row: number, _bytes: Bytes) {
    this.#now = { log, row };
    this.open();
  }

  override open() {
    if (!byId('statePanel').hidden && this.#now) busy(this.#draw());
  }

  #called({ log, row }: Moment) {
    return shownWords(`${timeInWords(log.columns.microseconds[row], log.columns.hasDate[row] === 1)} ${log.placeOf(row)}`.trim());
  }

  #listMoments() {
    const { log } = this.parts.other;
    setOptions(byId('stateSince'), [
      option('', 'all it said last'),
      option('start', 'what is not as it was first'),
      ...(this.#marked ? [option('marked', `what is not as at the marked message, ${this.#called(this.#marked)}`)] : []),
      ...(log ? [option('other', `what is not as in ${shownWords(log.name)} at this time`)] : []),
    ]);
  }

  // Of each kind the row that stands for the other moment.
  #before(now: Moment): { log: Log; rows: Map<number, number> } | undefined {
    const choice = byId('stateSince').value;
    const { other } = this.parts;
    if (choice === 'other' && other.log) return { log: other.log, rows: latestOfKinds(other.log, other.rowAt(now.log, now.row)) };
    if (choice === 'marked' && this.#marked) return { log: now.log, rows: latestOfKinds(now.log, this.#marked.row) };
    if (choice === 'start') return { log: now.log, rows: firstOfKinds(now.log, now.row) };
    return undefined;
  }

  async #draw() {
    const now = this.#now;
    if (!now) return;
    const round = ++this.#round;
    const latest = [...latestOfKinds(now.log, now.row)].sort(([, left], [, right]) => right - left);
    const before = this.#before(now);
    const rows = before ? await this.#changes(now.log, latest, before) : await this.#values(now.log, latest);
    const exchange = await this.#exchange(now);
    if (round !== this.#round) return;
    const words = before ? `${counted(rows.length, 'kind')} of ${latest.length} not the same` : counted(rows.length, 'kind');
    byId('stateMoment').textContent = `At ${this.#called(now)}: ${words}.`;
    byId('stateRows').replaceChildren(...rows);
    byId('exchangeRows').replaceChildren(...exchange);
    byId('exchangePane').hidden = exchange.length === 0;
  }

  #row(log: Log, row: number, ...values: (Node | string)[]) {
    const open = () => this.parts.onRow(row);
    const { id, microseconds } = log.columns;
    return element(
      'tr',
      { 'aria-current': row === this.#now?.row ? 'true' : undefined },
      element('th', { scope: 'row' }, element('button', { type: 'button', class: 'link', onclick: open }, this.#catalogue.name(id[row]))),
      element('td', { class: 'when' }, timeInWords(microseconds[row], false) || log.placeOf(row)),
      element('td', {}, ...values),
    );
  }

  async #values(log: Log, latest: [number, number][]) {
    const rows = latest.map(([, row]) => row);
    const digests = await log.digests(rows, []);
    return rows.map((row, at) => this.#row(log, row, ...digestWords(digests[at])));
  }

  async #changes(log: Log, latest: [number, number][], before: { log: Log; rows: Map<number, number> }) {
    const found = latest.map(async ([id, row]) => {
      const old = before.rows.get(id);
      if (old === undefined) return this.#row(log, row, 'was not said before');
      if (before.log === log && old === row) return undefined;
      const differences = await this.parts.core.differences(await before.log.message(old), await log.message(row));
      return differences.length > 0 ? this.#row(log, row, ...differences.map(changeLine)) : undefined;
    });
    return (await Promise.all(found)).filter((one) => one !== undefined);
  }

  // The messages around with the same echo tag, this one among them.
  async #exchange({ log, row }: Moment) {
    const { echo, hasEcho } = log.columns;
    byId('exchangeTag').textContent = String(echo[row]);
    if (!hasEcho[row]) return [];
    const isSame = (at: number) => hasEcho[at] === 1 && echo[at] === echo[row];
    const rows = [row];
    for (let at = row - 1; at >= Math.max(0, row - farthest) && rows.length <= mostAround; --at) if (isSame(at)) rows.unshift(at);
    const most = rows.length + mostAround;
    for (let at = row + 1; at < Math.min(log.count, row + farthest) && rows.length < most; ++at) if (isSame(at)) rows.push(at);
    if (rows.length === 1) return [];
    const digests = await log.digests(rows, []);
    return rows.map((one, at) => this.#row(log, one, ...digestWords(digests[at])));
  }
}

function firstOfKinds(log: Log, row: number) {
  const rows = new Map<number, number>();
  for (let at = 0; at <= row && rows.size < log.kinds.size; ++at) if (!rows.has(log.columns.id[at])) rows.set(log.columns.id[at], at);
  return rows;
}

const digestWords = ({ parts }: LineDigest) =>
  parts.flatMap(({ key, value }) => [
    ...(key ? [element('span', { class: 'partKey' }, key), ' '] : []),
    element('span', { class: 'part' }, ...shown(value)),
    ' ',
  ]);

const changeLine = ({ path, left, right }: Difference) =>
  element(
    'div',
    { class: 'stateChange' },
    element('span', { class: 'partKey' }, ...shown(path)),
    ' ',
    element('del', {}, ...shown(left ?? 'not there')),
    ' → ',
    element('ins', {}, ...shown(right ?? 'not there')),
  );
