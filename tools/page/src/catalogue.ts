// The catalogue: what the page knows of each id without a message of it.

import type { Holds, Kind, KindKey } from './types.ts';

const numeric = new Set<Holds | undefined>(['integer', 'real', 'boolean', 'name']);

/** Whether what a field holds can be plotted. */
export const isNumeric = (holds: Holds | undefined) => numeric.has(holds);

export class Catalogue {
  #kinds: Map<number, Kind>;

  /** kinds: as the core has them. */
  constructor(kinds: Kind[]) {
    this.#kinds = new Map(kinds.map((kind) => [kind.id, kind]));
  }

  find(id: number) {
    return this.#kinds.get(id);
  }

  name(id: number) {
    const kind = this.#kinds.get(id);
    if (!kind) return id < 0 ? 'without an id' : 'unknown id';
    return kind.name ?? 'without a structure';
  }

  /** The paths of a message's single numbers, with what they hold and its names. */
  numbers(id: number) {
    return this.keys(id).filter(({ path, holds }) => isNumeric(holds) && !path.includes('['));
  }

  /** The paths of all its values. */
  keys(id: number): KindKey[] {
    return this.#kinds.get(id)?.keys ?? [];
  }
}
