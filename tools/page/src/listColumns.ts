// The columns of the list: which ones, what they are called, how wide they are; chosen by people and kept by the browser.
import { byId, closesByItself, element } from './elements.ts';
import { shownWords } from './signs.ts';

const kept = 'vekmsg columns';
interface Column {
  title: string;
  width: string;
  isShown?: boolean;
}

/** What is shown of a message: one of the standard columns, or what stands at a path, by its number. */
export interface ShownColumn extends Column {
  name: string;
  path?: number;
  isShort?: boolean; // has room for a few letters
}

const standard: Record<string, Column> = {
  time: { title: 'Time', width: '6.4rem', isShown: true },
  direction: { title: 'Direction', width: '7.6rem', isShown: true },
  kind: { title: 'Kind', width: '8.4rem', isShown: true },
  id: { title: 'Id', width: '2.8rem' },
  sequence: { title: 'Sequence', width: '4.4rem' },
  line: { title: 'Line', width: '4.4rem' },
  values: { title: 'Values', width: 'minmax(5rem, 1fr)', isShown: true },
};
const wideTime = '9.4rem'; // with month and day
const roomy = 600; // pixels; below, the direction is short
const shortDirection = '2.2rem';
const narrow = 480; // below, times are of whole seconds
const narrowWidths: Record<string, string> = { time: '4rem', kind: '6.4rem' };
const narrowest = 400; // below, times are without their days, and the list has no direction
const narrowTime = '6.8rem'; // with month and day

function load(): { names: Set<string>; paths: string[] } {
  try {
    const { names, paths } = JSON.parse(localStorage.getItem(kept) ?? '') as { names: string[]; paths: string[] };
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
  showsDays = false;

  /** onChange(): the list is to be drawn again. */
  constructor(private readonly onChange: () => void) {
    byId('columnForm').addEventListener('submit', (event) => {
      event.preventDefault();
      const path = byId('columnPath').value.trim();
      byId('columnPath').value = '';
      if (path !== '' && !this.paths.includes(path)) this.#choose(() => void this.#chosen.paths.push(path));
    });
    closesByItself(byId('columns'));
    this.#list();
  }

  get paths() {
    return this.#chosen.paths;
  }

  #choose(change: () => void) {
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
    const box = (words: string, isChosen: boolean, onchange: () => void) =>
      element('li', {}, element('label', {}, element('input', { type: 'checkbox', checked: isChosen, onchange }), ` ${words}`));
    const { names } = this.#chosen;
    byId('columnChoices').replaceChildren(
      ...Object.entries(standard).map(([name, { title }]) =>
        box(title, names.has(name), () => this.#choose(() => void (names.delete(name) || names.add(name)))),
      ),
      ...this.paths.map((path) =>
        box(shownWords(path), true, () => this.#choose(() => void this.paths.splice(this.paths.indexOf(path), 1))),
      ),
    );
  }

  /** Those that are shown in a list so wide, in their order. */
  shown(width: number): ShownColumn[] {
    const { names } = this.#chosen;
    const isShown = (name: string) => names.has(name) && (name !== 'direction' || (this.hasDirection && width >= narrowest));
    const all = Object.keys(standard)
      .filter(isShown)
      .map((name): ShownColumn => ({ name, ...standard[name] }));
    this.hasFractions = width >= narrow;
    this.showsDays = this.hasDays && width >= narrowest;
    for (const one of all)
      if (one.name === 'time' && this.showsDays) one.width = this.hasFractions ? wideTime : narrowTime;
      else if (one.name === 'direction' && width < roomy) Object.assign(one, { width: shortDirection, isShort: true });
      else if (!this.hasFractions) one.width = narrowWidths[one.name] ?? one.width;
    const paths = this.paths.map((path, at) => ({ name: 'path', path: at, title: path, width: '7rem' }));
    const end = all.at(-1)?.name === 'values' ? all.length - 1 : all.length;
    return [...all.slice(0, end), ...paths, ...all.slice(end)];
  }
}
