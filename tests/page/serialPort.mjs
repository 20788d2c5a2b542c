// A serial port as the browser gives it, whose wire is in the hands of the test: window.wire of the page.

/** Puts it in the place of the browser's own ports. To be called in the page. */
export function installSerialPort() {
  const wire = { sent: [], isGone: false, isOpen: false, asked: 0 };
  const error = (name, words) => new DOMException(words, name);
  const port = {
    async open({ baudRate }) {
      if (wire.isOpen) throw error('InvalidStateError', 'The port is already open.');
      if (wire.isGone) throw error('NetworkError', 'Failed to open serial port.');
      Object.assign(wire, { isOpen: true, baudRate, readable: undefined, writable: undefined });
    },
    get readable() {
      if (!wire.isOpen) return null;
      const ended = () => (wire.readable = undefined);
      return (wire.readable ??= new ReadableStream({ start: (controller) => (wire.in = controller), cancel: ended }));
    },
    get writable() {
      if (!wire.isOpen) return null;
      const write = (bytes) => {
        if (wire.refuses) throw error('NetworkError', 'The device has been lost.');
        wire.sent.push(...bytes);
      };
      const failed = () => (wire.writable = undefined);
      return (wire.writable ??= new WritableStream({ write, abort: failed }));
    },
    async close() {
      if (!wire.isOpen) throw error('InvalidStateError', 'The port is already closed.');
      if (wire.readable?.locked || wire.writable?.locked) throw new TypeError('Cannot cancel a locked stream');
      wire.isOpen = false;
    },
  };
  navigator.serial.requestPort = async () => {
    if (++wire.asked === 1) throw error('NotFoundError', 'No port selected by the user.');
    return port;
  };
  const fail = (name, words) => {
    const { in: controller } = wire;
    wire.readable = undefined;
    controller.error(error(name, words));
  };
  window.wire = Object.assign(wire, {
    give: (text) => (port.readable, wire.in.enqueue(new TextEncoder().encode(text))),
    misread: () => fail('FramingError', 'A framing error has been detected.'),
    unplug: () => {
      Object.assign(wire, { isGone: true, isOpen: false });
      fail('NetworkError', 'The device has been lost.');
    },
  });
}
