// The inspection core: the calls of core/exports.cpp. An instance serves one thread.
import type { Bytes, Difference, Digest, Field, Form, Kind, Made, Place } from './types.ts';
import type { CoreView, View } from './viewing.ts';
import { bytesOf, shownText } from './bytes.ts';
import { viewed } from './viewing.ts';

// What a module without a system asks of one: the time of day; nothing else is of use to it.
function systemCalls(module: WebAssembly.Module, memory: () => WebAssembly.Memory) {
  const known: Record<string, (...parameters: never[]) => number> = {
    clock_time_get: (_clock: number, _precision: bigint, at: number) => {
      new DataView(memory().buffer).setBigUint64(at, BigInt(Date.now()) * 1000000n, true);
      return 0;
    },
    proc_exit: () => {
      throw new Error('the inspection core stopped');
    },
  };
  const imports: WebAssembly.Imports = {};
  for (const { module: from, name } of WebAssembly.Module.imports(module)) (imports[from] ??= {})[name] = known[name] ?? (() => 0);
  return imports;
}

interface Exports {
  memory: WebAssembly.Memory;
  _initialize?: () => void;
  pageInput: (size: number) => number;
  pageResult: () => number;
  pageResultSize: () => number;
  pageLogBegin: () => void;
  [call: string]: unknown;
}

/** What can be done about a problem. */
export interface Remedy {
  problem: number;
  words: string;
  certain: boolean;
}

/** A key that a message may have. */
export interface AddableKey {
  path: string;
  field: Field;
}

export class Core {
  #exports!: Exports;

  static async load(wasm: Bytes) {
    const core = new Core();
    const module = await WebAssembly.compile(wasm);
    const memory = () => core.#exports.memory;
    const instance = await WebAssembly.instantiate(module, systemCalls(module, memory));
    core.#exports = instance.exports as unknown as Exports;
    core.#exports._initialize?.();
    return core;
  }

  /** Makes a call with some pieces of bytes; gives its result's bytes, and whether it is one or the reason why not. */
  #call(name: string, pieces: Bytes[], ...numbers: number[]): { isGood: boolean; bytes: Bytes } {
    const exports = this.#exports;
    const sizes = pieces.map((piece) => piece.length);
    let at = exports.pageInput(sizes.reduce((sum, size) => sum + size, 0));
    for (const piece of pieces) {
      new Uint8Array(exports.memory.buffer, at, piece.length).set(piece);
      at += piece.length;
    }
    const isGood = (exports[name] as (...parameters: number[]) => number)(...sizes, ...numbers) === 1;
    const bytes = new Uint8Array(exports.memory.buffer, exports.pageResult(), exports.pageResultSize()).slice();
    return { isGood, bytes };
  }

  #json<Result>(name: string, ...pieces: Bytes[]): Result {
    return JSON.parse(shownText(this.#call(name, pieces).bytes)) as Result;
  }

  // A message, or why there is none.
  #message(name: string, pieces: Bytes[], ...numbers: number[]): Made {
    const { isGood, bytes } = this.#call(name, pieces, ...numbers);
    return isGood ? { bytes } : { error: shownText(bytes) };
  }

  /** What MessageModel shows. */
  view(message: Bytes): View {
    return viewed(message, this.#json<CoreView>('pageView', message));
  }
  /** The paths of the keys that the record of a pair may have and has not, each with its field. */
  addable(message: Bytes, node: number): AddableKey[] {
    const { addable, fields } = JSON.parse(shownText(this.#call('pageAddable', [message], node).bytes)) as {
      addable: string[];
      fields: Field[];
    };
    return addable.map((path, at) => ({ path, field: fields[at] }));
  }
  /** isQuoted: the value is as quote() gives it. */
  set(message: Bytes, path: Bytes, value: Bytes, isQuoted = false) {
    return this.#message('pageSet', [message, path, value], isQuoted ? 1 : 0);
  }
  /** items: numbers of elements that stay as they stand, or bytes of values. */
  setList(message: Bytes, path: Bytes, items: (number | Bytes)[]) {
    const pieces = items.flatMap((item) => [typeof item === 'number' ? bytesOf(`@${item}`) : [0x3d, ...item], [0]]);
    return this.#message('pageSetList', [message, path, Uint8Array.from(pieces.flatMap((piece) => [...piece]))]);
  }
  /** Bytes in double quotes, those that are no characters to be seen as escapes. */
  quote(bytes: Bytes) {
    return shownText(this.#call('pageQuote', [bytes]).bytes);
  }
  /** First and last of each range of characters that are to be shown as marks. */
  unprintable() {
    return new Uint32Array(this.#call('pageUnprintable', []).bytes.buffer);
  }
  seal(message: Bytes) {
    return this.#message('pageSeal', [message]);
  }
  /** What sealing changes, in words. */
  sealChanges(message: Bytes, sealed: Bytes) {
    return shownText(this.#call('pageSealChanges', [message, sealed]).bytes);
  }
  /** What can be done about the problems of a message, by their numbers. */
  remedies(message: Bytes): Remedy[] {
    return this.#json('pageRemedies', message);
  }
  /** The message with what is to be done about a problem. */
  mend(message: Bytes, problem: number) {
    return this.#call('pageMend', [message], problem).bytes;
  }
  /** The same about all of a kind, where it is certain; findings go by their numbers. */
  mendKind(message: Bytes, finding: number) {
    return this.#call('pageMendKind', [message], finding).bytes;
  }
  form(message: Bytes, form: Exclude<Form, 'message'>) {
    return this.#call('pageForm', [message], { show: 0, json: 1, flat: 2 }[form]).bytes;
  }
  differences(left: Bytes, right: Bytes): Difference[] {
    return this.#json('pageDifferences', left, right);
  }
  /** What messages there are: see catalogue.ts. */
  kinds(): Kind[] {
    return this.#json('pageKinds');
  }
  findingNames() {
    return shownText(this.#call('pageFindingNames', []).bytes).trimEnd().split('\n');
  }
  isForm(beginning: Bytes) {
    return this.#call('pageIsForm', [beginning]).isGood;
  }
  readForms(text: Bytes) {
    return this.#message('pageReadForms', [text]);
  }
  beginLog() {
    this.#exports.pageLogBegin();
  }
  /** The rows of the messages in the next block; without a block, the last ones. */
  takeLog(block: Bytes = new Uint8Array()) {
    return this.#call('pageLogTake', [block]).bytes;
  }
  /** The row of a message alone. */
  row(message: Bytes) {
    return this.#call('pageRow', [message]).bytes;
  }
  /** What a message says in a line, and what stands at some paths: see core/digest.hpp. */
  digest(message: Bytes, paths: string[]): Digest {
    return this.#json('pageDigest', message, bytesOf(paths.join('\n')));
  }
  /** How many numbers are missing in front of each of these sequence numbers. */
  missing(sequences: Int32Array<ArrayBuffer>) {
    return new Uint32Array(this.#call('pageMissing', [new Uint8Array(sequences.buffer)]).bytes.buffer);
  }
  /** Whether a text with this beginning is UTF-16; takeUtf16() then gives its blocks as UTF-8. */
  beginUtf16(beginning: Bytes) {
    return this.#call('pageUtf16Begin', [beginning]).isGood;
  }
  takeUtf16(block: Bytes) {
    return this.#call('pageUtf16Take', [block]).bytes;
  }
  /** Chooses messages by a condition as the command line's --where takes it; says what is wrong with it, and where. */
  chooseWhere(expression: string): (Place & { words: string }) | undefined {
    const { isGood, bytes } = this.#call('pageWhereChoose', [bytesOf(expression)]);
    if (isGood) return undefined;
    const [start, end, ...words] = shownText(bytes).split('\n');
    return { start: Number(start), end: Number(end), words: words.join('\n') };
  }
  takeWhere(places: Uint32Array<ArrayBuffer>, block: Bytes) {
    return this.#call('pageWhereTake', [new Uint8Array(places.buffer, 0, places.byteLength), block]).bytes;
  }
  chooseSeries(paths: string[]) {
    this.#call('pageSeriesChoose', [bytesOf(paths.join('\n'))]);
  }
  takeSeries(places: Uint32Array<ArrayBuffer>, block: Bytes) {
    const { bytes } = this.#call('pageSeriesTake', [new Uint8Array(places.buffer, 0, places.byteLength), block]);
    return new Float64Array(bytes.buffer);
  }
}
