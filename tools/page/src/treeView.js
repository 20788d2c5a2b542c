// The tree of a message: its keys with their values, kinds and defaults; values are edited where they stand.
import { byId, element } from './elements.js';
import { VirtualList } from './virtualList.js';
import { shown, shownWords } from './signs.js';
import { counted } from './words.js';

const manyNodes = 400; // from here on, deeper groups begin closed

const useWords = {
  empty: 'no value',
  unknown: 'unknown key: ignored',
  duplicate: 'second of its key: ignored',
  noKey: 'without a key: ignored',
  surplus: 'surplus: ignored',
  unread: 'not read',
};

export class TreeView {
  #list;
  #open = new Map(); // path to whether a group is open, as people set it
  rows = []; // the numbers of the pairs that are listed

  constructor({ onNode, onEdit }) {
    this.#list = new VirtualList(byId('tree'), {
      rowHeight: 32,
      rowRole: 'treeitem',
      fill: (row, index) => this.#fill(row, index),
      onActive: (index) => onNode(this.#at(index)),
      onKey: (event) => this.#key(event),
    });
    Object.assign(this, { onNode, onEdit });
    this.#list.root.addEventListener('dblclick', () => this.#editActive());
    this.#list.root.addEventListener('click', (event) => {
      const row = event.target.closest('.row');
      if (row && event.target.closest('.twisty')) this.#toggle(this.#at(row.dataset.index));
    });
  }

  get active() {
    return this.#at(this.#list.active);
  }

  #at(index) {
    return index in this.rows ? this.model.node(this.rows[index]) : undefined;
  }

  /** Shows a message; the pair with the same path stays the active one. */
  show(model) {
    const path = this.active?.path;
    this.model = model;
    this.#list.active = -1;
    this.#list.root.scrollTop = 0;
    this.#layOut();
    this.choose(this.model.find(path ?? '') ?? this.#at(Math.min(4, this.rows.length - 1)), true);
  }

  #isOpen(node) {
    return this.#open.get(node.path) ?? (this.model.count <= manyNodes || node.depth < 2);
  }

  #layOut() {
    this.rows = this.model.listed((at) => this.#isOpen(this.model.node(at)));
    this.#list.setCount(this.rows.length);
  }

  /** Makes a pair the active one, with everything around it open. */
  choose(node, isQuiet = false) {
    if (!node) return;
    for (let at = node; at.parent > 0; ) {
      at = this.model.node(at.parent);
      if (!this.#isOpen(at)) this.#open.set(at.path, true);
    }
    this.#layOut();
    this.#list.activate(this.rows.indexOf(node.at), true);
    if (!isQuiet) this.onNode(node);
  }

  /** Opens a group and goes to its first key. */
  openKeys(node) {
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

  #toggle(node, isOpen = !this.#isOpen(node)) {
    if (node?.count === undefined) return;
    this.#open.set(node.path, isOpen);
    this.#layOut();
    this.#list.activate(this.rows.indexOf(node.at), true);
  }

  #openAll() {
    for (let before = -1; before < this.rows.length; ) {
      before = this.rows.length;
      for (const at of this.rows) {
        const { count, path } = this.model.node(at);
        if (count !== undefined) this.#open.set(path, true);
      }
      this.#layOut();
    }
  }

  #editActive() {
    if (this.active) this.onEdit(this.active);
  }

  #key(event) {
    const node = this.active;
    if (!node) return false;
    if (event.key === 'ArrowRight') {
      if (node.count === undefined) return true;
      if (this.#isOpen(node)) this.choose(node.children[0]);
      else this.#toggle(node, true);
    } else if (event.key === 'ArrowLeft') {
      if (node.count !== undefined && this.#isOpen(node)) this.#toggle(node, false);
      else if (node.parent > 0) this.choose(this.model.node(node.parent));
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

  #fill(row, index) {
    const node = this.#at(index);
    const isGroup = node.count !== undefined;
    row.setAttribute('aria-level', node.depth);
    if (isGroup) row.setAttribute('aria-expanded', this.#isOpen(node));
    else row.removeAttribute('aria-expanded');
    const { problems } = node;
    const worst = problems[0]?.severity;
    row.className = `row treeRow use-${node.use}${worst ? ` has-${worst}` : ''}`;
    row.style.setProperty('--depth', node.depth);
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

function valueClass(node) {
  if (node.count !== undefined) return 'treeValue group';
  const isDefault = node.field?.default !== undefined && node.field.default === node.value;
  return `treeValue holds-${node.field?.holds ?? 'unknown'}${isDefault ? ' default' : ''}`;
}

function valueWords(node) {
  if (node.count !== undefined) return counted(node.count, node.firstChild.element ? 'element' : 'key');
  return node.value ?? '';
}
