// The editor of a value: a field, a list of names or of booleans, on the row of its pair.
import { byId, element, option } from './elements.js';
import { bytesOf, bytesOfCoreText, shownText } from './bytes.js';

const hints = {
  number: 'a number',
  text: 'a text',
  group: 'a group in braces, as in a message: {1,2,}',
};

export class Editor {
  #form = byId('editor');
  #pane = byId('treePane');

  /** onValue(path bytes, value bytes) gives an error, or undefined when it is done. */
  constructor(tree, onValue) {
    Object.assign(this, { tree, onValue });
    this.#form.addEventListener('submit', (event) => {
      event.preventDefault();
      this.#commit();
    });
    this.#form.addEventListener('keydown', (event) => {
      if (event.key !== 'Escape') return;
      event.stopPropagation();
      this.close();
    });
    byId('editorCancel').addEventListener('click', () => this.close());
    byId('tree').addEventListener('scroll', () => this.#place());
  }

  open(model, node) {
    const kind = model.editorOf(node);
    if (!kind) return;
    const raw = model.rawValue(node);
    this.#show(node.path, node.label, kind, node.field, raw ? shownText(raw) : node.value);
  }

  /** For a key that the message has not. */
  openNew(path, label, kind, field) {
    const first = { group: '{}', boolean: 'FALSE', names: field.names?.[0], number: '0', text: '' }[kind];
    this.#show(path, label, kind, field, field.default ?? first);
  }

  #show(path, label, kind, field, value) {
    this.path = path;
    this.#control = this.#makeControl(kind, field, value);
    this.#control.id = 'editorValue';
    byId('editorLabel').textContent = label;
    byId('editorField').replaceChildren(this.#control);
    byId('editorError').textContent = '';
    this.#form.hidden = false;
    this.#place();
    this.#control.focus();
    this.#control.select?.();
  }

  #control;

  #makeControl(kind, field, value) {
    const common = { 'aria-describedby': 'editorError', autocomplete: 'off', spellcheck: 'false' };
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

  #place() {
    if (this.#form.hidden) return;
    const room = this.#pane.clientHeight - this.#form.offsetHeight;
    this.#form.style.top = `${Math.max(0, Math.min(room, this.tree.activeTop()))}px`;
  }

  #commit() {
    const error = this.onValue(bytesOfCoreText(this.path), bytesOf(this.#control.value));
    byId('editorError').textContent = error ?? '';
    this.#control.setAttribute('aria-invalid', Boolean(error));
    if (error) this.#control.focus();
    else this.close();
  }

  close() {
    if (this.#form.hidden) return;
    this.#form.hidden = true;
    this.tree.focus();
  }
}
