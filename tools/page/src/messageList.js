// The list of a log's messages: kind, time, sequence number, problems.
import { byId, element } from './elements.js';
import { lowerBound } from './search.js';
import { VirtualList } from './virtualList.js';
import { shownWords } from './signs.js';
import { counted, number, timeInWords } from './words.js';

const severityWords = ['', 'warnings', 'errors'];

function placeIn(rows, row) {
  const at = lowerBound(rows, row);
  return rows[at] === row ? at : -1;
}

export class MessageList {
  #list;
  #shown; // the row whose message is shown, be it listed or not
  rows = new Uint32Array();

  constructor(catalogue, onRow) {
    this.catalogue = catalogue;
    this.#list = new VirtualList(byId('messages'), {
      rowHeight: 40,
      rowRole: 'option',
      fill: (row, index) => this.#fill(row, index),
      onActive: (index) => {
        this.#shown = this.rows[index];
        byId('leftOut').hidden = true;
        onRow(this.#shown);
      },
      onKey: (event) => this.#key(event),
    });
  }

  reset(log) {
    this.log = log;
    this.#list.active = -1;
    this.#shown = undefined;
    this.#list.root.scrollTop = 0;
    this.setRows(new Uint32Array());
  }

  /** Shows these rows; the active message stays the active one while it is among them. hasMore: not all are known. */
  setRows(rows, hasMore = false) {
    this.rows = rows;
    this.#list.active = this.#shown === undefined ? -1 : placeIn(rows, this.#shown);
    this.#list.setCount(rows.length);
    const { count } = this.log;
    const words = rows.length === count ? counted(count, 'message') : `${number(rows.length)} of ${counted(count, 'message')}`;
    const isPartial = hasMore || !this.log.isComplete;
    byId('leftOut').hidden = this.#shown === undefined || this.#list.active >= 0;
    byId('listCount').textContent = `${words}${hasMore ? ', searching…' : isPartial ? ' so far' : ''}`;
    byId('noMessages').hidden = rows.length > 0 || isPartial;
    byId('noMessages').textContent =
      count === 0
        ? 'There is no message in it. A message begins with @@ and its number.'
        : 'No message passes the filters: clear them, or choose others.';
  }

  /** Shows the rows again. */
  draw() {
    this.#list.refresh();
  }

  /** Makes the message of a row the active one; the next one that is listed when it is not. */
  choose(row) {
    this.#list.activate(Math.min(lowerBound(this.rows, row), this.rows.length - 1));
  }

  focus() {
    this.#list.focus();
  }

  // "n" and "p" go to the next and the previous message that something is the matter with.
  #key(event) {
    const step = { n: 1, p: -1 }[event.key];
    if (!step) return false;
    const { columns } = this.log;
    const isOdd = (row) => columns.severity[row] > 0 || columns.isDamaged[row] || columns.missing[row] > 0;
    for (let at = this.#list.active + step; at >= 0 && at < this.rows.length; at += step)
      if (isOdd(this.rows[at])) {
        this.#list.activate(at);
        break;
      }
    return true;
  }

  #fill(element_, index) {
    const { log } = this;
    const { columns } = log;
    const row = this.rows[index];
    const severity = columns.severity[row];
    const time = timeInWords(columns.microseconds[row], columns.hasDate[row] === 1);
    const missing = columns.missing[row];
    element_.setAttribute('aria-setsize', this.rows.length);
    element_.setAttribute('aria-posinset', index + 1);
    element_.title = log.files.length > 1 ? shownWords(log.placeOf(row)) : '';
    element_.replaceChildren(
      element('span', { class: `dot severity${severity}`, title: severityWords[severity] }),
      element(
        'span',
        { class: 'rowMain' },
        element('span', { class: 'rowKind' }, this.catalogue.name(columns.id[row])),
        element('span', { class: 'rowTime' }, time || log.placeOf(row)),
      ),
      element(
        'span',
        { class: 'rowBadges' },
        severity > 0 ? element('span', { class: 'visuallyHidden' }, `, ${severityWords[severity]}`) : null,
        log.originals.has(row) ? element('span', { class: 'badge edited' }, 'edited') : null,
        missing > 0 ? element('span', { class: 'badge gap' }, `${number(missing)} missing`) : null,
        columns.isDamaged[row] ? element('span', { class: 'badge damaged' }, 'damaged') : null,
      ),
      element(
        'span',
        { class: 'rowNumbers' },
        element('span', { class: 'rowSequence' }, columns.hasSequence[row] ? `seq ${columns.sequence[row]}` : ''),
        element('span', { class: 'rowId' }, columns.id[row] < 0 ? '' : String(columns.id[row])),
      ),
    );
  }
}
