// One message as the page shows it: its bytes and what the worker made of them; pairs and problems are made when they are
// asked for.
import type { CoreCalls } from './reader.ts';
import { Table } from './table.ts';
import { firstWhere } from './search.ts';
import type { Bytes, EditorKind, Field, Place, Problem, Use } from './types.ts';
import { innermostAt, type View } from './viewing.ts';
import { labelOf } from './words.ts';

type PairRow = Partial<
  Record<'path' | 'label' | 'use' | 'value', string> &
    Record<'parent' | 'field' | 'depth' | 'element' | 'count' | 'first' | 'hasPlace' | 'start' | 'end', number>
> &
  Record<'wholeStart' | 'wholeEnd', number>;

/** A pair of the message, or a number of its header. */
export class Pair {
  readonly path!: string;
  readonly label!: string;
  readonly use!: Use;
  readonly depth!: number;
  readonly parent?: number;
  readonly count?: number; // of its children
  readonly first?: number;
  readonly value?: string;
  readonly field?: Field;
  readonly element: boolean;
  readonly whole: Place;
  readonly place?: Place;
  #model: MessageModel;
  #children?: Pair[];

  constructor(
    model: MessageModel,
    readonly at: number,
    { start = 0, end = 0, wholeStart, wholeEnd, hasPlace, element, field, ...more }: PairRow,
  ) {
    this.#model = model;
    Object.assign(this, more, { field: model.fields[field ?? -1] });
    this.element = element === 1;
    this.whole = { start: wholeStart, end: wholeEnd };
    if (hasPlace) this.place = { start, end };
  }

  get children() {
    return (this.#children ??= Array.from({ length: this.count ?? 0 }, (_one, at) => this.#model.node(this.first! + at)));
  }

  get firstChild() {
    return this.#model.node(this.first!);
  }

  get problems() {
    return this.#model.problemsOf(this.at);
  }
}

const editorKinds: Partial<Record<string, EditorKind>> = {
  name: 'names',
  boolean: 'boolean',
  text: 'text',
  integer: 'number',
  real: 'number',
};

/** What of a pair says how it is edited; a key that the message has not is as one. */
export type Editable = Pick<Pair, 'path' | 'use' | 'field' | 'value'> & Partial<Pick<Pair, 'parent' | 'element' | 'count'>>;

export class MessageModel {
  #view: View;
  #nodes: Table;
  #problems: Table;
  #made = new Map<number, Pair>(); // pairs by their numbers
  #tree: Parameters<typeof innermostAt>[0];

  static async of(core: CoreCalls, bytes: Bytes) {
    return new MessageModel(bytes, await core.shown(bytes));
  }

  constructor(
    readonly bytes: Bytes,
    view: View,
  ) {
    this.#view = view;
    this.#nodes = new Table(view.nodes);
    this.#problems = new Table(view.problems);
    this.#tree = {
      children: (at) => ({ first: this.#number('first', at), count: this.#number('count', at) ?? 0 }),
      whole: (at) => ({ start: this.#number('wholeStart', at) ?? 0, end: this.#number('wholeEnd', at) ?? 0 }),
    };
  }

  #number(column: string, at: number) {
    return this.#nodes.get(column, at) as number | undefined;
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
  /** Of each byte, as textView.ts colours it. */
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
  node(at: number): Pair {
    let made = this.#made.get(at);
    if (!made) this.#made.set(at, (made = at < 0 ? this.#headerNode(at) : new Pair(this, at, this.#nodes.row(at) as PairRow)));
    return made;
  }

  #headerNode(at: number): Pair {
    const { path, value, place } = this.#view.header.at(at)!;
    return Object.assign(new Pair(this, at, { path, label: labelOf(path, ''), depth: 1, wholeStart: place.start, wholeEnd: place.end }), {
      value: value === undefined ? '' : String(value),
      use: path === '@length' ? 'derived' : 'assigned',
      field: { holds: 'integer', words: 'header number' },
    });
  }

  problem(at: number): Problem {
    return this.#problems.row(at) as unknown as Problem;
  }

  /** The problems of a pair, the innermost one around their places: a few, the worst in front. */
  problemsOf(node: number, most = 5) {
    const { byNode } = this.#view;
    const nodeOf = (at: number) => this.#problems.get('node', byNode[at]) as number;
    const first = firstWhere(byNode.length, (at) => nodeOf(at) >= node);
    const found: Problem[] = [];
    for (let at = first; at < byNode.length && nodeOf(at) === node && found.length < most; ++at) found.push(this.problem(byNode[at]));
    return found;
  }

  /** The first few problems around a byte. */
  problemsAt(byte: number, most = 5) {
    const found: Problem[] = [];
    for (let at = 0; at < this.problemCount && found.length < most; ++at)
      if ((this.#problems.get('start', at) as number) <= byte && byte < (this.#problems.get('end', at) as number))
        found.push(this.problem(at));
    return found;
  }

  /** The numbers of the pairs to list, in order: the header's, and of the others those whose groups are open. */
  listed(isOpen: (at: number) => boolean) {
    const numbers = this.#view.header.map((_one, at, { length }) => at - length);
    const add = (group: number) => {
      const { first, count } = this.#tree.children(group);
      if (first === undefined) return;
      for (let at = first; at < first + count; ++at) {
        numbers.push(at);
        if (this.#nodes.get('count', at) !== undefined && isOpen(at)) add(at);
      }
    };
    add(0);
    return numbers;
  }

  /** The innermost pair that holds a stretch of bytes; header numbers too; the body when none does. */
  nodeAt(start: number, end = start) {
    return this.node(
      innermostAt(
        this.#tree,
        this.#view.header.map(({ place }) => place),
        start,
        end,
      ),
    );
  }

  /** How people edit the value here: 'names', 'boolean', 'text', 'number' or 'list'; undefined when they can't. */
  editorOf(node: Editable): EditorKind | undefined {
    const isPair = node.use === 'assigned' && node.parent !== undefined;
    if (!isPair && !(node.path.startsWith('@') && node.use === 'assigned')) return undefined;
    const { holds, list } = node.field ?? {};
    if (list && !node.element) return 'list';
    if (node.count !== undefined) return undefined; // its keys are edited
    return holds && editorKinds[holds];
  }

  find(path: string) {
    const header = this.#view.header.findIndex((one) => one.path === path);
    if (header >= 0) return this.node(header - this.#view.header.length);
    const at = path === '' ? -1 : this.#nodes.find('path', path);
    return at > 0 ? this.node(at) : undefined;
  }

  /** The group whose keys stand beside this pair, or in it when it is a record. */
  groupOf(node: Pair) {
    if (node.field?.holds === 'record' && (node.element || !node.field.list)) return node;
    return node.parent === undefined ? this.node(0) : this.node(node.parent);
  }
}
