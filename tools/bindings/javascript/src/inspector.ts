// What people see of a message and may do to it: its tree and forms, what is wrong with it and how that is mended, logs as
// rows, conditions, and the numbers of plots. The page of the inspector is made with it.
import type { Bytes } from './bytes.js';
import type { Library } from './library.js';

const encoder = new TextEncoder();
const decoder = new TextDecoder('utf-8', { ignoreBOM: true });

const wrappings = ['', 'UTF-16', 'UTF-16', 'JSON', 'escapes'] as const;

/** What a log is wrapped in; an empty text for one that is not. */
export type Wrapping = (typeof wrappings)[number];

/** What a field holds. */
export type Holds = 'boolean' | 'integer' | 'real' | 'name' | 'text' | 'record';

/** How a pair is read. */
export type Use = 'assigned' | 'empty' | 'derived' | 'unknown' | 'duplicate' | 'noKey' | 'surplus' | 'unread';

/** Bytes from start to end. */
export interface Place {
  start: number;
  end: number;
}

export interface Field {
  key: string;
  holds: Holds;
  words: string;
  list: boolean;
  member?: string;
  type?: string;
  default?: string;
  names?: string[];
}

/** The path of a value that messages of a kind may have; [*] is any element of a list. */
export interface KindKey {
  path: string;
  holds: Holds;
  names?: string[];
}

/** A kind of message; only its id when it has no record. */
export interface Kind {
  id: number;
  constant?: string;
  name?: string;
  about?: string;
  keys?: KindKey[];
}

/** A message that was made, or why there is none. */
export type Made = { bytes: Bytes; error?: undefined } | { bytes?: undefined; error: string };

/** A side that is not there is left out. */
export interface Difference {
  path: string;
  left?: string;
  right?: string;
}

/** A problem as the library says it. */
export interface FoundProblem extends Place {
  severity: 'error' | 'warning';
  code: string;
  path: string;
  message: string;
  consequence: string;
  suggestion: string;
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

/** What a message says in a line. */
export interface Digest {
  /** That the device itself gives: 0 none, 1 or 2. */
  severity?: number;
  /** Texts first, then what is not as it always is. */
  parts: { key?: string; value: string }[];
  /** What stands at the paths. */
  values: (string | null)[];
}

/** A message with the places of its parts. */
export interface View {
  id?: number;
  name?: string;
  echo?: number;
  seq?: number;
  length?: number;
  envelope: Record<string, Place>;
  fields: Field[];
  nodes: { path: string; use: Use; parent?: number; value?: Place; whole: Place }[];
  /** Of each node, in the same order. */
  more: { field?: number; depth: number; element?: boolean; count?: number; value?: string }[];
  problems?: FoundProblem[];
}

const viewOf = ({ buffer, byteOffset, byteLength }: ArrayBufferView) => new Uint8Array(buffer, byteOffset, byteLength);

/** The inspection core. Jobs of a log, of a wrapped one, of conditions and of numbers go on one at a time each. */
export class Inspector {
  readonly #library: Library;

  constructor(library: Library) {
    this.#library = library;
  }

  /** Makes a call with some pieces of bytes; gives its result's bytes, and whether it is one or the reason why not. */
  #call(name: `page${string}`, pieces: Uint8Array[], ...numbers: number[]): { isGood: boolean; bytes: Bytes } {
    const library = this.#library;
    const sizes = pieces.map((piece) => piece.length);
    let at = library.pageInput(sizes.reduce((sum, size) => sum + size, 0));
    for (const piece of pieces) {
      new Uint8Array(library.memory.buffer, at, piece.length).set(piece);
      at += piece.length;
    }
    const isGood = library[name]!(...sizes, ...numbers) === 1;
    const bytes = new Uint8Array(library.memory.buffer, library.pageResult(), library.pageResultSize()).slice();
    return { isGood, bytes };
  }

  #json<Result>(name: `page${string}`, ...pieces: Uint8Array[]): Result {
    return JSON.parse(decoder.decode(this.#call(name, pieces).bytes)) as Result;
  }

  // A message, or why there is none.
  #message(name: `page${string}`, pieces: Uint8Array[], ...numbers: number[]): Made {
    const { isGood, bytes } = this.#call(name, pieces, ...numbers);
    return isGood ? { bytes } : { error: decoder.decode(bytes) };
  }

  view(message: Uint8Array): View {
    return this.#json('pageView', message);
  }
  /** The paths of the keys that the record of a pair may have and has not, each with its field. */
  addable(message: Uint8Array, node: number): AddableKey[] {
    const { addable, fields } = JSON.parse(decoder.decode(this.#call('pageAddable', [message], node).bytes)) as {
      addable: string[];
      fields: Field[];
    };
    return addable.map((path, at) => ({ path, field: fields[at]! }));
  }
  /** isQuoted: the value is as quote() gives it. */
  set(message: Uint8Array, path: Uint8Array, value: Uint8Array, isQuoted = false) {
    return this.#message('pageSet', [message, path, value], isQuoted ? 1 : 0);
  }
  /** items: numbers of elements that stay as they stand, or bytes of values. */
  setList(message: Uint8Array, path: Uint8Array, items: (number | Uint8Array)[]) {
    const pieces = items.flatMap((item) => [typeof item === 'number' ? encoder.encode(`@${item}`) : [0x3d, ...item], [0]]);
    return this.#message('pageSetList', [message, path, Uint8Array.from(pieces.flatMap((piece) => [...piece]))]);
  }
  /** Bytes in double quotes, those that are no characters to be seen as escapes. */
  quote(bytes: Uint8Array) {
    return decoder.decode(this.#call('pageQuote', [bytes]).bytes);
  }
  /** First and last of each range of characters that are to be shown as marks. */
  unprintable() {
    return new Uint32Array(this.#call('pageUnprintable', []).bytes.buffer);
  }
  seal(message: Uint8Array) {
    return this.#message('pageSeal', [message]);
  }
  /** What sealing changes, in words. */
  sealChanges(message: Uint8Array, sealed: Uint8Array) {
    return decoder.decode(this.#call('pageSealChanges', [message, sealed]).bytes);
  }
  /** What can be done about the problems of a message, by their numbers. */
  remedies(message: Uint8Array): Remedy[] {
    return this.#json('pageRemedies', message);
  }
  /** The message with what is to be done about a problem. */
  mend(message: Uint8Array, problem: number) {
    return this.#call('pageMend', [message], problem).bytes;
  }
  /** The same about all of a kind, where it is certain; findings go by their numbers. */
  mendKind(message: Uint8Array, finding: number) {
    return this.#call('pageMendKind', [message], finding).bytes;
  }
  form(message: Uint8Array, form: 'show' | 'json' | 'flat') {
    return this.#call('pageForm', [message], { show: 0, json: 1, flat: 2 }[form]).bytes;
  }
  differences(left: Uint8Array, right: Uint8Array): Difference[] {
    return this.#json('pageDifferences', left, right);
  }
  /** What messages there are. */
  kinds(): Kind[] {
    return this.#json('pageKinds');
  }
  findingNames() {
    return decoder.decode(this.#call('pageFindingNames', []).bytes).trimEnd().split('\n');
  }
  isForm(beginning: Uint8Array) {
    return this.#call('pageIsForm', [beginning]).isGood;
  }
  readForms(text: Uint8Array) {
    return this.#message('pageReadForms', [text]);
  }
  /** How messages are encoded that were not found in a text with this beginning, and what decodes them; else nothing. */
  encoding(beginning: Uint8Array) {
    return decoder.decode(this.#call('pageEncoding', [beginning]).bytes);
  }
  beginLog() {
    this.#library.pageLogBegin();
  }
  /** The rows of the messages in the next block; without a block, the last ones. */
  takeLog(block: Uint8Array = new Uint8Array()) {
    return this.#call('pageLogTake', [block]).bytes;
  }
  /** The row of a message alone. */
  row(message: Uint8Array) {
    return this.#call('pageRow', [message]).bytes;
  }
  /** What a message says in a line, and what stands at some paths. */
  digest(message: Uint8Array, paths: string[]): Digest {
    return this.#json('pageDigest', message, encoder.encode(paths.join('\n')));
  }
  /** How many numbers are missing in front of each of these sequence numbers. */
  missing(sequences: Int32Array) {
    return new Uint32Array(this.#call('pageMissing', [viewOf(sequences)]).bytes.buffer);
  }
  /** How a log with this beginning, or of which this is all, is wrapped; takeUnwrapped() then gives what its blocks hold. */
  beginUnwrapping(beginning: Uint8Array, isAll: boolean): Wrapping {
    return wrappings[Number(decoder.decode(this.#call('pageUnwrapBegin', [beginning], isAll ? 1 : 0).bytes))]!;
  }
  /** The next block, and an empty one at the log's end. */
  takeUnwrapped(block: Uint8Array) {
    return this.#call('pageUnwrapTake', [block]).bytes;
  }
  /** What the next piece of a log that goes on holds, and an empty one at its end; how it is wrapped, once that shows. */
  takeGrowing(piece: Uint8Array): { wrapping: Wrapping; bytes: Bytes } {
    const { bytes } = this.#call('pageGrow', [piece]);
    return { wrapping: wrappings[bytes[0]!]!, bytes: bytes.subarray(1) };
  }
  /** Chooses messages by a condition as the command line's --where takes it; says what is wrong with it, and where. */
  chooseWhere(expression: string): (Place & { words: string }) | undefined {
    const { isGood, bytes } = this.#call('pageWhereChoose', [encoder.encode(expression)]);
    if (isGood) return undefined;
    const [start, end, ...words] = decoder.decode(bytes).split('\n');
    return { start: Number(start), end: Number(end), words: words.join('\n') };
  }
  takeWhere(places: Uint32Array, block: Uint8Array) {
    return this.#call('pageWhereTake', [viewOf(places), block]).bytes;
  }
  chooseSeries(paths: string[]) {
    this.#call('pageSeriesChoose', [encoder.encode(paths.join('\n'))]);
  }
  takeSeries(places: Uint32Array, block: Uint8Array) {
    const { bytes } = this.#call('pageSeriesTake', [viewOf(places), block]);
    return new Float64Array(bytes.buffer);
  }
}
