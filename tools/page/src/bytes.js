// Bytes and texts. Messages are bytes: what is no UTF-8 in them stays what it is.

const decoder = new TextDecoder('utf-8', { ignoreBOM: true });
const encoder = new TextEncoder();

/** Bytes for people. */
export const shownText = (bytes) => decoder.decode(bytes);

export const bytesOf = (text) => encoder.encode(text);

/** The core writes bytes that are no UTF-8 as the characters from here on. */
const firstByteCharacter = 0xef80;

const isByteCharacter = (code) => code >= firstByteCharacter && code < firstByteCharacter + 0x80;

/** The bytes that a string of the core's JSON stands for. */
export function bytesOfCoreText(text) {
  const bytes = [];
  let plain = '';
  for (const character of text) {
    const code = character.codePointAt(0);
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

export function isSame(left, right) {
  return left.length === right.length && left.every((byte, at) => byte === right[at]);
}

/** Whether bytes are UTF-8, so that a clipboard can hold them. */
export function isUtf8(bytes) {
  try {
    new TextDecoder('utf-8', { fatal: true }).decode(bytes);
    return true;
  } catch {
    return false;
  }
}
