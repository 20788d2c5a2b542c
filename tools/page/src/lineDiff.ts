// Where two texts differ: their lines are aligned first, those that stand once in both, then others that are alike, then
// those with the same key; what is left in them and between them is compared by characters. So what is alike is found in
// texts that are otherwise quite unlike, however long they are.
import { diff } from '@codemirror/merge';
import { uncrossed } from './search.ts';

/** Of each stretch that differs first and last end there, and here. */
export type Changes = [fromThere: number, toThere: number, fromHere: number, toHere: number][];

const limits = { scanLimit: 5000, timeout: 100 }; // characters that differ, milliseconds: beyond, more is marked than differs
const longest = 1000; // milliseconds in all
const mostInLine = 4; // of a line with more stretches that differ all between them is marked
const deepest = 100; // stretches in stretches that are aligned

interface Lines {
  lines: string[];
  starts: number[];
}

function linesOf(text: string): Lines {
  const lines = text.split('\n');
  let next = 0;
  const starts = lines.map(({ length }) => {
    const start = next;
    next += length + 1;
    return start;
  });
  return { lines, starts };
}

/** Lines of one text, and of the other. */
type Stretch = [from: number, to: number, fromOther: number, toOther: number];

/** By what lines belong together. */
type Name = (line: string) => string | undefined;

const names: Name[] = [(line) => line, (line) => /^[^=]*[\p{L}\d_]=/u.exec(line)?.[0]];

function linesBy(lines: string[], from: number, to: number, name: Name) {
  const found = new Map<string, number[]>();
  for (let line = from; line < to; ++line) {
    const words = name(lines[line]);
    if (words === undefined) continue;
    const some = found.get(words);
    if (some) some.push(line);
    else found.set(words, [line]);
  }
  return found;
}

// Of each line its partner: where some names stand once in both texts by these, else the first of a name with the first.
function partnersIn(there: Lines, here: Lines, [from, to, fromOther, toOther]: Stretch, name: Name) {
  const once = new Int32Array(to - from).fill(-1);
  const inOrder = once.slice();
  const others = linesBy(here.lines, fromOther, toOther, name);
  for (const [words, lines] of linesBy(there.lines, from, to, name)) {
    const partners = others.get(words) ?? [];
    lines.forEach((line, at) => (inOrder[line - from] = partners[at] ?? -1));
    if (lines.length === 1 && partners.length === 1) once[lines[0] - from] = partners[0];
  }
  return uncrossed(once.some((partner) => partner >= 0) ? once : inOrder);
}

// Calls pair() with the lines that belong together, in order.
function align(there: Lines, here: Lines, stretch: Stretch, pair: (line: number, other: number) => void, level = 0, depth = 0) {
  let [from, to, fromOther, toOther] = stretch;
  const isSame = (line: number, other: number) => there.lines[line] === here.lines[other];
  for (; from < to && fromOther < toOther && isSame(from, fromOther); ++from, ++fromOther) pair(from, fromOther);
  for (; from < to && fromOther < toOther && isSame(to - 1, toOther - 1); --to) --toOther;
  if (from < to && fromOther < toOther && level < names.length && depth < deepest) {
    const first = from;
    const partners = partnersIn(there, here, [from, to, fromOther, toOther], names[level]);
    const next = partners.some((partner) => partner >= 0) ? level : level + 1;
    const between = (end: number, endOther: number) => align(there, here, [from, end, fromOther, endOther], pair, next, depth + 1);
    partners.forEach((partner, at) => {
      if (partner < 0) return;
      between(first + at, partner);
      pair(first + at, partner);
      [from, fromOther] = [first + at + 1, partner + 1];
    });
    between(to, toOther);
  }
  for (; to < stretch[1]; ++to, ++toOther) pair(to, toOther);
}

/** What differs in two texts of lines, in order. */
export function differing(textThere: string, textHere: string): Changes {
  const [there, here] = [linesOf(textThere), linesOf(textHere)];
  const end = Date.now() + longest;
  const changes: Changes = [];
  let [done, doneOther] = [0, 0]; // as far as it is compared
  const compare = (to: number, toOther: number, most = Infinity) => {
    const [one, other] = [textThere.slice(done, to), textHere.slice(doneOther, toOther)];
    const timeout = Math.max(1, Math.min(limits.timeout, end - Date.now()));
    const found = one === other ? [] : diff(one, other, { ...limits, timeout });
    const joined = found.length > most ? [{ ...found[0], toA: found.at(-1)!.toA, toB: found.at(-1)!.toB }] : found;
    for (const { fromA, toA, fromB, toB } of joined) changes.push([done + fromA, done + toA, doneOther + fromB, doneOther + toB]);
    [done, doneOther] = [to, toOther];
  };
  align(there, here, [0, there.lines.length, 0, here.lines.length], (line, other) => {
    const [start, startOther] = [there.starts[line], here.starts[other]];
    compare(start, startOther);
    compare(start + there.lines[line].length, startOther + here.lines[other].length, mostInLine);
  });
  compare(textThere.length, textHere.length);
  return changes;
}
