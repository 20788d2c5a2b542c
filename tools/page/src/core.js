// The inspection core: the calls of core/exports.cpp. An instance serves one thread.
import { bytesOf, shownText } from './bytes.js';
import { viewed } from './viewing.js';

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
  #message(name, pieces, ...numbers) {
    const { isGood, bytes } = this.#call(name, pieces, ...numbers);
    return isGood ? { bytes } : { error: shownText(bytes) };
  }

  /** What MessageModel shows. */
  view(message) {
    return viewed(message, this.#json('pageView', message));
  }
  /** The paths of the keys that the record of a pair may have and has not, each with its field. */
  addable(message, node) {
    const { addable, fields } = JSON.parse(shownText(this.#call('pageAddable', [message], node).bytes));
    return addable.map((path, at) => ({ path, field: fields[at] }));
  }
  /** isQuoted: the value is as quote() gives it. */
  set(message, path, value, isQuoted = false) {
    return this.#message('pageSet', [message, path, value], isQuoted ? 1 : 0);
  }
  /** items: numbers of elements that stay as they stand, or bytes of values. */
  setList(message, path, items) {
    const pieces = items.flatMap((item) => [typeof item === 'number' ? bytesOf(`@${item}`) : [0x3d, ...item], [0]]);
    return this.#message('pageSetList', [message, path, Uint8Array.from(pieces.flatMap((piece) => [...piece]))]);
  }
  /** Bytes in double quotes, those that are no characters to be seen as escapes. */
  quote(bytes) {
    return shownText(this.#call('pageQuote', [bytes]).bytes);
  }
  /** First and last of each range of characters that are to be shown as marks. */
  unprintable() {
    return new Uint32Array(this.#call('pageUnprintable', []).bytes.buffer);
  }
  seal(message) {
    return this.#message('pageSeal', [message]);
  }
  form(message, form) {
    return this.#call('pageForm', [message], { show: 0, json: 1, flat: 2 }[form]).bytes;
  }
  differences(left, right) {
    return this.#json('pageDifferences', left, right);
  }
  /** What messages there are: see catalogue.js. */
  kinds() {
    return this.#json('pageKinds');
  }
  findingNames() {
    return shownText(this.#call('pageFindingNames', []).bytes).trimEnd().split('\n');
  }
  isForm(beginning) {
    return this.#call('pageIsForm', [beginning]).isGood;
  }
  readForms(text) {
    return this.#message('pageReadForms', [text]);
  }
  beginLog() {
    this.#exports.pageLogBegin();
  }
  /** The rows of the messages in the next block; without a block, the last ones. */
  takeLog(block = new Uint8Array()) {
    return this.#call('pageLogTake', [block]).bytes;
  }
  /** The row of a message alone. */
  row(message) {
    return this.#call('pageRow', [message]).bytes;
  }
  /** What a message says in a line, and what stands at some paths: see core/digest.hpp. */
  digest(message, paths) {
    return this.#json('pageDigest', message, bytesOf(paths.join('\n')));
  }
  /** How many numbers are missing in front of each of these sequence numbers. */
  missing(sequences) {
    return new Uint32Array(this.#call('pageMissing', [new Uint8Array(sequences.buffer)]).bytes.buffer);
  }
  /** Whether a text with this beginning is UTF-16; takeUtf16() then gives its blocks as UTF-8. */
  beginUtf16(beginning) {
    return this.#call('pageUtf16Begin', [beginning]).isGood;
  }
  takeUtf16(block) {
    return this.#call('pageUtf16Take', [block]).bytes;
  }
  /** Chooses messages by a condition as the command line's --where takes it; says what is wrong with it. */
  chooseWhere(expression) {
    return this.#message('pageWhereChoose', [bytesOf(expression)]);
  }
  takeWhere(places, block) {
    return this.#call('pageWhereTake', [new Uint8Array(places.buffer, 0, places.byteLength), block]).bytes;
  }
  chooseSeries(paths) {
    this.#call('pageSeriesChoose', [bytesOf(paths.join('\n'))]);
  }
  takeSeries(places, block) {
    const { bytes } = this.#call('pageSeriesTake', [new Uint8Array(places.buffer, 0, places.byteLength), block]);
    return new Float64Array(bytes.buffer);
  }
}
