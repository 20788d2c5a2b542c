// What was changed, step by step, so that it can be taken back and done again.

import type { Snapshot } from './log.ts';

/** Messages of some rows before and after. */
export interface Step {
  rows: Uint32Array;
  before: Snapshot;
  after: Snapshot;
}

export class History {
  #steps: Step[] = [];
  #at = 0; // how many of them are done
  #saved = 0; // how many were when the log was saved

  add(step: Step) {
    if (this.#saved > this.#at) this.#saved = -1; // what was saved can't be come back to
    this.#steps.length = this.#at;
    this.#steps.push(step);
    ++this.#at;
  }

  get canUndo() {
    return this.#at > 0;
  }
  get canRedo() {
    return this.#at < this.#steps.length;
  }

  /** The step to take back, or to do again. */
  undo() {
    return this.#steps[--this.#at];
  }
  redo() {
    return this.#steps[this.#at++];
  }

  noteSaved() {
    this.#saved = this.#at;
  }
  get isSaved() {
    return this.#saved === this.#at;
  }
}
