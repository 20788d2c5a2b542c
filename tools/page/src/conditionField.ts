// The field for a condition on values: what is wrong in it is underlined where it stands, and what can stand next is
// offered in a list below.
import { charactersAt, offersAt, type Offer } from './condition.ts';
import type { CoreCalls } from './reader.ts';
import type { KindKey } from './types.ts';
import { byId, element, seldom } from './elements.ts';
import { shown, shownWords } from './signs.ts';

const pause = 300; // milliseconds until what is typed is judged

export class ConditionField {
  #input = byId('filterWhere');
  #marks = byId('whereMarks');
  #list = byId('whereChoices');
  #offer: Offer = { start: 0, end: 0, words: [] };
  #chosen = -1;

  constructor(
    private readonly core: CoreCalls,
    /** Of the log, in the order in which they are to be offered. */
    private readonly keys: () => KindKey[],
  ) {
    const judge = seldom(() => void this.judge(), pause);
    this.#input.addEventListener('input', () => {
      this.#mark();
      judge();
      this.#propose();
    });
    this.#input.addEventListener('scroll', () => this.#follow());
    this.#input.addEventListener('keydown', (event) => this.#key(event));
    this.#input.addEventListener('blur', () => this.#close());
    // The field keeps the focus.
    this.#list.addEventListener('pointerdown', (event) => {
      event.preventDefault();
      const at = [...this.#list.children].indexOf((event.target as Element).closest('li')!);
      if (at >= 0) this.#take(at);
    });
  }

  get text() {
    return this.#input.value.trim();
  }
  set text(text: string) {
    this.#input.value = text;
    this.#mark();
    this.#close();
    byId('whereProblem').textContent = '';
    this.#input.removeAttribute('aria-invalid');
  }

  /** Says whether it is a condition, and where it isn't. */
  async judge() {
    const { value } = this.#input;
    const wrong = value.trim() === '' ? undefined : await this.core.chooseWhere(value);
    if (value !== this.#input.value) return false;
    byId('whereProblem').replaceChildren(...shown(wrong?.words ?? ''));
    this.#input.setAttribute('aria-invalid', String(wrong !== undefined));
    if (wrong) this.#mark(charactersAt(value, wrong));
    else this.#mark();
    return wrong === undefined;
  }

  // The same text lies under the field's, unseen but for what underlines it.
  #mark({ start, end } = { start: 0, end: 0 }) {
    const { value } = this.#input;
    const words = value.slice(start, end) || '\u00a0'; // behind the end
    this.#marks.replaceChildren(...(end > start ? [value.slice(0, start), element('span', { class: 'wrong-error' }, words)] : []));
    this.#follow();
  }

  #follow() {
    this.#marks.scrollLeft = this.#input.scrollLeft;
  }

  #propose(isAsked = false) {
    const caret = this.#input.selectionStart ?? 0;
    this.#offer = offersAt(this.#input.value, caret, this.keys());
    const { start, words } = this.#offer;
    if (words.length === 0 || (start === caret && !isAsked)) return this.#close();
    this.#list.replaceChildren(
      ...words.map((word, at) => element('li', { role: 'option', id: `whereChoice${at}`, 'aria-selected': 'false' }, shownWords(word))),
    );
    this.#list.hidden = false;
    this.#input.setAttribute('aria-expanded', 'true');
    return this.#choose(isAsked ? 0 : -1);
  }

  #choose(at: number) {
    this.#chosen = at;
    for (const [number, one] of [...this.#list.children].entries()) one.setAttribute('aria-selected', String(number === at));
    if (at < 0) return this.#input.removeAttribute('aria-activedescendant');
    this.#input.setAttribute('aria-activedescendant', `whereChoice${at}`);
    return this.#list.children[at].scrollIntoView({ block: 'nearest' });
  }

  #close() {
    this.#list.hidden = true;
    this.#input.setAttribute('aria-expanded', 'false');
    this.#choose(-1);
  }

  #take(at: number) {
    const { start, end, words } = this.#offer;
    this.#input.setRangeText(words[at], start, end, 'end');
    this.#mark();
    this.#close();
    void this.judge();
  }

  #key(event: KeyboardEvent) {
    const isOpen = !this.#list.hidden;
    const count = this.#list.children.length;
    const step = { ArrowDown: 1, ArrowUp: -1 }[event.key];
    if (step !== undefined) {
      if (isOpen) this.#choose((this.#chosen + step + count) % count);
      else this.#propose(true);
    } else if (event.key === ' ' && event.ctrlKey) this.#propose(true);
    else if (isOpen && event.key === 'Escape') this.#close();
    else if (isOpen && event.key === 'Tab' && !event.shiftKey) this.#take(Math.max(0, this.#chosen));
    else if (isOpen && event.key === 'Enter' && this.#chosen >= 0) this.#take(this.#chosen);
    else return;
    event.preventDefault();
  }
}
