// A list of any length whose items are of any height: it stands in its element in pieces, of which only those in sight are
// drawn.
import { element } from './elements.ts';

const pieceSize = 50;
const usualHeight = 36; // of an item, in pixels, until it was drawn

interface Piece {
  first: number;
  count: number;
  isDrawn?: boolean;
}

export class Pieces {
  #pieces = new Map<HTMLElement, Piece>();
  #sight: IntersectionObserver;

  /** list: what holds the pieces, a table's bodies or a list's parts; root: what scrolls. */
  constructor(
    private readonly list: HTMLElement,
    private readonly root: HTMLElement,
    private readonly item: (at: number) => HTMLElement,
  ) {
    this.#sight = new IntersectionObserver((entries) => this.#follow(entries), { root, rootMargin: '300px' });
  }

  show(total: number) {
    const isTable = this.list.tagName === 'TABLE';
    this.#sight.disconnect();
    for (const made of this.#pieces.keys()) made.remove();
    this.#pieces.clear();
    for (let first = 0; first < total; first += pieceSize) {
      const count = Math.min(pieceSize, total - first);
      const made = isTable ? element('tbody') : element('div', { role: 'presentation' });
      this.#pieces.set(made, { first, count });
      this.#clear(made, count * usualHeight);
    }
    this.list.append(...this.#pieces.keys());
    this.root.scrollTop = 0;
    const [start] = this.#pieces.keys();
    if (start) this.#draw(start);
    for (const made of this.#pieces.keys()) this.#sight.observe(made);
  }

  // The one with the focus stays, so that the keyboard goes on from it.
  #follow(entries: IntersectionObserverEntry[]) {
    for (const { target, isIntersecting } of entries) {
      const made = target as HTMLElement;
      const piece = this.#pieces.get(made);
      if (!piece || piece.isDrawn === isIntersecting) continue;
      if (isIntersecting) this.#draw(made);
      else if (!made.contains(document.activeElement)) this.#clear(made, made.offsetHeight);
    }
  }

  #draw(made: HTMLElement) {
    const piece = this.#pieces.get(made)!;
    piece.isDrawn = true;
    made.replaceChildren(...Array.from({ length: piece.count }, (_one, at) => this.item(piece.first + at)));
  }

  // A table's body is as high as its rows.
  #clear(made: HTMLElement, height: number) {
    this.#pieces.get(made)!.isDrawn = false;
    const room = element(made.tagName === 'TBODY' ? 'tr' : 'div', { class: 'pieceRoom', 'aria-hidden': true });
    room.style.height = `${height}px`;
    made.replaceChildren(room);
  }
}
