// One message as the page shows it: its bytes and what the worker made of them; pairs and problems are made when they are
// asked for.
import { Table } from './table.js';
import { firstWhere } from './search.js';
import { innermostAt } from './viewing.js';
import { labelOf } from './words.js';

class Pair {
  #model;
  #children;

  constructor(model, at, { start, end, wholeStart, wholeEnd, hasPlace, element, field, ...more }) {
    this.#model = model;
    Object.assign(this, more, { at, field: model.fields[field], element: element === 1, whole: { start: wholeStart, end: wholeEnd } });
    if (hasPlace) this.place = { start, end };
  }

  get children() {
    return (this.#children ??= Array.from({ length: this.count ?? 0 }, (_one, at) => this.#model.node(this.first + at)));
  }

  get firstChild() {
    return this.#model.node(this.first);
  }

  get problems() {
    return this.#model.problemsOf(this.at);
  }
}

export class MessageModel {
  #view;
  #nodes;
  #problems;
  #made = new Map(); // pairs by their numbers
  #tree;

  static async of(core, bytes) {
    return new MessageModel(bytes, await core.view(bytes));
  }

  constructor(bytes, view) {
    this.bytes = bytes;
    this.#view = view;
    this.#nodes = new Table(view.nodes);
    this.#problems = new Table(view.problems);
    this.#tree = {
      children: (at) => ({ first: this.#nodes.get('first', at), count: this.#nodes.get('count', at) ?? 0 }),
      whole: (at) => ({ start: this.#nodes.get('wholeStart', at), end: this.#nodes.get('wholeEnd', at) }),
    };
  }

  get id() {
    return this.#view.id ?? -1;
  }
  get name() {
    return this.#view.name;
  }
  get sequence() {
    return this.#view.seq;
  }
  get fields() {
    return this.#view.fields;
  }
  /** Of each byte, as textView.js colours it. */
  get kinds() {
    return this.#view.kinds;
  }
  get severities() {
    return this.#view.severities;
  }
  /** How many pairs there are, with the body, which is number 0. */
  get count() {
    return this.#nodes.count;
  }
  get problemCount() {
    return this.#problems.count;
  }

  /** A pair by its number; the header's have numbers below 0. */
  node(at) {
    if (!this.#made.has(at)) this.#made.set(at, at < 0 ? this.#headerNode(at) : new Pair(this, at, this.#nodes.row(at)));
    return this.#made.get(at);
  }

  #headerNode(at) {
    const { path, value, place } = this.#view.header.at(at);
    return Object.assign(new Pair(this, at, { path, label: labelOf(path, ''), depth: 1, wholeStart: place.start, wholeEnd: place.end }), {
      value: value === undefined ? '' : String(value),
      use: path === '@length' ? 'derived' : 'assigned',
      field: { holds: 'integer', words: 'header number' },
    });
  }

  problem(at) {
    return this.#problems.row(at);
  }

  /** The problems of a pair, the innermost one around their places: a few, the worst in front. */
  problemsOf(node, most = 5) {
    const { byNode } = this.#view;
    const nodeOf = (at) => this.#problems.get('node', byNode[at]);
    const first = firstWhere(byNode.length, (at) => nodeOf(at) >= node);
    const found = [];
    for (let at = first; at < byNode.length && nodeOf(at) === node && found.length < most; ++at) found.push(this.problem(byNode[at]));
    return found;
  }

  /** The first few problems around a byte. */
  problemsAt(byte, most = 5) {
    const found = [];
    for (let at = 0; at < this.problemCount && found.length < most; ++at)
      if (this.#problems.get('start', at) <= byte && byte < this.#problems.get('end', at)) found.push(this.problem(at));
    return found;
  }

  /** The numbers of the pairs to list, in order: the header's, and of the others those whose groups are open. */
  listed(isOpen) {
    const numbers = this.#view.header.map((_one, at, { length }) => at - length);
    const add = (group) => {
      const { first, count } = this.#tree.children(group);
      for (let at = first; at < first + count; ++at) {
        numbers.push(at);
        if (this.#nodes.get('count', at) !== undefined && isOpen(at)) add(at);
      }
    };
    add(0);
    return numbers;
  }

  /** The innermost pair that holds a stretch of bytes; header numbers too; the body when none does. */
  nodeAt(start, end = start) {
    return this.node(innermostAt(this.#tree, this.#view.header.map(({ place }) => place), start, end));
  }

  /** How people edit the value here: 'names', 'boolean', 'text', 'number' or 'list'; undefined when they can't. */
  editorOf(node) {
    const isPair = node.use === 'assigned' && node.parent !== undefined;
    if (!isPair && !(node.path.startsWith('@') && node.use === 'assigned')) return undefined;
    const { holds, list } = node.field ?? {};
    if (list && !node.element) return 'list';
    if (node.count !== undefined) return undefined; // its keys are edited
    return { name: 'names', boolean: 'boolean', text: 'text', record: undefined, integer: 'number', real: 'number' }[holds];
  }

  find(path) {
    const header = this.#view.header.findIndex((one) => one.path === path);
    if (header >= 0) return this.node(header - this.#view.header.length);
    const at = path === '' ? -1 : this.#nodes.find('path', path);
    return at > 0 ? this.node(at) : undefined;
  }

  /** The group whose keys stand beside this pair, or in it when it is a record. */
  groupOf(node) {
    if (node.field?.holds === 'record' && (node.element || !node.field.list)) return node;
    return node.parent === undefined ? this.node(0) : this.node(node.parent);
  }
}
