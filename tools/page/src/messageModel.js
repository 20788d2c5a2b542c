// One message as the page shows it: the core's view of its bytes, made into rows of a tree.
import { lowerBound } from './search.js';
import { labelOf } from './words.js';

const headerPaths = ['@id', '@length', '@echo', '@seq'];

// Whether a stretch of bytes, be it empty, lies in a place that is not.
const holds = (place, start, end) => place.start <= start && end <= place.end && place.start < place.end;

export class MessageModel {
  static async of(core, bytes) {
    return new MessageModel(bytes, await core.view(bytes));
  }

  constructor(bytes, view) {
    this.bytes = bytes;
    this.view = view;
    this.nodes = this.view.nodes.map((node, at) => this.#node(node, at));
    this.header = headerPaths.map((path) => this.#headerNode(path));
    for (const node of this.nodes) if (node.parent !== undefined) this.nodes[node.parent].children.push(node);
    this.problems = this.view.problems ?? [];
    this.#giveProblems();
  }

  #node(node, at) {
    const more = this.view.more[at];
    const parentPath = node.parent === undefined ? '' : this.view.nodes[node.parent].path;
    return {
      ...node,
      ...more,
      at,
      place: node.value, // of its value
      field: this.view.fields[more.field],
      label: labelOf(node.path, parentPath),
      children: [],
      problems: [],
    };
  }

  #headerNode(path) {
    const place = this.view.envelope[path];
    const value = this.view[{ '@id': 'id', '@length': 'length', '@echo': 'echo', '@seq': 'seq' }[path]];
    return {
      path,
      label: labelOf(path, ''),
      value: value === undefined ? '' : String(value),
      depth: 1,
      use: path === '@length' ? 'derived' : 'assigned',
      whole: place,
      field: { kind: 'long integer', words: 'header number' },
      children: [],
      problems: [],
    };
  }

  // A problem belongs to the innermost pair around its place.
  #giveProblems() {
    for (const problem of this.problems) {
      const node = this.nodeAt(problem.start, problem.end) ?? this.nodes[0];
      problem.node = node;
      node.problems.push(problem);
    }
  }

  /** The innermost pair that holds a stretch of bytes; header numbers too. */
  nodeAt(start, end = start) {
    const header = this.header.find(({ whole }) => holds(whole, start, end));
    if (header) return header;
    let found;
    for (let nodes = this.nodes[0].children; nodes; ) {
      // They lie one behind the other. What begins behind the stretch can't hold it, nor can what ends in front of it.
      let at = lowerBound(nodes, start, (node) => node.whole.end);
      while (at < nodes.length && nodes[at].whole.start <= start && !holds(nodes[at].whole, start, end)) ++at;
      const next = nodes[at];
      if (!next || !holds(next.whole, start, end)) break;
      found = next;
      nodes = next.count === undefined ? undefined : next.children;
    }
    return found;
  }

  /** How people edit the value here: 'names', 'boolean', 'text', 'number' or 'list'; undefined when they can't. */
  editorOf(node) {
    const isPair = node.use === 'assigned' && node.parent !== undefined;
    if (!isPair && !(node.path.startsWith('@') && node.use === 'assigned')) return undefined;
    const { kind, list, names } = node.field ?? {};
    if (list && !node.element) return 'list';
    if (node.count !== undefined || kind === 'nested record') return undefined; // its keys are edited
    if (kind === 'enumeration' && names) return 'names';
    if (kind === 'boolean') return 'boolean';
    if (kind === 'string' || kind === '16-bit character string') return 'text';
    return 'number';
  }

  find(path) {
    return this.header.find((node) => node.path === path) ?? this.nodes.find((node) => node.path === path && path !== '');
  }
}
