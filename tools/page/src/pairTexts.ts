// Two messages' texts with each pair on a line of its own, and where they differ: made in the worker, since that takes a
// while with large ones that are quite unlike.
import { coreText } from './bytes.ts';
import { differing, type Changes } from './lineDiff.ts';
import type { MessageModel, Pair } from './messageModel.ts';
import { shownWords } from './signs.ts';

export interface PairTexts {
  there: string;
  here: string;
  changes: Changes;
}

// A line is laid out as one piece, so that it can't be of any length.
const longestList = 1000; // bytes of elements without keys that stand on one line
const longestLine = /.{1,2000}/gsu;

/** The text with each pair on a line of its own, a few elements without keys aside. */
function linesOf(model: MessageModel) {
  const ends = new Set([model.bytes.length]);
  const isShort = ({ whole: { start, end } }: Pair) => end - start <= longestList;
  for (let at = 0; at < model.count; ++at) {
    const node = model.node(at);
    const { element, count, whole, children } = node;
    const last = children.at(-1);
    if (count === undefined && element && isShort(model.node(node.parent!))) continue;
    if (at > 0) ends.add(whole.start);
    if (last && (children.some((child) => !child.element || child.count !== undefined) || !isShort(node))) ends.add(last.whole.end);
  }
  const lines: string[] = [];
  let from = 0;
  for (const end of [...ends].sort((left, right) => left - right)) {
    if (end > from) lines.push(...(shownWords(coreText(model.bytes.subarray(from, end))).match(longestLine) ?? []));
    from = end;
  }
  return lines.join('\n');
}

export function pairTexts(one: MessageModel, other: MessageModel): PairTexts {
  const [there, here] = [linesOf(one), linesOf(other)];
  return { there, here, changes: differing(there, here) };
}
