// The editor of a list: its elements, to be changed, added, taken away and put into another order. What was not touched
// stays as it stands; the list's count goes with it.
import type { Bytes, EditorKind, Field } from './types.ts';
import { busy, byId, element } from './elements.ts';
import { bytesOf, bytesOfCoreText } from './bytes.ts';
import { firstValue, isPlainText, makeControl, type Control } from './editor.ts';
import type { MessageModel, Pair } from './messageModel.ts';
import { shown } from './signs.ts';
import { counted } from './words.ts';

/** A list that the message has not. */
export interface NewKey {
  path: string;
  field: Field;
}

type Source = Partial<Pick<Pair, 'label' | 'value' | 'count' | 'children'>>;

// An element: the number that it has in the message, unless it is a new one, and what stood in its control first.
interface Row {
  made: HTMLElement;
  number?: number;
  control?: Control;
  first?: string;
  source: Source;
}

export class ListEditor {
  #dialog = byId('listDialog');
  #list = byId('listElements');
  #rows: Row[] = [];
  #node!: Pair | NewKey;
  #kind?: EditorKind;
  #elements: Pair[] = [];

  /** onItems() gives a promise of an error, or of undefined when it is done: see core.setList(). */
  constructor(private readonly onItems: (path: Bytes, items: (number | Bytes)[], isNew: boolean) => Promise<string | undefined>) {
    byId('listForm').addEventListener('submit', (event) => {
      event.preventDefault();
      busy(this.#commit());
    });
    byId('listCancel').addEventListener('click', () => this.#dialog.close());
    byId('listAdd').addEventListener('click', () => this.#add());
  }

  /** `model` has the list, or, for a key that the message has not, its path and field. */
  open(model: MessageModel, node: Pair | NewKey) {
    this.#node = node;
    this.#kind = model.editorOf({ path: node.path, field: node.field, element: true, use: 'assigned', parent: 0 });
    this.#elements = 'children' in node ? node.children : [];
    byId('listTitle').textContent = node.path;
    byId('listError').textContent = '';
    this.#rows = this.#elements.map((one, at) => this.#row(one, at));
    this.#list.replaceChildren(...this.#rows.map(({ made }) => made));
    this.#dialog.showModal();
    this.#say();
  }

  // An element that can't be typed, as a record, is moved as it stands.
  #row(one: Source, number: number | undefined): Row {
    const isTyped = one.count === undefined && this.#kind !== undefined && (this.#kind !== 'text' || isPlainText(one.value ?? ''));
    const control = isTyped && this.#kind ? makeControl(this.#kind, this.#node.field, one.value) : undefined;
    const button = (words: string, name: string, act: () => void) =>
      element('button', { type: 'button', class: 'quiet small', 'aria-label': name, title: name, onclick: act }, words);
    const made = element(
      'li',
      {},
      control ?? element('span', { class: 'listWhole' }, ...shown(wholeInWords(one))),
      button('↑', 'Move up', () => this.#move(row, -1)),
      button('↓', 'Move down', () => this.#move(row, 1)),
      button('×', 'Remove', () => this.#remove(row)),
    );
    control?.setAttribute('aria-label', 'Element');
    const row = { made, number, control, first: control?.value, source: one };
    return row;
  }

  #add() {
    const last = this.#rows.at(-1);
    const isRecord = this.#kind === undefined;
    const first = firstValue(this.#kind, this.#node.field);
    const row = isRecord && last ? this.#row(last.source, last.number) : this.#row({ value: isRecord ? '{}' : first }, undefined);
    this.#rows.push(row);
    this.#list.append(row.made);
    (row.control ?? row.made.querySelector('button'))?.focus();
    this.#say();
  }

  #move(row: Row, step: 1 | -1) {
    const at = this.#rows.indexOf(row);
    const other = this.#rows[at + step];
    if (!other) return;
    [this.#rows[at], this.#rows[at + step]] = [other, row];
    other.made[step === 1 ? 'after' : 'before'](row.made);
    row.made.querySelector<HTMLElement>(`button:nth-of-type(${step === 1 ? 2 : 1})`)?.focus();
  }

  #remove(row: Row) {
    (row.made.nextElementSibling ?? row.made.previousElementSibling ?? byId('listForm')).querySelector('button')?.focus();
    row.made.remove();
    this.#rows = this.#rows.filter((one) => one !== row);
    this.#say();
  }

  #say() {
    byId('elementCount').textContent = counted(this.#rows.length, 'element');
  }

  async #commit() {
    const rows = this.#rows;
    const isUntouched = ({ number, control, first }: Row) => number !== undefined && control?.value === first;
    const isSame = rows.length === this.#elements.length && rows.every((row, at) => row.number === at && isUntouched(row));
    if (isSame) return this.#dialog.close();
    const items = rows.map((row) => (row.number !== undefined && isUntouched(row) ? row.number : bytesOf(row.control?.value ?? '{}')));
    const error = await this.onItems(bytesOfCoreText(this.#node.path), items, !('at' in this.#node));
    byId('listError').textContent = error ?? '';
    if (error === undefined) this.#dialog.close();
    return undefined;
  }
}

// What an element that isn't typed is known by.
function wholeInWords({ label, value, count, children = [] }: Source) {
  if (count === undefined) return value ?? '';
  const first = children.filter((child) => child.value !== undefined).slice(0, 3);
  return `${label ?? ''} ${first.map((child) => `${child.label}=${child.value}`).join(' ')}`;
}
