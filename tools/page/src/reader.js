// The page's side of a worker: jobs side by side, each a promise.
import workerSource from 'page:worker';

export class Cancelled extends Error {}

// Scripts are only run from texts that this policy makes; there is one.
const policy = globalThis.trustedTypes?.createPolicy('page', { createScriptURL: (url) => url });

export class Reader {
  #worker;
  #latest = 0;
  #jobs = new Map();

  constructor(wasm) {
    const url = URL.createObjectURL(new Blob([workerSource], { type: 'text/javascript' }));
    this.#worker = new Worker(policy ? policy.createScriptURL(url) : url);
    this.#worker.onmessage = ({ data }) => this.#take(data);
    this.#worker.postMessage({ kind: 'start', wasm });
  }

  #take(data) {
    const job = this.#jobs.get(data.job);
    if (!job) return;
    if (data.error !== undefined) job.reject(new Error(data.error));
    else if (data.isCancelled) job.reject(new Cancelled());
    else if (data.isLast) job.resolve(data);
    else return void job.onProgress?.(data);
    this.#jobs.delete(data.job);
  }

  /**
   * kind: 'open', 'search', 'series' or 'call'; gives the job's last message. When the signal says stop, it fails with
   * Cancelled.
   */
  run(kind, parts, { onProgress, signal } = {}) {
    const job = ++this.#latest;
    return new Promise((resolve, reject) => {
      if (signal?.aborted) return reject(new Cancelled());
      this.#jobs.set(job, { resolve, reject, onProgress });
      signal?.addEventListener('abort', () => {
        this.#worker.postMessage({ kind: 'cancel', job });
        if (this.#jobs.delete(job)) reject(new Cancelled());
      });
      return this.#worker.postMessage({ kind, job, ...parts });
    });
  }
}

/** The core's calls, each a promise, made in a worker: see core.js. */
export function coreIn(reader) {
  const call = (name) => (...parameters) => reader.run('call', { name, parameters }).then(({ result }) => result);
  return new Proxy({}, { get: (_core, name) => (name === 'then' ? undefined : call(name)) });
}
