// What a panel is: a class with the id of its section less "Panel", the title of its tab, and of these what it needs.

/** A panel that does nothing yet. It is made once, of the page's parts: { core, catalogue, onRow }. */
export class Panel {
  static id;
  static title;

  /** Another log is in hand. */
  reset(_log) {}
  /** There is more of the log. */
  refresh() {}
  /** The log is read to its end. */
  async complete() {}
  /** A message of the log's row is shown. */
  show(_log, _row, _bytes) {}
  /** A row's message was changed. */
  async update(_row) {}
  /** The panel's tab was chosen. */
  open() {}
}
