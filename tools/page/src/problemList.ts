// What was found in a message, each with its place; choosing one goes there. A list of any length: it stands there in
// pieces, of which only those in sight are drawn.
import type { MessageModel } from './messageModel.ts';
import type { Remedy } from 'vekparams2ascii/inspector';
import type { Problem } from './types.ts';
import { byId, element } from './elements.ts';
import { shown } from './signs.ts';
import { counted, number } from './words.ts';

const pieceSize = 50;
const usualHeight = 36; // of a problem, in pixels, until it was drawn

export class ProblemList {
  #list = byId('problems');
  model!: MessageModel;
  #pieces = new Map<HTMLElement, { first: number; count: number; isDrawn?: boolean }>();
  #sight: IntersectionObserver;

  #remedies = new Map<number, Remedy>(); // by their problems

  constructor(
    private readonly on: {
      /** A problem was chosen. */
      problem: (problem: Problem) => void;
      /** What can be done about a problem is to be done. */
      mend: (problem: number) => void;
      /** The same about all of a kind in the log. */
      mendKind: (code: string) => void;
      /** How many messages of the log have such a problem. */
      count: (code: string) => number;
    },
  ) {
    this.#sight = new IntersectionObserver((entries) => this.#follow(entries), { root: this.#list, rootMargin: '300px' });
  }

  show(model: MessageModel, remedies: Remedy[]) {
    this.#remedies = new Map(remedies.map((remedy) => [remedy.problem, remedy]));
    this.model = model;
    this.#sight.disconnect();
    this.#pieces.clear();
    const total = model.problemCount;
    byId('problemPane').hidden = total === 0;
    byId('problemCount').textContent = counted(total, 'problem');
    for (let first = 0; first < total; first += pieceSize) {
      const count = Math.min(pieceSize, total - first);
      const made = element('div', { role: 'presentation' });
      made.style.height = `${count * usualHeight}px`;
      this.#pieces.set(made, { first, count });
    }
    this.#list.replaceChildren(...this.#pieces.keys());
    this.#list.scrollTop = 0;
    const [start] = this.#pieces.keys();
    if (start) this.#draw(start);
    for (const made of this.#pieces.keys()) this.#sight.observe(made);
  }

  // The one with the focus stays, so that the keyboard goes on from it.
  #follow(entries: IntersectionObserverEntry[]) {
    for (const { target: at, isIntersecting } of entries) {
      const target = at as HTMLElement;
      const piece = this.#pieces.get(target);
      if (!piece || piece.isDrawn === isIntersecting) continue;
      if (isIntersecting) this.#draw(target);
      else if (!target.contains(document.activeElement)) this.#clear(target);
    }
  }

  #draw(made: HTMLElement) {
    const piece = this.#pieces.get(made)!;
    piece.isDrawn = true;
    made.style.height = '';
    made.replaceChildren(...Array.from({ length: piece.count }, (_one, at) => this.#item(piece.first + at)));
  }

  #clear(made: HTMLElement) {
    this.#pieces.get(made)!.isDrawn = false;
    made.style.height = `${made.offsetHeight}px`;
    made.replaceChildren();
  }

  #item(at: number) {
    const problem = this.model.problem(at);
    const { severity, message, consequence, suggestion, code, path, start, end } = problem;
    const part = (name: string, words: string) => element('span', { class: name }, ...shown(words));
    return element(
      'li',
      { 'data-code': code, 'aria-setsize': this.model.problemCount, 'aria-posinset': at + 1 },
      element(
        'button',
        { type: 'button', class: `problem ${severity}`, onclick: () => this.on.problem(problem) },
        element('span', { class: 'problemSeverity' }, severity),
        part('problemMessage', message),
        consequence ? part('problemConsequence', consequence) : null,
        suggestion ? element('span', { class: 'problemMeant' }, 'did you mean ', element('b', {}, ...shown(suggestion)), '?') : null,
        part('problemPlace', `${path ? `${path}, ` : ''}${placeInWords(start, end)}`),
      ),
      this.#remedy(at, code),
    );
  }

  #remedy(at: number, code: string) {
    const remedy = this.#remedies.get(at);
    if (!remedy) return null;
    const button = (words: string, onclick: () => void) =>
      element('button', { type: 'button', class: 'quiet small', onclick }, ...shown(words));
    const count = this.on.count(code);
    return element(
      'span',
      { class: 'remedy' },
      button(remedy.certain ? remedy.words : `${remedy.words}?`, () => this.on.mend(at)),
      remedy.certain && count > 1 ? button(`in all ${number(count)} messages with this`, () => this.on.mendKind(code)) : null,
    );
  }
}

const placeInWords = (start: number, end: number) => (end - start > 1 ? `bytes ${start + 1} to ${end}` : `byte ${start + 1}`);
