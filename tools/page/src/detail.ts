// One message: its tree, its text in every form, its problems; changing, sealing, copying and saving it.
import type { Catalogue } from './catalogue.ts';
import type { AddableKey } from 'vekparams2ascii/inspector';
import type { Log } from './log.ts';
import type { CoreCalls } from './reader.ts';
import type { Bytes, Form, Made, Problem } from './types.ts';
import { announce, busy, byId, nextTask, option } from './elements.ts';
import { bytesOf, coreText, isSame, isUtf8, shownText } from './bytes.ts';
import { isNumeric } from './catalogue.ts';
import { Editor } from './editor.ts';
import { ListEditor } from './listEditor.ts';
import { MessageModel, type Pair } from './messageModel.ts';
import { RawEditor } from './rawEditor.ts';
import { ProblemList } from './problemList.ts';
import { copyText, saveBlob } from './saving.ts';
import { show, showLines, shownWords } from './signs.ts';
import { TextView } from './textView.ts';
import { TreeView } from './treeView.ts';
import { counted, timeInWords } from './words.ts';

const mostLines = 500; // in front of a message that are shown

const extensions: Record<Form, string> = { message: 'txt', show: 'show.txt', json: 'json', flat: 'flat.txt' };

export class Detail {
  log!: Log;
  row = 0;
  model!: MessageModel;
  readonly tree: TreeView;
  readonly text: TextView;
  readonly problems: ProblemList;
  readonly editor: Editor;
  readonly listEditor: ListEditor;
  readonly rawEditor: RawEditor;
  #form: Form = 'message';
  #formBytes: Bytes = new Uint8Array(); // of the form that is shown
  #round = 0;
  #addable?: { model: MessageModel; group: Pair; keys: AddableKey[] }; // the keys that a group has not

  constructor(
    private readonly core: CoreCalls,
    private readonly catalogue: Catalogue,
    findingNames: string[],
    private readonly on: {
      /** A message is to be changed; the promise is done when the page shows it. */
      edit: (row: number, bytes: Bytes) => Promise<void>;
      /** All that is certain is to be done about a finding, in the whole log. */
      mendKind: (finding: number) => Promise<void>;
      /** A value is being changed: the message is to stay. */
      editing: () => void;
    },
  ) {
    this.tree = new TreeView({ node: (node) => this.#lightNode(node), edit: (node) => this.#edit(node) });
    this.text = new TextView((at) => this.#goToByte(at));
    this.problems = new ProblemList({
      problem: (problem) => this.#goTo(problem),
      mend: (problem) => busy(this.#mend(problem)),
      mendKind: (code) => busy(on.mendKind(findingNames.indexOf(code))),
      count: (code) => this.log.findings.get(findingNames.indexOf(code)) ?? 0,
    });
    this.editor = new Editor(this.tree, (...value) => this.#take(this.core.set(this.bytes, ...value)));
    this.listEditor = new ListEditor((...list) => this.#take(this.#setList(...list)));
    byId('formChoice').addEventListener('change', (event) => busy(this.#showForm((event.target as HTMLSelectElement).value as Form)));
    this.rawEditor = new RawEditor(core, (bytes) => this.#takeText(bytes));
    byId('editText').addEventListener('click', () => {
      on.editing();
      if (!this.rawEditor.open(this.bytes)) announce('It is too long to be typed: change its values.', true);
    });
    byId('copyText').addEventListener('click', () => this.#copy());
    byId('saveText').addEventListener('click', () => this.#save());
    byId('sealMessage').addEventListener('click', () => busy(this.#seal()));
    byId('editValue').addEventListener('click', () => this.#edit(this.tree.active));
    byId('addKeyForm').addEventListener('submit', (event) => {
      event.preventDefault();
      this.#addKey();
    });
  }

  /** Shows the message of a log's row, part by part: of a long one each takes a while. */
  async show(log: Log, row: number, bytes: Bytes) {
    const round = ++this.#round;
    const model = await MessageModel.of(this.core, bytes);
    await nextTask();
    if (round !== this.#round) return;
    this.log = log;
    this.row = row;
    this.model = model;
    this.editor.close();
    byId('messagePanelBody').hidden = false;
    this.#showTitle();
    this.tree.show(model);
    const remedies = model.problemCount > 0 ? await this.core.remedies(bytes) : [];
    for (const part of [() => this.text.show(model), () => this.#lightNode(this.tree.active), () => this.problems.show(model, remedies)]) {
      await nextTask();
      if (round !== this.#round) return;
      part();
    }
    const [{ error, bytes: sealed }] = await Promise.all([this.core.seal(bytes), this.#showForm(this.#form)]);
    const isOpen = error !== undefined || !isSame(sealed, bytes);
    const changes = error === undefined && isOpen ? await this.core.sealChanges(bytes, sealed) : '';
    if (round !== this.#round) return;
    byId('sealMessage').hidden = !isOpen;
    show(byId('sealChanges'), changes);
  }

  get bytes() {
    return this.model.bytes;
  }

  #showTitle() {
    const { columns } = this.log;
    const { id, name } = this.model;
    const known = this.catalogue.find(id);
    byId('messageName').textContent = name ?? this.catalogue.name(id);
    const time = timeInWords(columns.microseconds[this.row], columns.hasDate[this.row] === 1);
    const facts = [known?.constant, time, this.log.placeOf(this.row), counted(this.bytes.length, 'byte')];
    show(byId('messageFacts'), facts.filter(Boolean).join(' · '));
    byId('messageAbout').textContent = known?.about ?? '';
    void this.#showLines(this.log, this.row);
  }

  // What stands in the log in front of the message, folded.
  async #showLines(log: Log, row: number) {
    const lines = await log.linesInFrontOf(row);
    if (this.log !== log || this.row !== row) return;
    byId('linesBefore').hidden = lines.length === 0;
    byId('linesCount').textContent = `${counted(lines.length, 'line')} in front of it`;
    showLines(byId('linesText'), lines.slice(-mostLines).join('\n'));
  }

  #lightNode(node: Pair | undefined) {
    if (!node) return;
    this.text.light(node.whole.start < node.whole.end ? node.whole : undefined);
    const { field } = node;
    byId('editValue').disabled = this.model.editorOf(node) === undefined;
    byId('plotKey').disabled = !this.#isNumber(node);
    const facts = [
      field?.words ?? 'unknown key',
      field?.member ? `member ${field.member}${field.type ? ` (${field.type})` : ''}` : undefined,
      field?.default !== undefined ? `default ${field.default}` : undefined,
      field?.names ? `one of ${field.names.join(', ')}` : undefined,
    ];
    show(byId('pairPath'), node.path);
    busy(this.#showAddable(node));
    show(byId('pairFacts'), facts.filter(Boolean).join(' · '));
  }

  #isNumber(node: Pair) {
    return node.parent !== undefined && node.count === undefined && isNumeric(node.field?.holds);
  }

  /** The active pair's path when it is a number that can be plotted. */
  get numberPath() {
    const node = this.tree.active;
    return node && this.#isNumber(node) ? node.path : undefined;
  }

  #goToByte(at: number) {
    if (this.text.model !== this.model) return;
    const node = this.model.nodeAt(at);
    if (node.at !== 0) this.tree.choose(node);
  }

  #goTo(problem: Problem) {
    if (this.problems.model !== this.model) return;
    this.tree.choose(this.model.node(problem.node));
    if (problem.start < problem.end) this.text.light(problem);
  }

  #edit(node: Pair | undefined) {
    const kind = node && this.model.editorOf(node);
    this.on.editing();
    if (node && kind === 'list') this.listEditor.open(this.model, node);
    else if (node && kind) void busy(this.editor.open(node, kind, (bytes) => this.core.quote(bytes)));
    else if (node?.count !== undefined) this.tree.openKeys(node);
  }

  // A list that the message has not is made element by element.
  async #setList(path: Bytes, items: (number | Bytes)[], isNew: boolean): Promise<Made> {
    if (!isNew) return this.core.setList(this.bytes, path, items);
    let made: Made = { bytes: this.bytes };
    for (let at = 0; at < items.length && made.bytes; ++at)
      made = await this.core.set(made.bytes, bytesOf(`${coreText(path)}[${at}]`), items[at] as Bytes);
    return made;
  }

  // Takes what a change gives: the error, or nothing when it is done.
  async #take(change: Promise<Made>) {
    const { row } = this;
    const { bytes, error } = await change;
    if (error !== undefined) return error;
    await this.on.edit(row, bytes);
    announce('Changed, and sealed again.');
    return undefined;
  }

  async #takeText(bytes: Bytes) {
    await this.on.edit(this.row, bytes);
    announce('Changed.');
  }

  async #mend(problem: number) {
    await this.on.edit(this.row, await this.core.mend(this.bytes, problem));
    announce('Mended.');
  }

  async #seal() {
    const error = await this.#take(this.core.seal(this.bytes));
    announce(error === undefined ? 'Sealed.' : `Not sealed: ${shownWords(error)}`, error !== undefined);
    this.tree.focus();
  }

  // Of the group that the active pair is in.
  async #showAddable(node: Pair) {
    const { model } = this;
    const group = model.groupOf(node);
    if (this.#addable?.model === model && this.#addable.group === group) return;
    this.#addable = { model, group, keys: [] };
    const keys = await this.core.addable(model.bytes, group.at);
    if (this.#addable.model !== model || this.#addable.group !== group) return;
    this.#addable.keys = keys;
    byId('addKeyForm').hidden = keys.length === 0;
    byId('addKey').replaceChildren(...keys.map(({ path }, at) => option(at, shownWords(path))));
  }

  #addKey() {
    const { path, field } = this.#addable?.keys[Number(byId('addKey').value)] ?? {};
    if (path === undefined || !field) return;
    this.on.editing();
    const kind = this.model.editorOf({ path, field, use: 'assigned', parent: 0, value: '' });
    if (kind === 'list') this.listEditor.open(this.model, { path, field });
    else if (kind) this.editor.openNew(path, kind, field);
    else announce(`${path} is a group: add one of its keys, as ${path}.…, once there is one.`);
  }

  async #showForm(form: Form) {
    this.#form = form;
    const { bytes } = this;
    const formBytes = form === 'message' ? bytes : await this.core.form(bytes, form);
    if (this.#form !== form || this.bytes !== bytes) return; // another was chosen meanwhile
    this.#formBytes = formBytes;
    byId('messageText').hidden = form !== 'message';
    const other = byId('formText');
    other.hidden = form === 'message';
    let text = form === 'message' ? '' : coreText(formBytes);
    if (form === 'json') text = JSON.stringify(JSON.parse(text), null, 2);
    showLines(other, text);
    byId('textSide').dataset.form = form;
  }

  #copy() {
    const bytes = this.#formBytes;
    if (isUtf8(bytes)) return copyText(shownText(bytes));
    return announce('Not copied: it has bytes that are no text. Save it instead.', true);
  }

  #save() {
    const name = `${this.model.name ?? 'message'}-${this.model.sequence ?? this.row}.${extensions[this.#form]}`;
    saveBlob(new Blob([this.#formBytes]), name);
  }
}
