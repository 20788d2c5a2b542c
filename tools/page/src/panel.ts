// What a panel is: a class with the id of its section less "Panel", the title of its tab, and of these what it needs.
import type { Catalogue } from './catalogue.ts';
import type { Log } from './log.ts';
import type { OtherLog } from './otherLog.ts';
import type { CoreCalls } from './reader.ts';
import type { Bytes, Range } from './types.ts';

/** What panels are made of. */
export interface Parts {
  core: CoreCalls;
  catalogue: Catalogue;
  other: OtherLog;
  /** Goes to a message, and shows it in a tab: its own unless another is named. */
  onRow: (row: number, tab?: string) => void;
  /** Another stretch of the log is to be looked at, as the time line has it; nothing for all. */
  onStretch: (range: Range | undefined) => void;
}

/** A panel that does nothing yet. It is made once, of the page's parts. */
export class Panel {
  static id: string;
  static title: string;

  /** Another log is in hand. */
  reset(_log: Log): void {}
  /** There is more of the log. */
  refresh(): void {}
  /** The log is read to its end. */
  async complete(): Promise<void> {}
  /** A message of the log's row is shown. */
  show(_log: Log, _row: number, _bytes: Bytes): void {}
  /** Messages of some rows were changed. */
  async update(_rows: Uint32Array): Promise<void> {}
  /** Other messages pass the filters, that by the stretch aside; nothing when all do. */
  follow(_passes: ((row: number) => boolean) | undefined): void {}
  /** Another stretch of the log is looked at. */
  stretch(_range: Range | undefined): void {}
  /** The panel's tab was chosen. */
  open(): void {}
}
