// The page's side of a worker: jobs side by side, each a promise.
import { Cancelled } from './cancelled.ts';
import type { Core } from './core.ts';
import type { Bytes } from './types.ts';
import type { Jobs, Progress } from './worker.ts';
import workerSource from 'page:worker';

// What the worker says of a job.
interface Answer extends Progress {
  job: number;
  error?: string;
  isCancelled?: boolean;
  isLast?: boolean;
}

interface Job {
  resolve: (last: never) => void;
  reject: (error: Error) => void;
  onProgress?: (progress: Progress) => void;
}

export interface RunOptions {
  onProgress?: (progress: Progress) => void;
  signal?: AbortSignal;
}

/** The core's calls as promises. */
export type CoreCalls = {
  [Name in keyof Core]: (...parameters: Parameters<Core[Name]>) => Promise<ReturnType<Core[Name]>>;
};

interface TrustedTypes {
  createPolicy(name: string, rules: { createScriptURL: (url: string) => string }): { createScriptURL(url: string): unknown };
}

// Scripts are only run from texts that this policy makes; there is one.
const policy = (globalThis as { trustedTypes?: TrustedTypes }).trustedTypes?.createPolicy('page', {
  createScriptURL: (url: string) => url,
});

/** What may be run from an address of the page's own. */
export const scriptAddress = (url: string) => (policy ? policy.createScriptURL(url) : url);

export class Reader {
  #worker: Worker;
  #latest = 0;
  #jobs = new Map<number, Job>();

  constructor(wasm: Bytes) {
    const url = URL.createObjectURL(new Blob([workerSource], { type: 'text/javascript' }));
    this.#worker = new Worker(scriptAddress(url) as string);
    this.#worker.onmessage = ({ data }: MessageEvent<Answer>) => this.#take(data);
    this.#worker.postMessage({ kind: 'start', wasm });
  }

  #take(data: Answer) {
    const job = this.#jobs.get(data.job);
    if (!job) return;
    if (data.error !== undefined) job.reject(new Error(data.error));
    else if (data.isCancelled) job.reject(new Cancelled());
    else if (data.isLast) job.resolve(data as never);
    else return void job.onProgress?.(data);
    this.#jobs.delete(data.job);
  }

  /**
   * kind: 'open', 'search', 'series' or 'call'; gives the job's last message. When the signal says stop, it fails with
   * Cancelled.
   */
  run<Kind extends keyof Jobs>(
    kind: Kind,
    parts: Omit<Parameters<Jobs[Kind]>[0], 'job'>,
    { onProgress, signal }: RunOptions = {},
  ): Promise<Awaited<ReturnType<Jobs[Kind]>>> {
    const job = ++this.#latest;
    if (signal?.aborted) return Promise.reject(new Cancelled());
    const cancel = () => {
      this.#worker.postMessage({ kind: 'cancel', job });
      this.#jobs.get(job)?.reject(new Cancelled());
      this.#jobs.delete(job);
    };
    signal?.addEventListener('abort', cancel);
    const answer = new Promise<Awaited<ReturnType<Jobs[Kind]>>>((resolve, reject) => this.#jobs.set(job, { resolve, reject, onProgress }));
    this.#worker.postMessage({ kind, job, ...parts });
    return answer.finally(() => signal?.removeEventListener('abort', cancel)); // which may outlive many jobs
  }
}

/** The core's calls, each a promise, made in a worker: see core.ts. */
export function coreIn(reader: Reader): CoreCalls {
  const call =
    (name: keyof Core) =>
    (...parameters: unknown[]) =>
      reader.run('call', { name, parameters }).then(({ result }) => result);
  return new Proxy({} as CoreCalls, { get: (_core, name) => (name === 'then' ? undefined : call(name as keyof Core)) });
}
