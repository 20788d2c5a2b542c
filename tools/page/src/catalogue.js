// The catalogue: what the page knows of each id without a message of it.

const numeric = new Set(['integer', 'real', 'boolean', 'name']);

/** Whether what a field holds can be plotted. */
export const isNumeric = (holds) => numeric.has(holds);

export class Catalogue {
  #kinds;

  /** kinds: as the core has them. */
  constructor(kinds) {
    this.#kinds = new Map(kinds.map((kind) => [kind.id, kind]));
  }

  find(id) {
    return this.#kinds.get(id);
  }

  name(id) {
    const kind = this.#kinds.get(id);
    if (!kind) return id < 0 ? 'without an id' : 'unknown id';
    return kind.name ?? 'without a structure';
  }

  /** The paths of a message's single numbers, with what they hold and its names. */
  numbers(id) {
    return this.#kinds.get(id)?.numbers ?? [];
  }
}
