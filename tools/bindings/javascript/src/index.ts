// Messages of laser exposure devices: read, written, checked, and found in logs.
import { bytesOf, isBytes } from './bytes.js';
import { library, MessageError, problemsOf, read, Scanner, type Found, type Problem } from './core.js';
import { Inspector } from './inspector.js';
import { messageClasses } from './messages.js';
import { readInto, shown, type Message } from './record.js';

export { MessageError, Problem } from './core.js';
export { Inspector } from './inspector.js';
export { Message, Record, type Field, type Values } from './record.js';
export * from './messages.js';

/** What people see of a message and may do to it: trees, forms, remedies, conditions; nothing of the classes. */
export const inspector = new Inspector(library);

function made(found: Found, problems: readonly Problem[]): Message {
  const kind = messageClasses.get(found.id ?? 0);
  if (!kind) throw new MessageError(`there is no class for messages of id ${found.id ?? 'unknown'}`, '', problems);
  const { record } = kind as unknown as { record: string };
  const message = readInto(new kind(), found[record] as { [key: string]: unknown });
  message.echo = found.echo;
  message.sequence = found.seq;
  message.problems = problems;
  return message;
}

function bytesIn(text: string | Uint8Array): Uint8Array {
  if (typeof text === 'string') return bytesOf(text);
  if (!isBytes(text)) throw new TypeError(`a message is a string or a Uint8Array, not ${shown(text)}`);
  return text;
}

/**
 * The message that a text is. A MessageError when something is wrong with it; with `damaged`, the values are those that
 * a host reads, and what is wrong is in the message's problems. Warnings never keep a message from being read.
 */
export function parse(text: string | Uint8Array, { damaged = false } = {}): Message {
  const found = read(bytesIn(text));
  const problems = problemsOf(found);
  const errors = problems.filter((one) => one.severity === 'error');
  if (errors[0] && !damaged) {
    const more = errors.length === 1 ? '' : ` (and ${errors.length - 1} more)`;
    throw new MessageError(String(errors[0]) + more, '', errors);
  }
  return made(found, problems);
}

/** The same of one kind: a TypeError when it is of another. */
export function parseAs<T extends Message>(kind: new () => T, text: string | Uint8Array, options?: { damaged?: boolean }): T {
  if (typeof kind !== 'function') throw new TypeError(`parseAs() takes a class of messages first, not ${shown(kind)}`);
  const message = parse(text, options);
  if (!(message instanceof kind)) throw new TypeError(`the message is no ${kind.name}, but has the id ${message.messageId}`);
  return message;
}

/** What is wrong with a text, in order of the places. */
export function check(text: string | Uint8Array): readonly Problem[] {
  return problemsOf(read(bytesIn(text)));
}

/** A message in a log, where it stood and what is wrong with it. */
export class LogMessage {
  readonly #found: Found;
  #message: Message | undefined;
  readonly problems: readonly Problem[];

  constructor(found: Found) {
    this.#found = found;
    this.problems = problemsOf(found);
  }
  /** The message as it stands. */
  get source(): Uint8Array {
    return bytesOf(this.#found['source'] as string);
  }
  /** From 1. */
  get line(): number {
    return this.#found['line'] as number;
  }
  /** Of its first byte. */
  get offset(): number {
    return this.#found['offset'] as number;
  }
  /** What stands in front of it on its line. */
  get before(): string {
    return (this.#found['before'] as string | undefined) ?? '';
  }
  /** 0 when it can't be read. */
  get id(): number {
    return this.#found.id ?? 0;
  }
  /** On its line: 2026-03-01T12:00:00.250, with Z when the log says its zone, or the time of a day alone; may be empty. */
  get time(): string {
    return (this.#found['time'] as string | undefined) ?? '';
  }
  /** Its values as a host reads them, whatever the problems. A MessageError when its id has no record. */
  get message(): Message {
    return (this.#message ??= made(this.#found, this.problems));
  }
  toString(): string {
    return `message ${this.id} in line ${this.line}, ${this.problems.length} problems`;
  }
}

/** Bytes, or pieces of them as they come: a stream of node or of a page, an array of blocks. */
export type Log = Uint8Array | Iterable<Uint8Array> | AsyncIterable<Uint8Array> | ReadableStream<Uint8Array>;

async function* blocks(log: Log): AsyncGenerator<Uint8Array> {
  if (isBytes(log)) {
    yield log;
  } else if (typeof log !== 'object' || log === null) {
    throw new TypeError(`a log is bytes or a stream of them, not ${shown(log)}`);
  } else if (Symbol.asyncIterator in log || Symbol.iterator in log) {
    yield* log as AsyncIterable<Uint8Array>;
  } else {
    const reader = log.getReader();
    for (let next = await reader.read(); !next.done; next = await reader.read()) yield next.value;
  }
}

/** The messages of a log, each as soon as it is whole, the damaged ones too. */
export async function* messages(log: Log): AsyncGenerator<LogMessage> {
  const scanner = new Scanner();
  try {
    for await (const block of blocks(log)) {
      if (!isBytes(block)) throw new TypeError('messages() reads bytes: open the log without an encoding');
      if (block.length > 0) for (const found of scanner.take(block)) yield new LogMessage(found);
    }
    for (const found of scanner.take(new Uint8Array())) yield new LogMessage(found);
  } finally {
    scanner.close();
  }
}
