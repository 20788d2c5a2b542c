// The difference of two messages, side by side.
import { announce, byId, element, option, setOptions } from './elements.js';
import { shownText } from './bytes.js';
import { counted, number } from './words.js';

export class Differences {
  #marked; // a message to compare with: its bytes and what it is called

  constructor(core, catalogue) {
    Object.assign(this, { core, catalogue });
    byId('compareWith').addEventListener('change', () => this.draw());
    byId('markMessage').addEventListener('click', () => this.#mark());
  }

  reset() {
    this.#marked = undefined;
  }

  /** The message on the right. */
  show(log, row, bytes) {
    Object.assign(this, { log, row, bytes });
    this.previous = log.previousOfKind(row);
    const choices = [];
    if (log.edits.has(row)) choices.push(option('original', 'as it was read'));
    if (this.previous >= 0) choices.push(option('previous', `the ${this.#called(this.previous)}, the one before of its kind`));
    if (this.#marked) choices.push(option('marked', `the ${this.#marked.name}, marked`));
    setOptions(byId('compareWith'), choices);
    byId('compareForm').hidden = choices.length === 0;
    if (!byId('differencePanel').hidden) this.draw();
  }

  #called(row) {
    return `${this.catalogue.name(this.log.columns.id[row])} of line ${number(this.log.columns.line[row])}`;
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

  async draw() {
    const choice = byId('compareWith').value;
    const table = byId('differences');
    table.hidden = choice === '';
    if (choice === '') {
      byId('differenceCount').textContent = 'It is the first of its kind: mark another message to compare it with.';
      return;
    }
    const left = await this.#other(choice);
    const found = this.core.differences(left, this.bytes);
    byId('differenceCount').textContent = found.length === 0 ? 'No difference.' : counted(found.length, 'difference');
    table.hidden = found.length === 0;
    byId('differenceRows').replaceChildren(...found.map(differenceRow));
    byId('leftText').textContent = shownText(left);
    byId('rightText').textContent = shownText(this.bytes);
  }
}

function differenceRow({ path, left, right }) {
  const side = (value, name) =>
    value === undefined
      ? element('td', { class: 'absent', 'data-side': name }, 'not there')
      : element('td', { class: name, 'data-side': name }, value);
  return element('tr', {}, element('th', { scope: 'row' }, path), side(left, 'left'), side(right, 'right'));
}
