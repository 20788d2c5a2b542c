// The library as WebAssembly, and what its calls say. It is loaded with the module.

import type { Bytes } from './bytes.js';
import type { FoundProblem } from './inspector.js';
import { loadLibrary, type Call } from './library.js';

/** A message as the library says it. */
export interface Found {
  id?: number;
  echo: number;
  seq: number;
  problems?: FoundProblem[];
  [record: string]: unknown;
}

/** What is wrong with a message, what a host makes of it, and what puts it right. */
export class Problem {
  readonly severity: 'error' | 'warning';
  /** Stable, for programs: unknown-key */
  readonly code: string;
  /** Of the key; empty for the envelope. */
  readonly path: string;
  /** The first byte in the message. */
  readonly start: number;
  /** Behind the last byte. */
  readonly end: number;
  readonly message: string;
  /** What a host makes of it; may be empty. */
  readonly consequence: string;
  /** What should stand at that place, when that is known. */
  readonly remedy: string;

  constructor(found: FoundProblem) {
    ({ severity: this.severity, code: this.code, path: this.path, start: this.start, end: this.end } = found);
    ({ message: this.message, consequence: this.consequence, suggestion: this.remedy } = found);
  }

  toString(): string {
    const words = this.message.includes(this.path) ? this.message : `${this.path}: ${this.message}`;
    return words + (this.consequence && `; ${this.consequence}`) + (this.remedy && `; did you mean ${this.remedy}?`);
  }
}

/** A text that is no sound message, or values that no message can carry. */
export class MessageError extends Error {
  override readonly name = 'MessageError';
  readonly path: string;
  /** The first byte in the message that is wrong; of values that can't be written there is none. */
  readonly start: number | undefined;
  /** Behind the last byte. */
  readonly end: number | undefined;
  /** What should stand there, when that is known. */
  readonly remedy: string;

  constructor(
    words: string,
    path: string,
    /** With their places; empty for values that can't be written. */
    readonly problems: readonly Problem[] = [],
  ) {
    super(words);
    this.path = problems[0]?.path ?? path;
    this.start = problems[0]?.start;
    this.end = problems[0]?.end;
    this.remedy = problems[0]?.remedy ?? '';
  }
}

async function wasm(): Promise<Bytes> {
  const at = new URL('./vekBindings.wasm', import.meta.url);
  if (at.protocol !== 'file:') return new Uint8Array(await (await fetch(at)).arrayBuffer());
  const files = 'node:fs/promises'; // of node, whose types a page has not
  const { readFile } = (await import(files)) as { readFile: (file: URL) => Promise<Bytes> };
  return readFile(at);
}

export const library = await loadLibrary(await wasm());
const encoder = new TextEncoder();
const decoder = new TextDecoder('utf-8', { ignoreBOM: true });
let room = 1 << 16;
let buffer = library.malloc(room);

/** Bytes in the library's memory for the time of a call. */
function withBytes<Result>(bytes: Uint8Array, use: (at: number) => Result): Result {
  const at = library.malloc(bytes.length + 1);
  try {
    new Uint8Array(library.memory.buffer).set(bytes, at);
    return use(at);
  } finally {
    library.free(at);
  }
}

function call(function_: Call, bytes: Uint8Array): { isGood: boolean; result: Uint8Array } {
  return withBytes(bytes, (at) => {
    let size = function_(at, bytes.length, buffer, room);
    if (size >= room) {
      library.free(buffer);
      room = size + 1;
      buffer = library.malloc(room);
      size = function_(at, bytes.length, buffer, room);
    }
    const memory = new Uint8Array(library.memory.buffer, buffer, room);
    return { isGood: size >= 0, result: memory.slice(0, size >= 0 ? size : memory.indexOf(0)) };
  });
}

export function read(bytes: Uint8Array): Found {
  const { isGood, result } = call(library.vekBindingsRead, bytes);
  const text = decoder.decode(result);
  if (!isGood) throw new RangeError(text);
  return JSON.parse(text) as Found;
}

export function write(json: string): Uint8Array {
  const { isGood, result } = call(library.vekBindingsWrite, encoder.encode(json));
  if (isGood) return result;
  const words = decoder.decode(result);
  throw new MessageError(words, words.slice(0, Math.max(words.indexOf(': '), 0)));
}

export function problemsOf(found: Found): readonly Problem[] {
  return (found.problems ?? []).map((one) => new Problem(one));
}

/** The messages in the blocks of a log. */
export class Scanner {
  #log = library.vekBindingsOpenLog();

  /** An empty block is the end. */
  take(block: Uint8Array): Found[] {
    const size = withBytes(block, (at) => library.vekBindingsTakeLog(this.#log, at, block.length));
    if (this.#log === 0 || size < 0) throw new RangeError('out of memory');
    const found = new Uint8Array(library.memory.buffer, library.vekBindingsFound(this.#log), size);
    const lines = decoder.decode(found).split('\n');
    return lines.filter((line) => line !== '').map((line) => JSON.parse(line) as Found);
  }
  close(): void {
    library.vekBindingsCloseLog(this.#log);
    this.#log = 0;
  }
}
