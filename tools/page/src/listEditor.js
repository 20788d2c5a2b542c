// The editor of a list: its elements, to be changed, added, taken away and put into another order. What was not touched
// stays as it stands; the list's count goes with it.
import { busy, byId, element } from './elements.js';
import { bytesOf, bytesOfCoreText } from './bytes.js';
import { isPlainText, makeControl } from './editor.js';
import { shown } from './signs.js';
import { counted } from './words.js';

export class ListEditor {
  #dialog = byId('listDialog');
  #rows = byId('listElements');

  /** onItems(path bytes, items) gives a promise of an error, or of undefined when it is done: see core.setList(). */
  constructor(onItems) {
    this.onItems = onItems;
    byId('listForm').addEventListener('submit', (event) => {
      event.preventDefault();
      busy(this.#commit());
    });
    byId('listCancel').addEventListener('click', () => this.#dialog.close());
    byId('listAdd').addEventListener('click', () => this.#add());
  }

  /** `model` has the list, or, for a key that the message has not, its path and field. */
  open(model, node) {
    this.node = node;
    this.kind = model.editorOf({ ...node, element: true, count: undefined, use: 'assigned', parent: 0 });
    this.elements = node.children ?? [];
    byId('listTitle').textContent = node.path;
    byId('listError').textContent = '';
    this.#rows.replaceChildren(...this.elements.map((one, at) => this.#row(one, at)));
    this.#dialog.showModal();
    this.#say();
  }

  // An element that can't be typed, as a record, is moved as it stands.
  #row(one, number) {
    const isTyped = one.count === undefined && this.kind !== undefined && (this.kind !== 'text' || isPlainText(one.value ?? ''));
    const control = isTyped ? makeControl(this.kind, this.node.field, one.value) : undefined;
    const button = (words, name, act) => element('button', { type: 'button', class: 'quiet small', 'aria-label': name, title: name, onclick: act }, words);
    const row = element(
      'li',
      {},
      control ?? element('span', { class: 'listWhole' }, ...shown(wholeInWords(one))),
      button('↑', 'Move up', () => this.#move(row, row.previousElementSibling, 'before')),
      button('↓', 'Move down', () => this.#move(row, row.nextElementSibling, 'after')),
      button('×', 'Remove', () => this.#remove(row)),
    );
    control?.setAttribute('aria-label', 'Element');
    Object.assign(row, { number, control, first: control?.value, source: one });
    return row;
  }

  #add() {
    const last = this.#rows.lastElementChild;
    const isRecord = this.kind === undefined;
    const first = { boolean: 'FALSE', names: this.node.field.names?.[0], number: '0', text: '' }[this.kind];
    const row = isRecord && last ? this.#row(last.source, last.number) : this.#row({ value: isRecord ? '{}' : first }, undefined);
    this.#rows.append(row);
    (row.control ?? row.querySelector('button')).focus();
    this.#say();
  }

  #move(row, other, side) {
    if (!other) return;
    other[side](row);
    row.querySelector(`button:nth-of-type(${side === 'before' ? 1 : 2})`).focus();
  }

  #remove(row) {
    (row.nextElementSibling ?? row.previousElementSibling ?? byId('listForm')).querySelector('button').focus();
    row.remove();
    this.#say();
  }

  #say() {
    byId('elementCount').textContent = counted(this.#rows.children.length, 'element');
  }

  async #commit() {
    const rows = [...this.#rows.children];
    const isUntouched = ({ number, control, first }) => number !== undefined && control?.value === first;
    const isSame = rows.length === this.elements.length && rows.every((row, at) => row.number === at && isUntouched(row));
    if (isSame) return this.#dialog.close();
    const items = rows.map((row) => (isUntouched(row) ? row.number : bytesOf(row.control?.value ?? '{}')));
    const error = await this.onItems(bytesOfCoreText(this.node.path), items, this.node.at === undefined);
    byId('listError').textContent = error ?? '';
    if (error === undefined) this.#dialog.close();
    return undefined;
  }
}

// What an element that isn't typed is known by.
function wholeInWords({ label, value, count, children }) {
  if (count === undefined) return value ?? '';
  const first = children.filter((child) => child.value !== undefined).slice(0, 3);
  return `${label ?? ''} ${first.map((child) => `${child.label}=${child.value}`).join(' ')}`;
}
