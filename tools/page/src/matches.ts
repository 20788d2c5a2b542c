// What the text filter finds, marked wherever it is seen: in the list, in the message's text and in its tree. The marks
// are the browser's, so nothing that is shown is changed for them.
import { byId, seldom } from './elements.ts';

const most = 2000; // marks

export class Matches {
  #pattern?: RegExp;
  #roots = ['messages', 'tree', 'messageText', 'formText'].map((id) => byId(id));

  constructor() {
    if (!('highlights' in CSS)) return; // an older browser marks nothing
    const observer = new MutationObserver(seldom(() => this.#mark(), 30));
    for (const root of this.#roots) observer.observe(root, { childList: true, characterData: true, subtree: true });
  }

  /** Marks these words, whatever their letter case. */
  show(words: string) {
    this.#pattern = words === '' ? undefined : new RegExp(words.replaceAll(/[\\^$.*+?()[\]{}|/]/g, '\\$&'), 'gi');
    this.#mark();
  }

  #mark() {
    if (!('highlights' in CSS)) return;
    CSS.highlights.delete('match');
    const pattern = this.#pattern;
    if (!pattern) return;
    const found: Range[] = [];
    for (const root of this.#roots)
      for (const part of root.id === 'messageText' || root.id === 'formText' ? [root] : root.querySelectorAll('.row:not([hidden])'))
        if (found.length < most) found.push(...rangesIn(part, pattern));
    if (found.length > 0) CSS.highlights.set('match', new Highlight(...found));
  }
}

// Also where what is found goes from one element into the next.
function rangesIn(root: Element, pattern: RegExp): Range[] {
  const nodes: { node: Text; start: number }[] = [];
  let text = '';
  const walker = document.createTreeWalker(root, NodeFilter.SHOW_TEXT);
  while (walker.nextNode()) {
    const node = walker.currentNode as Text;
    nodes.push({ node, start: text.length });
    text += node.data;
  }
  const ranges: Range[] = [];
  let at = 0;
  for (const { 0: words, index } of text.matchAll(pattern)) {
    if (ranges.length === most) break;
    const range = new Range();
    while (nodes[at + 1]?.start <= index) ++at;
    range.setStart(nodes[at].node, index - nodes[at].start);
    const end = index + words.length;
    while (nodes[at + 1]?.start < end) ++at;
    range.setEnd(nodes[at].node, end - nodes[at].start);
    ranges.push(range);
  }
  return ranges;
}
