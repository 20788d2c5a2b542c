// Bytes and texts. Messages are bytes: what is no UTF-8 in them stays what it is.

import { bytesOf as bytesOfCoreText, decoded, textOf as coreText } from 'vekparams2ascii/bytes';
import type { Bytes } from './types.ts';

// The core's texts: bytes that are no UTF-8 are characters of their own there.
export { bytesOfCoreText, coreText };

const decoder = new TextDecoder('utf-8', { ignoreBOM: true });
const encoder = new TextEncoder();

/** Bytes that are UTF-8, as text. */
export const shownText = (bytes: Bytes) => decoder.decode(bytes);

export const bytesOf = (text: string): Bytes => encoder.encode(text);

/** Where the character begins that a byte belongs to. */
export function characterStart(bytes: Bytes, at: number) {
  let start = at;
  while (start > 0 && at - start < 3 && (bytes[start] & 0xc0) === 0x80) --start;
  return start;
}

export function isSame(left: Bytes, right: Bytes) {
  return left.length === right.length && left.every((byte, at) => byte === right[at]);
}

/** Of what stands between two messages, the whole lines; at a log's start there is no message whose line goes on. */
export function linesBetween(bytes: Bytes, isStart: boolean): string[] {
  return coreText(bytes)
    .split('\n')
    .slice(isStart ? 0 : 1, -1)
    .filter((line) => line.trim() !== '');
}

/** Whether bytes are UTF-8, so that a clipboard can hold them. */
export function isUtf8(bytes: Bytes) {
  return decoded(bytes) !== undefined;
}
