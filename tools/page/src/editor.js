// The editor of a value: a field, a list of names or of booleans, on the row of its pair. It shows what stands there, a
// text that can't be shown as it is in quotes with escapes; a value that was not touched stays as it is.
import { busy, byId, element, option } from './elements.js';
import { bytesOf, bytesOfCoreText } from './bytes.js';
import { isPrintable } from './signs.js';

const hints = { number: 'a number', text: 'a text', quoted: 'a text in double quotes' };

/** Whether a value is edited as it is, or in quotes. */
export const isPlainText = (value) => isPrintable(value) && !value.startsWith('"');

/** The field to edit a value of a kind in. */
export function makeControl(kind, field, value, attributes = {}) {
  const common = { autocomplete: 'off', spellcheck: 'false', ...attributes };
  if (kind !== 'names' && kind !== 'boolean') {
    const input = element('input', { ...common, type: 'text', placeholder: hints[kind] });
    if (kind === 'number') input.inputMode = 'decimal';
    input.value = value ?? '';
    return input;
  }
  const names = kind === 'boolean' ? ['TRUE', 'FALSE'] : [...field.names];
  if (value !== undefined && !names.includes(value)) names.unshift(value);
  const select = element('select', common, ...names.map((name) => option(name, name)));
  select.value = value ?? names[0];
  return select;
}

export class Editor {
  #form = byId('editor');
  #pane = byId('treePane');
  #control;
  #opened; // what stood in the field first; undefined when the key is new
  #kind;

  /** onValue(path bytes, value bytes, isQuoted) gives a promise of an error, or of undefined when it is done. */
  constructor(tree, onValue) {
    Object.assign(this, { tree, onValue });
    this.#form.addEventListener('submit', (event) => {
      event.preventDefault();
      busy(this.#commit());
    });
    this.#form.addEventListener('keydown', (event) => {
      if (event.key !== 'Escape') return;
      event.stopPropagation();
      this.close();
    });
    byId('editorCancel').addEventListener('click', () => this.close());
    byId('tree').addEventListener('scroll', () => this.#place());
  }

  /** `quote` gives a promise of a value in quotes. */
  async open(node, kind, quote) {
    const value = node.value ?? '';
    if (kind === 'text' && !isPlainText(value)) this.#show(node, 'quoted', await quote(bytesOfCoreText(value)), true);
    else this.#show(node, kind, value, true);
  }

  /** For a key that the message has not. */
  openNew(path, kind, field) {
    const first = { boolean: 'FALSE', names: field.names?.[0], number: '0', text: '' }[kind];
    this.#show({ path, label: path, field }, kind, field.default ?? first, false);
  }

  #show({ path, label, field }, kind, value, isThere) {
    this.path = path;
    this.#kind = kind;
    this.#control = makeControl(kind, field, value, { id: 'editorValue', 'aria-describedby': 'editorError' });
    this.#opened = isThere ? this.#control.value : undefined;
    byId('editorLabel').textContent = label;
    byId('editorField').replaceChildren(this.#control);
    byId('editorError').textContent =
      kind === 'quoted' ? 'It has bytes that can\u2019t be typed: in quotes, \\x and two digits stand for each.' : '';
    this.#form.hidden = false;
    this.#place();
    this.#control.focus();
    this.#control.select?.();
  }

  #place() {
    if (this.#form.hidden) return;
    const room = this.#pane.clientHeight - this.#form.offsetHeight;
    this.#form.style.top = `${Math.max(0, Math.min(room, this.tree.activeTop()))}px`;
  }

  async #commit() {
    const { value } = this.#control;
    if (value === this.#opened) return this.close();
    const isQuoted = this.#kind === 'quoted';
    const bytes = this.#kind === 'names' ? bytesOfCoreText(value) : bytesOf(value);
    const error = await this.onValue(bytesOfCoreText(this.path), bytes, isQuoted);
    byId('editorError').textContent = error ?? '';
    this.#control.setAttribute('aria-invalid', Boolean(error));
    if (error) this.#control.focus();
    else this.close();
    return undefined;
  }

  close() {
    if (this.#form.hidden) return;
    this.#form.hidden = true;
    this.tree.focus();
  }
}
