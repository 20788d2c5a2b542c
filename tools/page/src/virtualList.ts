// A list of any length of which only the rows in sight are elements: the base of the list and of the tree.
//
// It is one stop of the keyboard; the active row is named by aria-activedescendant.
import { element } from './elements.ts';

const tallest = 8_000_000; // pixels that every browser can scroll

interface Options {
  rowHeight: number;
  rowRole: string;
  /** Shows a row in its element. */
  fill: (made: HTMLElement, index: number) => void;
  /** The active row changed. */
  onActive: (index: number) => void;
  /** True when the key was taken. */
  onKey?: (event: KeyboardEvent) => boolean;
  /** The active row was clicked twice. */
  onDouble?: (index: number) => void;
  /** What a row stands for, the same while it does: its number unless given. */
  meant?: (index: number) => unknown;
}

// An element, and what it shows.
interface Row {
  made: HTMLElement;
  shown?: string;
}

export class VirtualList {
  #rowHeight: number;
  #fill: Options['fill'];
  #spacer: HTMLElement;
  #rows: Row[] = [];
  #count = 0;
  #version = 0; // of what the rows show
  #clicked: unknown[] = []; // what the last two clicks hit, of whatever is in the page: nothing for what is no row of this
  #prefix: string;
  readonly #options: Options;
  active = -1;

  /** root: the scrolling element with its role. */
  constructor(
    readonly root: HTMLElement,
    options: Options,
  ) {
    this.#options = options;
    this.#rowHeight = options.rowHeight;
    this.#fill = options.fill;
    this.#prefix = root.id;
    this.#spacer = element('div', { class: 'spacer', role: 'presentation' });
    root.append(this.#spacer);
    root.tabIndex = 0;
    root.addEventListener('scroll', () => this.draw());
    root.addEventListener('keydown', (event) => this.#key(event));
    root.addEventListener('click', (event) => this.#click(event));
    document.addEventListener('click', ({ target }) => (this.#clicked = [this.#clicked[1], this.#hit(target as Element)]), true);
    root.addEventListener('dblclick', () => this.#double());
    new ResizeObserver(() => this.draw()).observe(root);
  }

  get count() {
    return this.#count;
  }

  setCount(count: number) {
    this.#count = count;
    this.#spacer.style.height = `${Math.min(count * this.#rowHeight, tallest)}px`;
    if (this.active >= count) this.active = count - 1;
    this.refresh();
  }

  /** Shows the rows again: what they say was changed. */
  refresh() {
    ++this.#version;
    this.draw();
  }

  // How far a list that is as tall as it should be would be scrolled.
  #virtualTop() {
    const whole = this.#count * this.#rowHeight;
    const room = this.root.clientHeight;
    if (whole <= tallest) return this.root.scrollTop;
    return (this.root.scrollTop / Math.max(1, tallest - room)) * (whole - room);
  }

  #scrollTo(top: number) {
    const whole = this.#count * this.#rowHeight;
    const room = this.root.clientHeight;
    this.root.scrollTop = whole <= tallest ? top : (top / (whole - room)) * (tallest - room);
  }

  /** Where a row stands, in pixels from the top of what is in sight. */
  topOf(index: number) {
    return index * this.#rowHeight - this.#virtualTop();
  }

  draw() {
    const top = this.#virtualTop();
    const first = Math.max(0, Math.floor(top / this.#rowHeight) - 4);
    const last = Math.min(this.#count, Math.ceil((top + this.root.clientHeight) / this.#rowHeight) + 4);
    const shift = this.root.scrollTop - top; // once: read behind a change, it makes the browser lay out anew
    while (this.#rows.length < last - first) this.#addRow();
    this.#rows.forEach((row, i) => this.#drawRow(row, first + i, last, shift));
    if (this.active >= first && this.active < last) this.root.setAttribute('aria-activedescendant', `${this.#prefix}-${this.active}`);
    else this.root.removeAttribute('aria-activedescendant');
  }

  // A row that shows its content already stays as it is, so that two clicks on it are a double click.
  #drawRow(row: Row, index: number, last: number, shift: number) {
    const { made } = row;
    made.hidden = index >= last;
    if (made.hidden) {
      row.shown = undefined;
      return made.removeAttribute('id');
    }
    const wanted = `${index} ${this.#version}`;
    if (row.shown !== wanted) {
      row.shown = wanted;
      made.id = `${this.#prefix}-${index}`;
      made.dataset.index = String(index);
      this.#fill(made, index);
    }
    made.style.transform = `translateY(${index * this.#rowHeight + shift}px)`;
    return made.setAttribute('aria-selected', String(index === this.active));
  }

  #addRow() {
    const made = element('div', { class: 'row', role: this.#options.rowRole });
    made.style.height = `${this.#rowHeight}px`;
    this.#rows.push({ made });
    this.#spacer.append(made);
  }

  /** Makes a row the active one and brings it in sight. */
  activate(index: number, isQuiet = false) {
    if (index < 0 || index >= this.#count) return;
    const isNew = index !== this.active;
    this.active = index;
    const top = this.#virtualTop();
    const wanted = index * this.#rowHeight;
    if (wanted < top) this.#scrollTo(wanted);
    else if (wanted + this.#rowHeight > top + this.root.clientHeight) this.#scrollTo(wanted + this.#rowHeight - this.root.clientHeight);
    this.draw();
    if (isNew && !isQuiet) this.#options.onActive(index);
  }

  #click(event: MouseEvent) {
    const row = (event.target as Element).closest<HTMLElement>('.row');
    if (row) this.activate(Number(row.dataset.index));
  }

  #hit(target: Element) {
    const row = this.root.contains(target) ? target.closest<HTMLElement>('.row') : undefined;
    return row ? this.#meant(Number(row.dataset.index)) : undefined;
  }

  #meant(index: number) {
    return this.#options.meant ? this.#options.meant(index) : index;
  }

  // What the first click opens, moves or scrolls may bring another row below the pointer: two clicks on two rows are none on
  // either.
  #double() {
    const [first, second] = this.#clicked;
    if (first !== undefined && first === second && second === this.#meant(this.active)) this.#options.onDouble?.(this.active);
  }

  /** Takes the keyboard, and leaves what is in sight as it is. */
  focus() {
    this.root.focus({ preventScroll: true });
  }

  // The pane around it may be lower than the list.
  #bringInSight() {
    this.#rows.find(({ made }) => made.id === `${this.#prefix}-${this.active}`)?.made.scrollIntoView({ block: 'nearest' });
  }

  #key(event: KeyboardEvent) {
    if (event.target !== this.root || event.ctrlKey || event.metaKey || event.altKey) return;
    const page = Math.max(1, Math.floor(this.root.clientHeight / this.#rowHeight) - 1);
    const steps: Record<string, number> = { ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page, Home: -Infinity, End: Infinity };
    if (this.#options.onKey?.(event)) return event.preventDefault();
    if (!(event.key in steps) || this.#count === 0) return undefined;
    event.preventDefault();
    this.activate(Math.min(this.#count - 1, Math.max(0, this.active + steps[event.key])));
    return this.#bringInSight();
  }
}
