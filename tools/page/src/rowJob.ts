// What is asked of all messages of a log, be it still read or going on: known of its first rows, and asked of the others
// as they come, a stretch after the other.
import type { Log } from './log.ts';
import { Cancelled } from './cancelled.ts';

const atOnce = 200_000; // rows

export abstract class RowJob {
  end = 0; // the rows in front of it are known
  #order: number; // the log's, that they are of
  #round = 0; // what was asked in another one is not so any more
  #running?: Promise<void>;
  #stop = new AbortController();

  constructor(
    readonly log: Log,
    /** What it is, for people. */
    readonly words: string,
  ) {
    this.#order = log.order;
  }

  /** Asks for the rows from one to another; gives what keeps the answer. */
  protected abstract take(from: number, to: number, signal: AbortSignal): Promise<() => void>;
  /** The rows are others now: nothing is known of them. */
  protected abstract forget(): void;
  /** Asks again for some rows that are known. */
  protected abstract renew(rows: Uint32Array): Promise<void>;

  /** It ends where it is. */
  stop() {
    this.#stop.abort();
  }
  get isStopped() {
    return this.#stop.signal.aborted;
  }

  get isComplete() {
    return this.end === this.log.count && this.#order === this.log.order;
  }
  get share() {
    return this.log.count > 0 ? this.end / this.log.count : 1;
  }

  /** All is to be asked again. */
  restart() {
    ++this.#round;
    this.#order = this.log.order;
    this.end = 0;
    this.forget();
  }

  /** Messages were changed. */
  update(rows: Uint32Array) {
    ++this.#round;
    return this.renew(rows.filter((row) => row < this.end));
  }

  /** Goes on to the last row that there is; onMore is called with each stretch. */
  run(onMore?: () => void) {
    return (this.#running ??= this.#goOn(onMore).finally(() => (this.#running = undefined)));
  }

  async #goOn(onMore?: () => void) {
    const { tasks } = this.log.queue;
    tasks.add(this);
    try {
      while (!this.isStopped && !this.isComplete) {
        if (this.#order !== this.log.order) this.restart();
        const round = this.#round;
        const to = Math.min(this.log.count, this.end + atOnce);
        const keep = await this.take(this.end, to, this.#stop.signal);
        if (round !== this.#round || this.#order !== this.log.order) continue;
        keep();
        this.end = to;
        onMore?.();
      }
    } catch (error) {
      if (!(error instanceof Cancelled)) throw error;
    } finally {
      tasks.delete(this);
    }
  }
}
