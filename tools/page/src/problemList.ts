// What was found in a message, each with its place; choosing one goes there.
import type { MessageModel } from './messageModel.ts';
import type { Remedy } from 'vekparams2ascii/inspector';
import type { Problem } from './types.ts';
import { byId, element } from './elements.ts';
import { Pieces } from './pieces.ts';
import { shown } from './signs.ts';
import { counted, number } from './words.ts';

export class ProblemList {
  model!: MessageModel;
  #pieces = new Pieces(byId('problems'), byId('problems'), (at) => this.#item(at));
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
  ) {}

  show(model: MessageModel, remedies: Remedy[]) {
    this.#remedies = new Map(remedies.map((remedy) => [remedy.problem, remedy]));
    this.model = model;
    const total = model.problemCount;
    byId('problemPane').hidden = total === 0;
    byId('problemCount').textContent = counted(total, 'problem');
    this.#pieces.show(total);
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
