// A serial line, as the browser gives it. What a line goes on after, as a bit that was read wrong, is no end of it.
import type { Line, OnBytes, OnEnd } from './live.ts';
import type { Bytes } from './types.ts';

interface SerialPort {
  open(options: { baudRate: number }): Promise<void>;
  close(): Promise<void>;
  /** After an error that the line goes on after there is another one; none when the device is gone. */
  readonly readable: ReadableStream<Bytes> | null;
  readonly writable: WritableStream<Bytes> | null;
}

/** navigator.serial, where there is one. */
export interface Serial {
  requestPort: () => Promise<SerialPort>;
}

export async function serialLine(serial: Serial, baudRate: number, onBytes: OnBytes, onEnd: OnEnd): Promise<Line> {
  const port = await serial.requestPort();
  await port.open({ baudRate });
  let reader: ReadableStreamDefaultReader<Bytes> | undefined;
  let isClosed = false;

  const read = async () => {
    let why = 'the device sends nothing more';
    let last: unknown;
    for (let stream = port.readable; stream && stream !== last && !isClosed; stream = port.readable) {
      last = stream;
      reader = stream.getReader();
      try {
        for (let next = await reader.read(); !next.done; next = await reader.read()) onBytes(next.value);
      } catch (error) {
        why = (error as Error).message;
      }
      reader.releaseLock();
    }
    if (!isClosed) onEnd(`The serial line ended: ${why}`);
  };
  const reading = read();

  const send = async (bytes: Bytes) => {
    if (!port.writable) throw new Error('the device is gone');
    const writer = port.writable.getWriter();
    try {
      await writer.write(bytes);
    } finally {
      writer.releaseLock();
    }
  };
  // A device that is gone can't be taken leave of.
  const close = async () => {
    isClosed = true;
    await reader?.cancel().catch(() => {});
    await reading;
    await port.close().catch(() => {});
  };
  return { name: `serial line, ${baudRate} baud`, send, close };
}
