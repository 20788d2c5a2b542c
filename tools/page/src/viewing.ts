// What the page shows of a message, made in the worker so that the page is not kept by a message of any length: the
// core's view of it in tables, and of each byte what it is part of and how bad that is.
import type { View as CoreView } from 'vekparams2ascii/inspector';
import type { Bytes, Field, Holds, Place, Problem, Severity, Use } from './types.ts';
import { firstWhere } from './search.ts';
import { packed, type Packed } from './table.ts';
import { labelOf } from './words.ts';

const headerPaths = ['@id', '@length', '@echo', '@seq'];

const nodeColumns = [
  'path',
  'label',
  'use',
  'parent',
  'field',
  'depth',
  'element',
  'count',
  'value',
  'first',
  'hasPlace',
  'start',
  'end',
  'wholeStart',
  'wholeEnd',
] as const;
const problemColumns = ['code', 'severity', 'path', 'message', 'consequence', 'suggestion', 'start', 'end', 'node'] as const;

type NodeRow = CoreView['more'][number] &
  Place & {
    path: string;
    use: Use;
    parent?: number;
    label: string;
    hasPlace: boolean;
    wholeStart: number;
    wholeEnd: number;
    holds?: Holds;
    first?: number;
  };

/** What MessageModel takes. */
export interface View {
  id?: number;
  name?: string;
  seq?: number;
  header: { path: string; value?: number; place: Place }[];
  fields: Field[];
  nodes: Packed;
  problems: Packed;
  byNode: Int32Array;
  kinds: Uint8Array;
  severities: Uint8Array;
}

interface Tree {
  children: (at: number) => { first?: number; count: number };
  whole: (at: number) => Place;
}

// Of a byte, in order of textView's classes.
const byteKinds: Partial<Record<Holds, number>> = { integer: 1, real: 1, text: 2, name: 3, boolean: 3 };
const ignored = 4;
const severities: Record<Severity, number> = { warning: 1, error: 2 };

// Whether a stretch of bytes, be it empty, lies in a place that is not.
const holds = (place: Place, start: number, end: number) => place.start <= start && end <= place.end && place.start < place.end;

/**
 * The innermost pair that holds a stretch of bytes; of a header number its place in headerPaths, less their count; 0 when
 * none does. `tree` gives of a node's children where the first is and how many, and of a node its whole place.
 */
export function innermostAt(tree: Tree, header: Place[], start: number, end: number) {
  const number = header.findIndex((place) => holds(place, start, end));
  if (number >= 0) return number - headerPaths.length;
  let found = 0;
  for (;;) {
    // They lie one behind the other. What begins behind the stretch can't hold it, nor can what ends in front of it.
    const { first, count } = tree.children(found);
    let at = firstWhere(count, (one) => tree.whole(first! + one).end >= start);
    while (at < count && tree.whole(first! + at).start <= start && !holds(tree.whole(first! + at), start, end)) ++at;
    if (at >= count || !holds(tree.whole(first! + at), start, end)) return found;
    found = first! + at;
  }
}

function nodesOf({ nodes, more, fields }: CoreView): NodeRow[] {
  const rows: NodeRow[] = nodes.map(({ path, use, parent, value, whole }, at) => ({
    ...more[at],
    path,
    use,
    parent,
    label: labelOf(path, parent === undefined ? '' : nodes[parent].path),
    hasPlace: value !== undefined,
    start: value?.start ?? NaN,
    end: value?.end ?? NaN,
    wholeStart: whole.start,
    wholeEnd: whole.end,
    holds: fields[more[at].field ?? -1]?.holds,
  }));
  for (let at = rows.length - 1; at > 0; --at) rows[rows[at].parent!].first = at; // the children of a node lie side by side
  return rows;
}

function byteKindsOf(size: number, rows: NodeRow[], header: Place[]) {
  const kinds = new Uint8Array(size);
  for (const { start, end } of header) kinds.fill(byteKinds.integer!, start, end);
  for (const { count, use, holds: its, hasPlace, parent, start, end } of rows) {
    if (count !== undefined || parent === undefined || !hasPlace) continue;
    const isIgnored = use !== 'assigned' && use !== 'empty';
    kinds.fill(isIgnored ? ignored : (byteKinds[its!] ?? byteKinds.integer!), start, end);
  }
  return kinds;
}

function byteSeveritiesOf(size: number, problems: Problem[]) {
  const worst = new Uint8Array(size);
  for (const [name, number] of Object.entries(severities))
    for (const { severity, start, end } of problems) if (severity === name) worst.fill(number, start, end);
  return worst;
}

/** The view of a message that MessageModel takes. */
export function viewed(bytes: Bytes, view: CoreView): View {
  const { id, name, echo, seq, length, envelope, fields, problems = [] } = view;
  const header = headerPaths.map((path) => envelope[path]);
  const rows = nodesOf(view);
  const tree = {
    children: (at: number) => ({ first: rows[at].first, count: rows[at].count ?? 0 }),
    whole: (at: number) => ({ start: rows[at].wholeStart, end: rows[at].wholeEnd }),
  };
  const placed = problems.map((problem) => ({ ...problem, node: innermostAt(tree, header, problem.start, problem.end) }));
  return {
    id,
    name,
    seq,
    header: headerPaths.map((path, at) => ({ path, value: [id, length, echo, seq][at], place: header[at] })),
    fields,
    nodes: packed(rows, nodeColumns),
    problems: packed(placed, problemColumns),
    // The problems of a node lie side by side here, the worst in front.
    byNode: Int32Array.from(placed.keys()).sort(
      (left, right) =>
        placed[left].node - placed[right].node || severities[placed[right].severity] - severities[placed[left].severity] || left - right,
    ),
    kinds: byteKindsOf(bytes.length, rows, header),
    severities: byteSeveritiesOf(bytes.length, placed),
  };
}
