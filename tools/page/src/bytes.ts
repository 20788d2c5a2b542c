// Bytes and texts. Messages are bytes: what is no UTF-8 in them stays what it is.

import type { Bytes } from './types.ts';

const decoder = new TextDecoder('utf-8', { ignoreBOM: true });
const encoder = new TextEncoder();

/** Bytes that are UTF-8, as text. */
export const shownText = (bytes: Bytes) => decoder.decode(bytes);

export const bytesOf = (text: string): Bytes => encoder.encode(text);

/** The core writes bytes that are no UTF-8 as the characters from here on. */
const firstByteCharacter = 0xef80;

const isByteCharacter = (code: number) => code >= firstByteCharacter && code < firstByteCharacter + 0x80;

const strict = new TextDecoder('utf-8', { ignoreBOM: true, fatal: true });

function decoded(bytes: Bytes) {
  try {
    return strict.decode(bytes);
  } catch {
    return undefined;
  }
}

const byteCharacter = (byte: number) => String.fromCharCode(firstByteCharacter + (byte & 0x7f));
const byByte = (text: string) =>
  text.replaceAll(/[\uef80-\uefff]/g, (character) => Array.from(encoder.encode(character), byteCharacter).join(''));

/** Bytes as the core's JSON has them: those that are no UTF-8 are characters of their own, as are those of these. */
export function coreText(bytes: Bytes) {
  const whole = decoded(bytes);
  if (whole !== undefined) return byByte(whole);
  let text = '';
  for (let at = 0; at < bytes.length;) {
    const lead = bytes[at];
    const size = lead < 0x80 ? 1 : lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : 4;
    const character = decoded(bytes.subarray(at, at + size));
    text += character === undefined ? byteCharacter(lead) : byByte(character);
    at += character === undefined ? 1 : size;
  }
  return text;
}

/** Where the character begins that a byte belongs to. */
export function characterStart(bytes: Bytes, at: number) {
  let start = at;
  while (start > 0 && at - start < 3 && (bytes[start] & 0xc0) === 0x80) --start;
  return start;
}

/** The bytes that a string of the core's JSON stands for. */
export function bytesOfCoreText(text: string): Bytes {
  const bytes: number[] = [];
  let plain = '';
  for (const character of text) {
    const code = character.codePointAt(0)!;
    if (!isByteCharacter(code)) {
      plain += character;
      continue;
    }
    bytes.push(...encoder.encode(plain), 0x80 | (code - firstByteCharacter));
    plain = '';
  }
  if (bytes.length === 0) return encoder.encode(plain);
  bytes.push(...encoder.encode(plain));
  return Uint8Array.from(bytes);
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
