// Characters that are to be seen, not obeyed: control characters, those that turn the direction of writing, and bytes
// that are no characters are shown as marks, spelt as the command line spells them.
import { element } from './elements.ts';
import { bytesOfCoreText } from './bytes.ts';

const letters: Record<string, string> = { '\n': '\\n', '\r': '\\r', '\t': '\\t' };
const escape = (code: number) => `\\u{${code.toString(16)}}`;

let unprintable = /[]/gu;

/** Of a mark, the character that it stands for. */
export const rawSigns = new WeakMap<Node, string>();

/** ranges: first and last character of each, as the core has them. */
export function setUnprintable(ranges: Uint32Array) {
  let characters = '\\u{ef80}-\\u{efff}'; // the core's bytes
  for (let at = 0; at < ranges.length; at += 2) characters += `${escape(ranges[at])}-${escape(ranges[at + 1])}`;
  unprintable = new RegExp(`[${characters}]`, 'gu');
}

/** What finds the characters that are to be seen as marks, line ends aside: they end lines. */
export const unprintableSigns = () => new RegExp(unprintable.source.replace('[', '(?!\\n)['), 'gu');

const spelt = (character: string) =>
  letters[character] ?? Array.from(bytesOfCoreText(character), (byte) => `\\x${byte.toString(16).padStart(2, '0')}`).join('');

export const isPrintable = (text: string) => text.search(unprintable) < 0;

/** A text of the core in plain words, for titles and names. */
export const shownWords = (text: string) => text.replaceAll(unprintable, spelt);

/** The same as text and marks. keepsLines: a line end also ends the line. */
export function shown(text: string, keepsLines = false): (string | HTMLElement)[] {
  const pieces: (string | HTMLElement)[] = [];
  let from = 0;
  for (const { 0: character, index } of text.matchAll(unprintable)) {
    if (index > from) pieces.push(text.slice(from, index));
    from = index + character.length;
    const sign = element('span', { class: 'sign' }, spelt(character));
    rawSigns.set(sign, character);
    pieces.push(sign);
    if (keepsLines && character === '\n') pieces.push(element('br'));
  }
  if (from < text.length) pieces.push(text.slice(from));
  return pieces;
}

export function show(target: HTMLElement, text: string, keepsLines = false) {
  if (isPrintable(text)) target.textContent = text;
  else target.replaceChildren(...shown(text, keepsLines));
}

/** The same for texts of lines, as forms are: their line ends are no marks. */
export function showLines(target: HTMLElement, text: string) {
  if (isPrintable(text.replaceAll('\n', ''))) target.textContent = text;
  else
    target.replaceChildren(
      ...text.split(/(?<=\n)/).flatMap((line) => (line.endsWith('\n') ? [...shown(line.slice(0, -1)), '\n'] : shown(line))),
    );
}

/** Text of a message whose lines end between pairs where they can. */
export function withBreaks(pieces: (string | HTMLElement)[]) {
  const broken = (text: string) => text.split(/(?<=[;,])/).flatMap((one) => (/[;,]$/.test(one) ? [one, element('wbr')] : [one]));
  return pieces.flatMap((piece) => (typeof piece === 'string' ? broken(piece) : [piece]));
}
