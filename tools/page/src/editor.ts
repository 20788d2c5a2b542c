// The editor of a value: a field, a list of names or of booleans, on the row of its pair. It shows what stands there, a
// text that can't be shown as it is in quotes with escapes; a value that was not touched stays as it is.
import type { Pair } from './messageModel.ts';
import type { TreeView } from './treeView.ts';
import type { Bytes, EditorKind, Field } from './types.ts';
import { busy, byId, element, option } from './elements.ts';
import { bytesOf, bytesOfCoreText } from './bytes.ts';
import { isPrintable } from './signs.ts';

export type Control = HTMLInputElement | HTMLSelectElement;

const hints: Record<string, string> = { number: 'a number', text: 'a text', quoted: 'a text in double quotes' };

/** Whether a value is edited as it is, or in quotes. */
export const isPlainText = (value: string) => isPrintable(value) && !value.startsWith('"');

/** The field to edit a value of a kind in. */
export function makeControl(kind: EditorKind | 'quoted', field: Field | undefined, value: string | undefined, attributes = {}): Control {
  const common = { autocomplete: 'off', spellcheck: 'false', ...attributes };
  if (kind !== 'names' && kind !== 'boolean') {
    const input = element('input', { ...common, type: 'text', placeholder: hints[kind] });
    if (kind === 'number') input.inputMode = 'decimal';
    input.value = value ?? '';
    return input;
  }
  const names = kind === 'boolean' ? ['TRUE', 'FALSE'] : [...(field?.names ?? [])];
  if (value !== undefined && !names.includes(value)) names.unshift(value);
  const select = element('select', common, ...names.map((name) => option(name, name)));
  select.value = value ?? names[0];
  return select;
}

/** What stands in the editor of a value that the message has not. */
export const firstValue = (kind: EditorKind | undefined, field: Field | undefined) =>
  kind === 'boolean' ? 'FALSE' : kind === 'names' ? field?.names?.[0] : kind === 'number' ? '0' : '';

export class Editor {
  #form = byId('editor');
  #pane = byId('treePane');
  #control: Control = element('input');
  #opened?: string; // what stood in the field first; undefined when the key is new
  #kind?: EditorKind | 'quoted';
  #path = '';

  /** onValue() gives a promise of an error, or of undefined when it is done. */
  constructor(
    private readonly tree: TreeView,
    private readonly onValue: (path: Bytes, value: Bytes, isQuoted: boolean) => Promise<string | undefined>,
  ) {
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
  async open(node: Pair, kind: EditorKind, quote: (bytes: Bytes) => Promise<string>) {
    const value = node.value ?? '';
    if (kind !== 'text' || isPlainText(value)) return this.#show(node, kind, value, true);
    const quoted = await quote(bytesOfCoreText(value));
    if (this.tree.active === node) this.#show(node, 'quoted', quoted, true); // unless people went on meanwhile
    return undefined;
  }

  /** For a key that the message has not. */
  openNew(path: string, kind: EditorKind, field: Field) {
    const first = firstValue(kind, field);
    this.#show({ path, label: path, field }, kind, field.default ?? first, false);
  }

  #show(
    { path, label, field }: { path: string; label: string; field?: Field },
    kind: EditorKind | 'quoted',
    value: string | undefined,
    isThere: boolean,
  ) {
    this.#path = path;
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
    if (this.#control instanceof HTMLInputElement) this.#control.select();
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
    const error = await this.onValue(bytesOfCoreText(this.#path), bytes, isQuoted);
    byId('editorError').textContent = error ?? '';
    this.#place();
    this.#control.setAttribute('aria-invalid', String(error !== undefined));
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
