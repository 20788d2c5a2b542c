// What is packed with zstd, unpacked by zstd's own decoder, which checks it: few browsers know it.
import packedDecoder from 'page:zstd';
import { unpackedText } from './packed.ts';
import type { Bytes } from './types.ts';

// Sizes and places are those of a machine of 32 bits. What fails is a small negative number.
interface Decoder {
  memory: WebAssembly.Memory;
  malloc(size: number): number;
  ZSTD_createDCtx(): number;
  ZSTD_decompressStream(context: number, output: number, input: number): number;
}

const pieceSize = 1 << 20;
const windowTooLarge = -16; // ZSTD_error_frameParameter_windowTooLarge
const dictionaryWrong = -32; // ZSTD_error_dictionary_wrong

/** A file that is not what zstd packed, or not with what is here. */
export class NotUnpacked extends Error {
  constructor(
    message: string,
    /** What `zstd -d` must be told besides. */
    readonly options = '',
  ) {
    super(message);
  }
}

let compiled: Promise<WebAssembly.Module> | undefined;

// Each file has one of its own, whose memory goes with it.
async function newDecoder() {
  compiled ??= unpackedText(packedDecoder).arrayBuffer().then(WebAssembly.compile);
  const { exports } = await WebAssembly.instantiate(await compiled, { env: { emscripten_notify_memory_growth() {} } });
  return exports as unknown as Decoder;
}

function refused(code: number) {
  if (code === windowTooLarge) return new NotUnpacked('looks back farther than 128 MB', '--long=31');
  if (code === dictionaryWrong) return new NotUnpacked('needs the dictionary that it was packed with', '-D DICTIONARY');
  return new NotUnpacked('damaged');
}

/** The bytes in order, of all frames in the file. Fails with NotUnpacked, when what was given so far is not all. */
export async function* unpackedZstd(blob: Blob): AsyncGenerator<Bytes> {
  const decoder = await newDecoder();
  const context = decoder.ZSTD_createDCtx();
  const [from, to, places] = [pieceSize, pieceSize, 24].map((size) => decoder.malloc(size));
  // ZSTD_inBuffer and ZSTD_outBuffer: address, size, how far it is. The memory may have moved whenever the decoder was called.
  const buffer = (at: number) => new Uint32Array(decoder.memory.buffer, places + at, 3);
  let isWhole = false; // the last frame is
  for (let at = 0; at < blob.size; at += pieceSize) {
    const piece = new Uint8Array(await blob.slice(at, at + pieceSize).arrayBuffer());
    new Uint8Array(decoder.memory.buffer, from).set(piece);
    buffer(0).set([from, piece.length, 0]);
    for (;;) {
      const [, , before] = buffer(0);
      buffer(12).set([to, pieceSize, 0]);
      const result = decoder.ZSTD_decompressStream(context, places + 12, places);
      if (result < 0) throw refused(result);
      const [, , taken] = buffer(0);
      const [, , made] = buffer(12);
      if (taken === before && made === 0) break; // it waits for more
      isWhole = result === 0;
      if (made > 0) yield new Uint8Array(decoder.memory.buffer, to, made).slice();
    }
  }
  if (!isWhole) throw new NotUnpacked('cut off');
}
