// Another log to compare with, as yesterday's: read beside the one in hand.
import { announce, busy, byId } from './elements.ts';
import { Log } from './log.ts';
import type { Queue } from './queue.ts';
import { shownWords } from './signs.ts';
import { counted } from './words.ts';

const day = 86_400e6; // microseconds

export class OtherLog {
  log?: Log;
  pair?: { here: number; there: number }; // rows that people compare
  #reading?: Log;
  #listeners: (() => void)[] = [];

  constructor(private readonly queue: Queue) {
    const file = byId('otherFile');
    for (const button of document.querySelectorAll('.openOther')) button.addEventListener('click', () => file.click());
    file.addEventListener('change', () => {
      if (file.files?.length) busy(this.#read([...file.files]));
    });
  }

  onChange(call: () => void) {
    this.#listeners.push(call);
  }

  async #read(files: File[]) {
    const name = files.length === 1 ? files[0].name : counted(files.length, 'file');
    const log = new Log(
      name,
      files.map((blob) => ({ blob, name: blob.name })),
      this.queue,
      'other',
    );
    this.#reading?.cancel();
    this.#reading = log;
    try {
      await log.read(() => {});
      await log.orderByTime();
    } catch (error) {
      announce(shownWords((error as Error).message), true);
      return;
    }
    if (this.#reading !== log) return;
    this.log = log;
    this.pair = undefined;
    announce(`${shownWords(name)}: ${counted(log.count, 'message')} to compare with.`);
    for (const call of this.#listeners) call();
  }

  /** The row of the other log at the same time of its day as this one; its last one when it has no times up to that. */
  rowAt(log: Log, row: number) {
    const other = this.log;
    if (!other) return -1;
    const wanted = log.columns.microseconds[row] % day;
    const times = other.columns.microseconds;
    let at = other.count - 1;
    while (at >= 0 && !(times[at] % day <= wanted)) --at;
    return at >= 0 ? at : other.count - 1;
  }
}
