// The columns of the list: which ones, what they are called, how wide they are; chosen by people and kept by the browser.
import { byId, element } from './elements.js';
import { shownWords } from './signs.js';

const kept = 'vekmsg columns';
const standard = {
  time: { title: 'Time', width: '6.4rem', isShown: true },
  direction: { title: 'Direction', width: '7.6rem', isShown: true },
  kind: { title: 'Kind', width: '8.4rem', isShown: true },
  id: { title: 'Id', width: '2.8rem' },
  sequence: { title: 'Sequence', width: '4.4rem' },
  line: { title: 'Line', width: '4.4rem' },
  values: { title: 'Values', width: 'minmax(5rem, 1fr)', isShown: true },
};
const wideTime = '9.4rem'; // with month and day
const narrow = 480; // pixels; below, the list has no direction, and times of whole seconds
const narrowWidths = { time: '4rem', kind: '6.4rem' };

function load() {
  try {
    const { names, paths } = JSON.parse(localStorage.getItem(kept));
    return { names: new Set(names.filter((name) => name in standard)), paths: paths.map(String) };
  } catch {
    return { names: new Set(Object.keys(standard).filter((name) => standard[name].isShown)), paths: [] };
  }
}

export class ListColumns {
  #chosen = load();
  hasDirection = false; // some line says it
  hasDays = false; // the log goes over several
  hasFractions = true; // of seconds

  /** onChange(): the list is to be drawn again. */
  constructor(onChange) {
    this.onChange = onChange;
    byId('columnForm').addEventListener('submit', (event) => {
      event.preventDefault();
      const path = byId('columnPath').value.trim();
      byId('columnPath').value = '';
      if (path !== '' && !this.paths.includes(path)) this.#choose(() => this.#chosen.paths.push(path));
    });
    const details = byId('columns');
    document.addEventListener('pointerdown', ({ target }) => details.contains(target) || (details.open = false));
    details.addEventListener('keydown', ({ key }) => {
      if (key !== 'Escape') return;
      details.open = false;
      details.querySelector('summary').focus();
    });
    this.#list();
  }

  get paths() {
    return this.#chosen.paths;
  }

  #choose(change) {
    change();
    try {
      localStorage.setItem(kept, JSON.stringify({ names: [...this.#chosen.names], paths: this.paths }));
    } catch {
      // Where the browser keeps nothing they are chosen until the page is left.
    }
    this.#list();
    this.onChange();
  }

  // The boxes to choose them by.
  #list() {
    const box = (words, isChosen, onchange) => element('li', {}, element('label', {}, element('input', { type: 'checkbox', checked: isChosen, onchange }), ` ${words}`));
    const { names } = this.#chosen;
    byId('columnChoices').replaceChildren(
      ...Object.entries(standard).map(([name, { title }]) => box(title, names.has(name), () => this.#choose(() => names.delete(name) || names.add(name)))),
      ...this.paths.map((path) => box(shownWords(path), true, () => this.#choose(() => this.paths.splice(this.paths.indexOf(path), 1)))),
    );
  }

  /** Those that are shown in a list so wide, in their order. */
  shown(width) {
    const { names } = this.#chosen;
    const isShown = (name) => names.has(name) && (name !== 'direction' || (this.hasDirection && width >= narrow));
    const all = Object.keys(standard).filter(isShown).map((name) => ({ name, ...standard[name] }));
    this.hasFractions = width >= narrow;
    for (const one of all)
      if (!this.hasFractions) one.width = narrowWidths[one.name] ?? one.width;
      else if (one.name === 'time' && this.hasDays) one.width = wideTime;
    const paths = this.paths.map((path, at) => ({ name: 'path', path: at, title: path, width: '7rem' }));
    const end = all.at(-1)?.name === 'values' ? all.length - 1 : all.length;
    return [...all.slice(0, end), ...paths, ...all.slice(end)];
  }
}
