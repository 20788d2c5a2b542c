// The bytes of a log: those that were read, which may go on, and messages that were changed. These stand in a blob of
// their own, whose bytes count from far behind all that can be read.

export interface Source {
  read: Blob;
  changed: Blob;
}

export const changesAt = 2 ** 50;

/** What stands from one place to another; both are of the same blob. */
export const sliceOf = ({ read, changed }: Source, start: number, end: number) =>
  start < changesAt ? read.slice(start, end) : changed.slice(start - changesAt, end - changesAt);
