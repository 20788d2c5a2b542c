// The inspection core: the calls of core/exports.cpp. An instance serves one thread.
import { bytesOf, shownText } from './bytes.js';

// What a module without a system asks of one: the time of day; nothing else is of use to it.
function systemCalls(module, memory) {
  const known = {
    clock_time_get: (_clock, _precision, at) => {
      new DataView(memory().buffer).setBigUint64(at, BigInt(Date.now()) * 1000000n, true);
      return 0;
    },
    proc_exit: () => {
      throw new Error('the inspection core stopped');
    },
  };
  const imports = {};
  for (const { module: from, name } of WebAssembly.Module.imports(module))
    (imports[from] ??= {})[name] = known[name] ?? (() => 0);
  return imports;
}

export class Core {
  #exports;

  static async load(wasm) {
    const core = new Core();
    const module = await WebAssembly.compile(wasm);
    const memory = () => core.#exports.memory;
    const instance = await WebAssembly.instantiate(module, systemCalls(module, memory));
    core.#exports = instance.exports;
    core.#exports._initialize?.();
    return core;
  }

  /** Makes a call with some pieces of bytes; gives its result's bytes, and whether it is one or the reason why not. */
  #call(name, pieces, ...numbers) {
    const exports = this.#exports;
    const sizes = pieces.map((piece) => piece.length);
    let at = exports.pageInput(sizes.reduce((sum, size) => sum + size, 0));
    for (const piece of pieces) {
      new Uint8Array(exports.memory.buffer, at, piece.length).set(piece);
      at += piece.length;
    }
    const isGood = exports[name](...sizes, ...numbers) === 1;
    const bytes = new Uint8Array(exports.memory.buffer, exports.pageResult(), exports.pageResultSize()).slice();
    return { isGood, bytes };
  }

  #json(name, ...pieces) {
    return JSON.parse(shownText(this.#call(name, pieces).bytes));
  }

  // A message, or why there is none.
  #message(name, ...pieces) {
    const { isGood, bytes } = this.#call(name, pieces);
    return isGood ? { bytes } : { error: shownText(bytes) };
  }

  view(message) {
    return this.#json('pageView', message);
  }
  set(message, path, value) {
    return this.#message('pageSet', message, path, value);
  }
  seal(message) {
    return this.#message('pageSeal', message);
  }
  form(message, form) {
    return this.#call('pageForm', [message], { show: 0, json: 1, flat: 2 }[form]).bytes;
  }
  differences(left, right) {
    return this.#json('pageDifferences', left, right);
  }
  catalogue() {
    return this.#json('pageCatalogue');
  }
  findingNames() {
    return shownText(this.#call('pageFindingNames', []).bytes).trimEnd().split('\n');
  }
  isForm(beginning) {
    return this.#call('pageIsForm', [beginning]).isGood;
  }
  readForms(text) {
    return this.#message('pageReadForms', text);
  }
  beginLog() {
    this.#exports.pageLogBegin();
  }
  /** The rows of the messages in the next block; without a block, the last ones. */
  takeLog(block = new Uint8Array()) {
    return this.#call('pageLogTake', [block]).bytes;
  }
  chooseSeries(paths) {
    this.#call('pageSeriesChoose', [bytesOf(paths.join('\n'))]);
  }
  takeSeries(places, block) {
    const { bytes } = this.#call('pageSeriesTake', [new Uint8Array(places.buffer, 0, places.byteLength), block]);
    return new Float64Array(bytes.buffer);
  }
}
