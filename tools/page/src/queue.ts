// All that is asked of workers goes through here. A core reads one log at a time, so what reads has lanes of its own, in
// each one job behind the other; all else is answered side by side. What goes over the rows of a log is known by name
// while it runs, so that people see how far it is, and can stop it.
import { Reader, coreIn, type CoreCalls, type RunOptions } from './reader.ts';
import { Tasks } from './tasks.ts';
import type { Bytes } from './types.ts';
import type { Jobs } from './worker.ts';

/** The log in hand, one to compare with, and one that goes on. */
export type Lane = 'log' | 'other' | 'live';

export class Queue {
  readonly core: CoreCalls;
  readonly tasks = new Tasks();
  readonly #asking: Reader;
  #lanes = new Map<Lane, { reader: Reader; last: Promise<unknown> }>();

  constructor(private readonly wasm: Bytes) {
    this.#asking = new Reader(wasm);
    this.core = coreIn(this.#asking);
  }

  /** Gives the job's last message; in a lane, once the jobs of before have ended. */
  run<Kind extends keyof Jobs>(
    kind: Kind,
    parts: Omit<Parameters<Jobs[Kind]>[0], 'job'>,
    options: RunOptions & { lane?: Lane } = {},
  ): Promise<Awaited<ReturnType<Jobs[Kind]>>> {
    if (!options.lane) return this.#asking.run(kind, parts, options);
    const lane = this.#lane(options.lane);
    const job = lane.last.then(() => lane.reader.run(kind, parts, options));
    lane.last = job.catch(() => {});
    return job;
  }

  #lane(name: Lane) {
    const lane = this.#lanes.get(name) ?? { reader: new Reader(this.wasm), last: Promise.resolve() };
    this.#lanes.set(name, lane);
    return lane;
  }
}
