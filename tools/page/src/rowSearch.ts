// Which messages a filter lets pass that the worker has to look into.
import type { Log } from './log.ts';
import { RowJob } from './rowJob.ts';

export class RowSearch extends RowJob {
  isFound = new Uint8Array();

  /** job: the worker's, 'search' or 'where', with its parameters. */
  constructor(
    log: Log,
    words: string,
    readonly job: 'search' | 'where',
    readonly parameters: { words: string } | { expression: string },
  ) {
    super(log, words);
  }

  protected override forget() {
    this.isFound = new Uint8Array();
  }

  protected override async take(from: number, to: number, signal: AbortSignal) {
    const rows = Uint32Array.from({ length: to - from }, (_one, at) => from + at);
    const isFound = await this.log.find(this.job, rows, this.parameters, signal);
    return () => {
      const all = new Uint8Array(to);
      all.set(this.isFound.subarray(0, from));
      all.set(isFound, from);
      this.isFound = all;
    };
  }

  protected override async renew(rows: Uint32Array) {
    const isFound = await this.log.find(this.job, rows, this.parameters);
    rows.forEach((row, at) => (this.isFound[row] = isFound[at]));
  }
}
