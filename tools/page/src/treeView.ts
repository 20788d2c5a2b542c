// The tree of a message: its keys with their values, kinds and defaults; values are edited where they stand.
import type { MessageModel, Pair } from './messageModel.ts';
import type { Use } from './types.ts';
import { byId, element } from './elements.ts';
import { VirtualList } from './virtualList.ts';
import { shown, shownWords } from './signs.ts';
import { counted } from './words.ts';

const manyNodes = 400; // from here on, deeper groups begin closed

const useWords: Partial<Record<Use, string>> = {
  empty: 'no value',
  unknown: 'unknown key: ignored',
  duplicate: 'second of its key: ignored',
  noKey: 'without a key: ignored',
  surplus: 'surplus: ignored',
  unread: 'not read',
};

export class TreeView {
  #list: VirtualList;
  #open = new Map<string, boolean>(); // path to whether a group is open, as people set it
  model!: MessageModel;
  rows: number[] = []; // the numbers of the pairs that are listed

  constructor(private readonly on: { node: (node: Pair | undefined) => void; edit: (node: Pair) => void }) {
    this.#list = new VirtualList(byId('tree'), {
      rowHeight: 32,
      rowRole: 'treeitem',
      fill: (row, index) => this.#fill(row, index),
      onActive: (index) => on.node(this.#at(index)),
      onKey: (event) => this.#key(event),
      onDouble: () => this.#editActive(),
      meant: (index) => this.#at(index),
    });
    this.#list.root.addEventListener('click', (event) => {
      const target = event.target as Element;
      const row = target.closest<HTMLElement>('.row');
      if (row && target.closest('.twisty')) this.#toggle(this.#at(Number(row.dataset.index)));
    });
  }

  get active() {
    return this.#at(this.#list.active);
  }

  #at(index: number): Pair | undefined {
    return index in this.rows ? this.model.node(this.rows[index]) : undefined;
  }

  /** Shows a message; the pair with the same path stays the active one. */
  show(model: MessageModel) {
    const path = this.active?.path;
    this.model = model;
    this.#list.active = -1;
    this.#list.root.scrollTop = 0;
    this.#layOut();
    this.choose(this.model.find(path ?? '') ?? this.#at(Math.min(4, this.rows.length - 1)), true);
  }

  #isOpen(node: Pair) {
    return this.#open.get(node.path) ?? (this.model.count <= manyNodes || node.depth < 2);
  }

  #layOut() {
    this.rows = this.model.listed((at) => this.#isOpen(this.model.node(at)));
    this.#list.setCount(this.rows.length);
  }

  /** Makes a pair the active one, with everything around it open. */
  choose(node: Pair | undefined, isQuiet = false) {
    if (!node) return;
    const closed: string[] = [];
    for (let at = node; at.parent;) {
      at = this.model.node(at.parent);
      if (!this.#isOpen(at)) closed.push(at.path);
    }
    for (const path of closed) this.#open.set(path, true);
    if (closed.length > 0) this.#layOut();
    this.#list.activate(this.rows.indexOf(node.at), true);
    if (!isQuiet) this.on.node(node);
  }

  /** Opens a group and goes to its first key. */
  openKeys(node: Pair) {
    this.#toggle(node, true);
    this.choose(node.children[0]);
  }

  focus() {
    this.#list.focus();
  }

  /** Where the active row stands in the pane, for the editor. */
  activeTop() {
    return this.#list.root.offsetTop + this.#list.topOf(this.#list.active);
  }

  #toggle(node: Pair | undefined, isOpen = node && !this.#isOpen(node)) {
    if (node?.count === undefined || isOpen === undefined) return;
    this.#open.set(node.path, isOpen);
    this.#layOut();
    this.#list.activate(this.rows.indexOf(node.at), true);
  }

  #openAll() {
    for (let before = -1; before < this.rows.length;) {
      before = this.rows.length;
      for (const at of this.rows) {
        const { count, path } = this.model.node(at);
        if (count !== undefined) this.#open.set(path, true);
      }
      this.#layOut();
    }
  }

  #editActive() {
    if (this.active) this.on.edit(this.active);
  }

  #key(event: KeyboardEvent) {
    const node = this.active;
    if (!node) return false;
    if (event.key === 'ArrowRight') {
      if (node.count === undefined) return true;
      if (this.#isOpen(node)) this.choose(node.children[0]);
      else this.#toggle(node, true);
    } else if (event.key === 'ArrowLeft') {
      if (node.count !== undefined && this.#isOpen(node)) this.#toggle(node, false);
      else if (node.parent) this.choose(this.model.node(node.parent));
    } else if (event.key === '*') {
      this.#openAll();
      this.choose(node);
    } else if (event.key === 'Enter' || event.key === 'F2') {
      this.#editActive();
    } else {
      return false;
    }
    return true;
  }

  #fill(row: HTMLElement, index: number) {
    const node = this.#at(index);
    if (!node) return;
    const isGroup = node.count !== undefined;
    row.setAttribute('aria-level', String(node.depth));
    if (isGroup) row.setAttribute('aria-expanded', String(this.#isOpen(node)));
    else row.removeAttribute('aria-expanded');
    const { problems } = node;
    const worst = problems[0]?.severity;
    row.className = `row treeRow use-${node.use}${worst ? ` has-${worst}` : ''}`;
    row.style.setProperty('--depth', String(node.depth));
    row.dataset.path = node.path;
    row.replaceChildren(
      element('span', { class: isGroup ? 'twisty' : 'twisty empty', 'aria-hidden': 'true' }, isGroup ? '▸' : ''),
      element('span', { class: 'treeKey' }, ...shown(node.label)),
      element('span', { class: valueClass(node) }, ...shown(valueWords(node))),
      element('span', { class: 'treeKind' }, useWords[node.use] ?? node.field?.words ?? 'unknown'),
    );
    const words = problems.map(({ message }) => shownWords(message)).join('; ');
    row.title = words;
    if (words) row.append(element('span', { class: 'visuallyHidden' }, `, ${worst}: ${words}`));
  }
}

function valueClass(node: Pair) {
  if (node.count !== undefined) return 'treeValue group';
  const isDefault = node.field?.default !== undefined && node.field.default === node.value;
  return `treeValue holds-${node.field?.holds ?? 'unknown'}${isDefault ? ' default' : ''}`;
}

function valueWords(node: Pair) {
  if (node.count !== undefined) return counted(node.count, node.firstChild.element ? 'element' : 'key');
  return node.value ?? '';
}
