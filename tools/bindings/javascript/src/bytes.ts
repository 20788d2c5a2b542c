// Bytes and texts. Messages are bytes: what is no UTF-8 in them stays what it is, as the characters U+EF80 to U+EFFF.

/** Bytes of their own, which a page's blobs and workers take. */
export type Bytes = Uint8Array<ArrayBuffer>;

const encoder = new TextEncoder();
const strict = new TextDecoder('utf-8', { ignoreBOM: true, fatal: true });
const firstByte = 0xef80;
const isByte = (code: number) => code >= firstByte && code < firstByte + 0x80;
const byteCharacter = (byte: number) => String.fromCharCode(firstByte + (byte & 0x7f));
const byByte = (text: string) =>
  text.replaceAll(/[\uef80-\uefff]/g, (character) => Array.from(encoder.encode(character), byteCharacter).join(''));

/** Those of other frames and of test runners too. */
export function isBytes(value: unknown): value is Uint8Array {
  return Object.prototype.toString.call(value) === '[object Uint8Array]';
}

/** Bytes that are UTF-8 as a text; nothing of others. */
export function decoded(bytes: Uint8Array): string | undefined {
  try {
    return strict.decode(bytes);
  } catch {
    return undefined;
  }
}

/** The text of bytes: those that are no UTF-8 are characters of their own, as are those of these characters. */
export function textOf(bytes: Uint8Array): string {
  const whole = decoded(bytes);
  if (whole !== undefined) return byByte(whole);
  let text = '';
  for (let at = 0; at < bytes.length;) {
    const lead = bytes[at] ?? 0;
    const size = lead < 0x80 ? 1 : lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : 4;
    const character = decoded(bytes.subarray(at, at + size));
    text += character === undefined ? byteCharacter(lead) : byByte(character);
    at += character === undefined ? 1 : size;
  }
  return text;
}

/** The bytes that such a text stands for. */
export function bytesOf(text: string): Bytes {
  if (!/[\uef80-\uefff]/.test(text)) return encoder.encode(text);
  return Uint8Array.from(
    Array.from(text, (character) => {
      const code = character.charCodeAt(0);
      return isByte(code) ? [code & 0xff] : [...encoder.encode(character)];
    }).flat(),
  );
}
