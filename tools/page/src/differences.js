// The difference of two messages, side by side.
import { announce, busy, byId, element, option, setOptions } from './elements.js';
import { coreText } from './bytes.js';
import { Panel } from './panel.js';
import { show, shown, shownWords } from './signs.js';
import { counted } from './words.js';

export class Differences extends Panel {
  static id = 'difference';
  static title = 'Differences';
  #marked; // a message to compare with: its bytes and what it is called

  constructor({ core, catalogue }) {
    super();
    Object.assign(this, { core, catalogue });
    byId('compareWith').addEventListener('change', () => busy(this.draw()));
    byId('markMessage').addEventListener('click', () => this.#mark());
  }

  reset() {
    this.#marked = undefined;
    this.bytes = undefined;
  }

  /** The message on the right. */
  show(log, row, bytes) {
    Object.assign(this, { log, row, bytes });
    this.previous = log.previousOfKind(row);
    const choices = [];
    if (log.originals.has(row)) choices.push(option('original', 'as it was read'));
    if (this.previous >= 0) choices.push(option('previous', `the ${this.#called(this.previous)}, the one before of its kind`));
    if (this.#marked) choices.push(option('marked', `the ${this.#marked.name}, marked`));
    setOptions(byId('compareWith'), choices);
    byId('compareForm').hidden = choices.length === 0;
    if (!byId('differencePanel').hidden) busy(this.draw());
  }

  #called(row) {
    return shownWords(`${this.catalogue.name(this.log.columns.id[row])} of ${this.log.placeOf(row)}`);
  }

  #mark() {
    this.#marked = { bytes: this.bytes, name: this.#called(this.row) };
    announce(`Marked: now go to another message, and choose Differences.`);
    this.show(this.log, this.row, this.bytes);
    byId('compareWith').value = 'marked';
  }

  async #other(choice) {
    if (choice === 'marked') return this.#marked.bytes;
    return choice === 'previous' ? this.log.message(this.previous) : this.log.original(this.row);
  }

  open() {
    if (this.bytes) busy(this.draw());
  }

  async draw() {
    const choice = byId('compareWith').value;
    const table = byId('differences');
    table.hidden = choice === '';
    if (choice === '') {
      byId('differenceCount').textContent = 'It is the first of its kind: mark another message to compare it with.';
      return;
    }
    const { bytes } = this;
    const left = await this.#other(choice);
    const found = await this.core.differences(left, bytes);
    if (bytes !== this.bytes || choice !== byId('compareWith').value) return;
    byId('differenceCount').textContent = found.length === 0 ? 'No difference.' : counted(found.length, 'difference');
    table.hidden = found.length === 0;
    byId('differenceRows').replaceChildren(...found.map(differenceRow));
    show(byId('leftText'), coreText(left), true);
    show(byId('rightText'), coreText(bytes), true);
  }
}

function differenceRow({ path, left, right }) {
  const side = (value, name) =>
    value === undefined
      ? element('td', { class: 'absent', 'data-side': name }, 'not there')
      : element('td', { class: name, 'data-side': name }, ...shown(value));
  return element('tr', {}, element('th', { scope: 'row' }, ...shown(path)), side(left, 'left'), side(right, 'right'));
}
