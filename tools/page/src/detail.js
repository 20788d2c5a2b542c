// One message: its tree, its text in every form, its problems; changing, sealing, copying and saving it.
import { announce, byId, element, option } from './elements.js';
import { isSame, isUtf8, shownText } from './bytes.js';
import { isNumeric } from './catalogue.js';
import { Editor } from './editor.js';
import { MessageModel } from './messageModel.js';
import { showProblems } from './problemList.js';
import { TextView } from './textView.js';
import { TreeView } from './treeView.js';
import { counted, timeInWords } from './words.js';

const extensions = { message: 'txt', show: 'show.txt', json: 'json', flat: 'flat.txt' };

export class Detail {
  #form = 'message';

  /** onEdit(row, bytes or undefined): the message of a row was changed, or is again what it was. */
  constructor(core, catalogue, onEdit) {
    Object.assign(this, { core, catalogue, onEdit });
    this.tree = new TreeView({ onNode: (node) => this.#lightNode(node), onEdit: (node) => this.#edit(node) });
    this.text = new TextView((at) => this.tree.choose(this.model.nodeAt(at)));
    this.editor = new Editor(this.tree, (path, value) => this.#set(path, value));
    byId('formChoice').addEventListener('change', (event) => this.#showForm(event.target.value));
    byId('copyText').addEventListener('click', () => this.#copy());
    byId('saveText').addEventListener('click', () => this.#save());
    byId('sealMessage').addEventListener('click', () => this.#seal());
    byId('undoEdits').addEventListener('click', () => this.#replace(this.original));
    byId('editValue').addEventListener('click', () => this.#edit(this.tree.active));
    byId('addKeyForm').addEventListener('submit', (event) => {
      event.preventDefault();
      this.#addKey();
    });
  }

  /** Shows the message of a log's row; `original` is what was read. */
  show(log, row, original) {
    Object.assign(this, { log, row, original });
    this.#take(log.edits.get(row) ?? original);
  }

  get bytes() {
    return this.model.bytes;
  }

  #take(bytes) {
    this.editor.close();
    this.model = new MessageModel(this.core, bytes);
    const { model } = this;
    this.#showTitle();
    this.text.show(model);
    this.tree.show(model);
    this.#lightNode(this.tree.active);
    showProblems(model, (problem) => this.#goTo(problem));
    this.#showAddable();
    this.#showForm(this.#form);
    byId('undoEdits').hidden = !this.log.edits.has(this.row);
    const { error, bytes: sealed } = this.core.seal(bytes);
    byId('sealMessage').hidden = error !== undefined || isSame(sealed, bytes);
  }

  #showTitle() {
    const { view } = this.model;
    const { columns } = this.log;
    const id = view.id ?? -1;
    const known = this.catalogue.find(id);
    byId('messageName').textContent = view.name ?? this.catalogue.name(id);
    const time = timeInWords(columns.microseconds[this.row], columns.hasDate[this.row] === 1);
    const facts = [known?.constant, time, `line ${columns.line[this.row]}`, counted(this.bytes.length, 'byte')];
    byId('messageFacts').textContent = facts.filter(Boolean).join(' · ');
    byId('messageAbout').textContent = known?.about ?? '';
  }

  #lightNode(node) {
    if (!node) return;
    this.text.light(node.whole.start < node.whole.end ? node.whole : undefined);
    const { field } = node;
    const isEditable = this.model.editorOf(node) !== undefined;
    byId('editValue').disabled = !isEditable;
    byId('plotKey').disabled = !this.#isNumber(node);
    const facts = [
      field?.words ?? 'unknown key',
      field?.member ? `member ${field.member}${field.type ? ` (${field.type})` : ''}` : undefined,
      field?.default !== undefined ? `default ${field.default}` : undefined,
      field?.names ? `one of ${field.names.join(', ')}` : undefined,
    ];
    byId('pairPath').textContent = node.path;
    byId('pairFacts').textContent = facts.filter(Boolean).join(' · ');
  }

  #isNumber(node) {
    return node.parent !== undefined && node.count === undefined && isNumeric(node.field?.kind);
  }

  /** The active pair's path when it is a number that can be plotted. */
  get numberPath() {
    const node = this.tree.active;
    return node && this.#isNumber(node) ? node.path : undefined;
  }

  #goTo(problem) {
    this.tree.choose(problem.node);
    if (problem.start < problem.end) this.text.light(problem);
  }

  #edit(node) {
    if (node) this.editor.open(this.model, node);
  }

  // The error, or nothing when it is done.
  #set(path, value) {
    const { bytes, error } = this.core.set(this.bytes, path, value);
    if (error) return error;
    this.#replace(bytes);
    announce('Changed, and sealed again.');
    return undefined;
  }

  #replace(bytes) {
    const isOriginal = isSame(bytes, this.original);
    this.onEdit(this.row, isOriginal ? undefined : bytes);
    this.#take(bytes);
  }

  #seal() {
    const { bytes, error } = this.core.seal(this.bytes);
    if (error) return announce(error);
    this.#replace(bytes);
    announce('Sealed.');
    return this.tree.focus();
  }

  #showAddable() {
    const { addable } = this.model.view;
    byId('addKeyForm').hidden = addable.length === 0;
    byId('addKey').replaceChildren(...addable.map(({ path }, at) => option(at, path)));
  }

  #addKey() {
    const { path, field: number } = this.model.view.addable[byId('addKey').value];
    const field = this.model.view.fields[number];
    const kind = this.model.editorOf({ path, field, use: 'assigned', parent: 0, value: '' });
    this.editor.openNew(path, path, kind, field);
  }

  #formBytes() {
    return this.#form === 'message' ? this.bytes : this.core.form(this.bytes, this.#form);
  }

  #showForm(form) {
    this.#form = form;
    byId('messageText').hidden = form !== 'message';
    const other = byId('formText');
    other.hidden = form === 'message';
    let text = form === 'message' ? '' : shownText(this.#formBytes());
    if (form === 'json') text = JSON.stringify(JSON.parse(text), null, 2);
    other.textContent = text;
  }

  async #copy() {
    const bytes = this.#formBytes();
    if (!isUtf8(bytes)) return announce('It has bytes that are no text: save it instead.');
    const text = shownText(bytes);
    try {
      await navigator.clipboard.writeText(text);
    } catch {
      copyAsSelection(text);
    }
    return announce('Copied.');
  }

  #save() {
    const name = `${this.model.view.name ?? 'message'}-${this.model.view.seq ?? this.row}.${extensions[this.#form]}`;
    saveBlob(new Blob([this.#formBytes()]), name);
  }
}

export function saveBlob(blob, name) {
  const url = URL.createObjectURL(blob);
  element('a', { href: url, download: name }).click();
  setTimeout(() => URL.revokeObjectURL(url), 10_000);
  announce(`Saved as ${name}.`);
}

// Where a page from disk has no clipboard.
function copyAsSelection(text) {
  const area = element('textarea', { class: 'visuallyHidden' });
  area.value = text;
  const focused = document.activeElement;
  document.body.append(area);
  area.select();
  document.execCommand('copy');
  area.remove();
  focused?.focus();
}
