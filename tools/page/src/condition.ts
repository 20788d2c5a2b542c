// What can stand next in a condition: the paths of the log's kinds, and behind a comparison the names of a key.
import { coreText, bytesOf } from './bytes.ts';
import type { KindKey, Place } from './types.ts';

const mostOffered = 50;

/** What can be put in place of a stretch of the text. */
export interface Offer {
  start: number;
  end: number;
  words: string[];
}

const tokenBefore = /[\w@.[\]*]*$/;
const comparedBefore = /([\w.[\]*]+)\s*(?:==?|!=|<=?|>=?|~)\s*$/;
const spotBefore = /(?:^|[(!]|&&|\|\||\b(?:not|and|or))\s*$/i; // where a path is to stand

// Element numbers don't matter.
const anyElement = (path: string) => path.replaceAll(/\[\d+\]/g, '[*]');

/** What can be written at the caret; keys: the more often one is there the sooner it is offered. */
export function offersAt(text: string, caret: number, keys: KindKey[]): Offer {
  const before = text.slice(0, caret);
  const token = tokenBefore.exec(before)![0];
  const start = caret - token.length;
  const end = caret + /^[\w@.[\]*]*/.exec(text.slice(caret))![0].length;
  const front = before.slice(0, start);
  const compared = comparedBefore.exec(front)?.[1];
  let words: string[] = [];
  if (compared !== undefined) {
    const key = keys.find(({ path }) => path === anyElement(compared));
    words = key?.holds === 'boolean' ? ['TRUE', 'FALSE'] : (key?.names ?? []);
  } else if (spotBefore.test(front)) {
    words = [...new Set(keys.map(({ path }) => path)), '@id', '@echo', '@seq', '@length'];
  }
  const wanted = anyElement(token).toLowerCase();
  const at = (word: string) => word.toLowerCase().indexOf(wanted);
  const found = words.filter((word) => at(word) >= 0 && word !== token);
  // Those that begin so stand in front.
  return { start, end, words: found.sort((left, right) => Math.min(1, at(left)) - Math.min(1, at(right))).slice(0, mostOffered) };
}

/** The characters of a text that stand for some of its bytes. */
export function charactersAt(text: string, { start, end }: Place): Place {
  const bytes = bytesOf(text);
  const upTo = (at: number) => coreText(bytes.subarray(0, at)).length;
  return { start: upTo(start), end: Math.max(upTo(start) + 1, upTo(end)) };
}
