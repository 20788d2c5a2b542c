// A WebSocket bridge of this machine, as websocketd is one, for tests.
import { createHash } from 'node:crypto';
import { createServer } from 'node:http';

// The text of a browser's frame.
function unmasked(frame) {
  const start = (frame[1] & 0x7f) === 126 ? 4 : 2;
  return frame.subarray(start + 4).map((byte, at) => byte ^ frame[start + (at & 3)]);
}

// A text, or bytes, as a browser takes them.
function framed(text) {
  const bytes = Buffer.from(text);
  const { length } = bytes;
  const head =
    length < 126
      ? [length]
      : length < 65536
        ? [126, length >> 8, length & 255]
        : [127, 0, 0, 0, 0, ...[24, 16, 8, 0].map((shift) => (length >> shift) & 255)];
  return Buffer.concat([Buffer.from([typeof text === 'string' ? 0x81 : 0x82, ...head]), bytes]);
}

/** What a bridge to a device does: texts and bytes out, and the first message in. */
export async function bridge() {
  let take;
  const received = new Promise((resolve) => (take = resolve));
  const sockets = [];
  const server = createServer();
  server.on('upgrade', ({ headers }, socket) => {
    const key = createHash('sha1').update(`${headers['sec-websocket-key']}258EAFA5-E914-47DA-95CA-C5AB0DC85B11`).digest('base64');
    socket.write(`HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Accept: ${key}\r\n\r\n`);
    socket.on('data', (data) => take(unmasked(data)));
    sockets.push(socket);
  });
  await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
  const send = (text) => sockets.at(-1).write(framed(text));
  const close = () => (sockets.forEach((socket) => socket.destroy()), server.close());
  return { address: `ws://127.0.0.1:${server.address().port}/`, received, send, close };
}
