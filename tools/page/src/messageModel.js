// One message as the page shows it: the core's view of its bytes, made into rows of a tree.
import { labelOf } from './words.js';

const headerPaths = ['@id', '@length', '@echo', '@seq'];

// Whether a stretch of bytes, be it empty, lies in a place that is not.
const holds = (place, start, end) => place.start <= start && end <= place.end && place.start < place.end;

export class MessageModel {
  constructor(core, bytes) {
    this.bytes = bytes;
    this.view = core.view(bytes);
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
      const header = this.header.find(({ whole }) => holds(whole, problem.start, problem.end));
      const node = header ?? this.nodeAt(problem.start, problem.end) ?? this.nodes[0];
      problem.node = node;
      node.problems.push(problem);
    }
  }

  /** The innermost pair that holds a stretch of bytes; header numbers too. */
  nodeAt(start, end = start) {
    const isAround = ({ whole }) => holds(whole, start, end);
    const header = this.header.find(isAround);
    if (header) return header;
    let found;
    for (let nodes = this.nodes[0].children; nodes; ) {
      const next = nodes.find(isAround);
      if (!next) break;
      found = next;
      nodes = next.count === undefined ? undefined : next.children;
    }
    return found;
  }

  /** The kind of value that people edit here; undefined when they can't. */
  editorOf(node) {
    const isPair = node.use === 'assigned' && node.parent !== undefined;
    if (!isPair && !(node.path.startsWith('@') && node.use === 'assigned')) return undefined;
    const { kind } = node.field ?? {};
    if (node.count !== undefined || kind === 'nested record') return 'group';
    if (node.field?.group && !node.element && kind !== '16-bit character string') return 'group';
    if (kind === 'enumeration' && node.field.names) return 'names';
    if (kind === 'boolean') return 'boolean';
    if (kind === 'string' || kind === '16-bit character string') return 'text';
    return 'number';
  }

  /** A group's value as it stands. */
  rawValue(node) {
    const place = this.view.nodes[node.at].value;
    return node.value === undefined ? this.bytes.subarray(place.start, place.end) : undefined;
  }

  find(path) {
    return this.header.find((node) => node.path === path) ?? this.nodes.find((node) => node.path === path && path !== '');
  }
}
