// Which messages a filter lets pass that the worker has to look into: known for the first rows, and looked for in the
// others as they come.
import type { Log } from './log.ts';
import { Cancelled } from './reader.ts';

const atOnce = 200_000; // messages

export class RowSearch {
  isFound = new Uint8Array();
  count = 0; // rows that were looked at
  #stop = new AbortController();

  isRunning = false;

  /** job: the worker's, 'search' or 'where', with its parameters. */
  constructor(
    readonly log: Log,
    readonly job: 'search' | 'where',
    readonly parameters: { words: string } | { expression: string },
  ) {}

  end() {
    this.#stop.abort();
  }

  /** Looks at the rows that are not known yet; onMore is called with each stretch. */
  async run(onMore: () => void) {
    if (this.isRunning) return;
    this.isRunning = true;
    try {
      while (this.count < this.log.count) await this.#take(Math.min(this.log.count, this.count + atOnce), onMore);
    } catch (error) {
      if (!(error instanceof Cancelled)) throw error;
    } finally {
      this.isRunning = false;
    }
  }

  async #take(end: number, onMore: () => void) {
    const rows = new Uint32Array(end - this.count);
    for (let at = 0; at < rows.length; ++at) rows[at] = this.count + at;
    const isFound = await this.log.find(this.job, rows, this.parameters, this.#stop.signal);
    const all = new Uint8Array(end);
    all.set(this.isFound.subarray(0, this.count));
    all.set(isFound, this.count);
    this.isFound = all;
    this.count = end;
    onMore();
  }

  /** Messages were changed. */
  async update(rows: Uint32Array) {
    const known = rows.filter((row) => row < this.count);
    const isFound = await this.log.find(this.job, known, this.parameters);
    known.forEach((row, at) => (this.isFound[row] = isFound[at]));
  }
}
