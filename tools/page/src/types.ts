// What goes between the core, its worker and the page.

import type { Digest, FoundProblem } from 'vekparams2ascii/inspector';

export type { Bytes } from 'vekparams2ascii/bytes';
export type { Difference, Digest, Field, Holds, Kind, KindKey, Made, Place, Use } from 'vekparams2ascii/inspector';

/** First and last end of a stretch. */
export type Range = [from: number, to: number];

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

export type Severity = FoundProblem['severity'];

export interface Problem extends FoundProblem {
  node: number;
}

/** What a message says in a line, with what stands in front of it there. */
export interface LineDigest extends Digest {
  head: string;
  /** How many lines stand between it and the message in front of it, of those that are near. */
  between: number;
}

/** A message's bytes and its other forms. */
export type Form = 'message' | 'show' | 'json' | 'flat';

/** How a value is edited. */
export type EditorKind = 'names' | 'boolean' | 'text' | 'number' | 'list';
