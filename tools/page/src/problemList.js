// What was found in a message, each with its place; choosing one goes there. A list of any length: more of it is made as
// it is scrolled.
import { byId, element } from './elements.js';
import { shown } from './signs.js';
import { counted } from './words.js';

const atOnce = 100;

export class ProblemList {
  #list = byId('problems');
  #made = 0;

  constructor(onProblem) {
    this.onProblem = onProblem;
    this.#list.addEventListener('scroll', () => this.#makeMore());
    // The keyboard comes to the last one made, and goes on.
    this.#list.addEventListener('focusin', ({ target }) => target.closest('li') === this.#list.lastElementChild && this.#make());
  }

  show({ problems }) {
    this.problems = problems;
    byId('problemPane').hidden = problems.length === 0;
    byId('problemCount').textContent = counted(problems.length, 'problem');
    this.#list.replaceChildren();
    this.#list.scrollTop = 0;
    this.#made = 0;
    this.#make();
  }

  #make() {
    const next = this.problems.slice(this.#made, this.#made + atOnce);
    this.#made += next.length;
    this.#list.append(...next.map((problem) => this.#item(problem)));
  }

  #makeMore() {
    const { scrollTop, clientHeight, scrollHeight } = this.#list;
    if (scrollTop + 2 * clientHeight > scrollHeight && this.#made < this.problems.length) this.#make();
  }

  #item(problem) {
    const { severity, message, consequence, suggestion, code, path, start, end } = problem;
    const part = (name, words) => element('span', { class: name }, ...shown(words));
    return element(
      'li',
      { 'data-code': code },
      element(
        'button',
        { type: 'button', class: `problem ${severity}`, onclick: () => this.onProblem(problem) },
        element('span', { class: 'problemSeverity' }, severity),
        part('problemMessage', message),
        consequence ? part('problemConsequence', consequence) : null,
        suggestion ? element('span', { class: 'problemMeant' }, 'did you mean ', element('b', {}, ...shown(suggestion)), '?') : null,
        part('problemPlace', `${path ? `${path}, ` : ''}${placeInWords(start, end)}`),
      ),
    );
  }
}

const placeInWords = (start, end) => (end - start > 1 ? `bytes ${start + 1} to ${end}` : `byte ${start + 1}`);
