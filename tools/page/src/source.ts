// The bytes of a log: those that were read, which may go on, and messages that were changed. These stand in a blob of
// their own, whose bytes count from far behind all that can be read.
import type { Bytes } from './types.ts';

export interface Source {
  read: Blob;
  tail: Bytes; // behind it, of a log that goes on
  changed: Blob;
}

export const changesAt = 2 ** 50;
const longestTail = 2 ** 18;

export const noSource = (): Source => ({ read: new Blob(), tail: new Uint8Array(), changed: new Blob() });

/** What stands from one place to another; both are of the same part. */
export function sliceOf({ read, tail, changed }: Source, start: number, end: number) {
  if (start >= changesAt) return changed.slice(start - changesAt, end - changesAt);
  if (end <= read.size) return read.slice(start, end);
  return new Blob([read.slice(start, end), tail.subarray(Math.max(0, start - read.size), end - read.size)]);
}

export async function bytesIn(source: Source, start: number, end: number): Promise<Bytes> {
  const at = start - source.read.size;
  return at >= 0 && start < changesAt
    ? source.tail.slice(at, at + end - start)
    : new Uint8Array(await sliceOf(source, start, end).arrayBuffer());
}

/** With more bytes. Browsers keep a list of what a blob was made of: one of every few bytes would not be small for long. */
export function extended(source: Source, bytes: Bytes): Source {
  const tail = new Uint8Array(source.tail.length + bytes.length);
  tail.set(source.tail);
  tail.set(bytes, source.tail.length);
  return tail.length < longestTail ? { ...source, tail } : { ...source, read: new Blob([source.read, tail]), tail: new Uint8Array() };
}
