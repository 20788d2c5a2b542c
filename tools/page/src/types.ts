// What goes between the core, its worker and the page.

export type Bytes = Uint8Array<ArrayBuffer>;

/** First and last end of a stretch. */
export type Range = [from: number, to: number];

/** Bytes from start to end. */
export interface Place {
  start: number;
  end: number;
}

/** Where a message stands in the log's bytes. */
export interface Stretch {
  start: number;
  size: number;
}

/** And where the line has it: a changed one stands elsewhere. */
export interface LinePlace extends Stretch {
  lineAt: number;
  /** Where the message in front of it in its file ends. */
  after: number;
}

export interface NamedBlob {
  name: string;
  blob: Blob;
}

/** What a field holds. */
export type Holds = 'boolean' | 'integer' | 'real' | 'name' | 'text' | 'record';

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

export type Severity = 'warning' | 'error';

export interface Problem extends Place {
  code: string;
  severity: Severity;
  message: string;
  consequence?: string;
  suggestion?: string;
  path?: string;
  node: number;
}

/** What a message says in a line: see core/digest.hpp. */
export interface Digest {
  severity?: number;
  parts: { key?: string; value: string }[];
  values: (string | null)[];
}

/** With what stands in front of it on its line. */
export interface LineDigest extends Digest {
  head: string;
  /** How many lines stand between it and the message in front of it, of those that are near. */
  between: number;
}

/** How a pair is read. */
export type Use = 'assigned' | 'empty' | 'derived' | 'unknown' | 'duplicate' | 'noKey' | 'surplus' | 'unread';

/** A message's bytes and its other forms. */
export type Form = 'message' | 'show' | 'json' | 'flat';

/** How a value is edited. */
export type EditorKind = 'names' | 'boolean' | 'text' | 'number' | 'list';
