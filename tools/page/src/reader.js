// The page's side of the worker: one job at a time, each a promise.
import workerSource from 'page:worker';

export class Cancelled extends Error {}

// Scripts are only run from texts that this policy makes; there is one.
const policy = globalThis.trustedTypes?.createPolicy('page', { createScriptURL: (url) => url });

export class Reader {
  #worker;
  #job = 0;
  #running;

  constructor(wasm) {
    const url = URL.createObjectURL(new Blob([workerSource], { type: 'text/javascript' }));
    this.#worker = new Worker(policy ? policy.createScriptURL(url) : url);
    this.#worker.onmessage = ({ data }) => this.#take(data);
    this.#worker.postMessage({ kind: 'start', wasm });
  }

  #take(data) {
    const running = this.#running;
    if (!running || data.job !== running.job) return;
    if (data.error) running.reject(new Error(data.error));
    else if (data.isCancelled) running.reject(new Cancelled());
    else running.onProgress?.(data);
    if (data.isLast) running.resolve(data);
  }

  /** Ends the running job; its promise fails with Cancelled. */
  cancel() {
    if (!this.#running) return;
    this.#worker.postMessage({ kind: 'cancel', job: ++this.#job });
    this.#running.reject(new Cancelled());
    this.#running = undefined;
  }

  /** kind: 'open', 'search' or 'series'; gives the job's last message. */
  run(kind, parts, onProgress) {
    this.cancel();
    const job = ++this.#job;
    return new Promise((resolve, reject) => {
      this.#running = { job, resolve, reject, onProgress };
      this.#worker.postMessage({ kind, job, ...parts });
    });
  }
}
