// Logs that go on: a file that grows, a serial line, a WebSocket of a bridge on this machine. What comes is read at once;
// what is sent was looked at first.
import { announce, busy, byId, seldom } from './elements.ts';
import type { CoreCalls } from './reader.ts';
import { bytesOf, coreText, isUtf8 } from './bytes.ts';
import { serialLine, type Serial } from './serialLine.ts';
import { shownWords } from './signs.ts';
import type { Bytes } from './types.ts';

const pause = 20; // milliseconds between looks at a file, and between what is handed on

const ownBridge = /^ws:\/\/(127\.0\.0\.1|localhost)(:\d+)?(\/|$)/i; // as the page's policy has it

/** Where bytes come from, and can be sent to. */
export interface Line {
  name: string;
  send?: (bytes: Bytes) => Promise<void> | void;
  close: () => Promise<void> | void;
}

export type OnBytes = (bytes: Bytes) => void;
export type OnEnd = (why?: string) => void;

// What browsers have of these, and the compiler does not know.
interface Ways {
  showOpenFilePicker?: () => Promise<{ name: string; getFile: () => Promise<File> }[]>;
  navigator: { serial?: Serial };
}
const ways = window as unknown as Ways;

async function fileLine(onBytes: OnBytes, onEnd: OnEnd): Promise<Line> {
  const [handle] = await ways.showOpenFilePicker!();
  let at = 0;
  let isOpen = true;
  const look = async () => {
    try {
      const file = await handle.getFile();
      if (!isOpen) return;
      if (file.size < at) return onEnd(`${handle.name} has become shorter: another log stands in it now. Follow it again.`);
      if (file.size > at) onBytes(new Uint8Array(await file.slice(at).arrayBuffer()));
      at = file.size;
      setTimeout(() => void look(), pause);
    } catch (error) {
      onEnd(`${handle.name} can't be read any more: ${(error as Error).message}`);
    }
  };
  setTimeout(() => void look());
  const close = () => {
    isOpen = false;
  };
  return { name: handle.name, close };
}

function socketLine(address: string, onBytes: OnBytes, onEnd: OnEnd): Promise<Line> {
  if (!ownBridge.test(address))
    throw new Error(`"${address}" is no bridge of this machine, the only one that the page may ask: ws://127.0.0.1:8765/ is one.`);
  return new Promise((resolve, reject) => {
    const socket = new WebSocket(address);
    socket.binaryType = 'arraybuffer';
    const encoder = new TextEncoder();
    socket.onopen = () => resolve({ name: address, send: (bytes) => socket.send(bytes), close: () => socket.close() });
    socket.onmessage = ({ data }: MessageEvent<string | ArrayBuffer>) =>
      onBytes(typeof data === 'string' ? encoder.encode(data) : new Uint8Array(data));
    socket.onclose = () => {
      reject(new Error(`Nothing answers at ${address}: start the bridge there, as websocketd --port=8765 tail -f device.log`));
      onEnd(`${address} has ended. What it sent stays here until another log is opened.`);
    };
  });
}

export class Live {
  #line?: Line;
  #waiting: Bytes[] = [];
  #handOnSoon = seldom(() => this.#handOn(), pause, true); // each is a job
  #message: Bytes = new Uint8Array(); // to be sent
  #toSend?: Bytes; // the same, sealed
  isFollowing = true;

  constructor(
    private readonly core: CoreCalls,
    private readonly on: {
      /** Whether another log may be opened. */
      mayBegin: () => Promise<boolean>;
      begin: (name: string, isFile: boolean) => void;
      bytes: (bytes: Bytes) => void;
      end: () => void;
      /** The newest message is to be shown. */
      follow: () => void;
      /** The message that is shown. */
      message: () => Bytes | undefined;
    },
  ) {
    const dialog = byId('liveDialog');
    byId('openLive').addEventListener('click', () => dialog.showModal());
    byId('liveCancel').addEventListener('click', () => dialog.close());
    const open = (make: (onBytes: OnBytes, onEnd: OnEnd) => Promise<Line>) => () => busy(this.#open(make));
    byId('liveFile').disabled = !ways.showOpenFilePicker;
    byId('liveSerial').disabled = !ways.navigator.serial;
    byId('liveFile').addEventListener('click', open(fileLine));
    byId('liveSerial').addEventListener(
      'click',
      open((...ons) => serialLine(ways.navigator.serial!, Number(byId('liveBaud').value) || 9600, ...ons)),
    );
    byId('liveForm').addEventListener('submit', (event) => {
      event.preventDefault();
      void open((...ons) => socketLine(byId('liveAddress').value.trim(), ...ons))();
    });
    byId('liveHold').addEventListener('click', () => this.#follow(!this.isFollowing));
    byId('liveStop').addEventListener('click', () => this.stop());
    byId('liveSend').addEventListener('click', () => busy(this.#look()));
    byId('sendText').addEventListener('input', () => {
      this.#message = bytesOf(byId('sendText').value);
      busy(this.#judge());
    });
    byId('sendCancel').addEventListener('click', () => byId('sendDialog').close());
    byId('sendForm').addEventListener('submit', (event) => {
      event.preventDefault();
      busy(this.#send());
    });
  }

  get isOn() {
    return this.#line !== undefined;
  }

  async #open(make: (onBytes: OnBytes, onEnd: OnEnd) => Promise<Line>) {
    if (!(await this.on.mayBegin())) return;
    this.stop();
    this.#waiting = [];
    byId('liveProblem').textContent = '';
    let line: Line | undefined;
    let ended: string | undefined;
    try {
      line = await make(
        (bytes) => this.#take(bytes),
        (why = '') => {
          ended = why;
          if (line === undefined || this.#line !== line) return;
          this.stop();
          if (why) announce(shownWords(why), true);
        },
      );
      if (ended !== undefined) throw new Error(ended); // before it began
    } catch (error) {
      byId('liveProblem').textContent = shownWords((error as Error).message);
      return;
    }
    this.#line = line;
    byId('liveDialog').close();
    byId('live').hidden = false;
    byId('liveName').textContent = shownWords(line.name);
    byId('liveSend').hidden = line.send === undefined;
    this.on.begin(line.name, make === fileLine);
    this.#follow(true);
  }

  #take(bytes: Bytes) {
    this.#waiting.push(bytes);
    this.#handOnSoon();
  }

  #handOn() {
    if (!this.#line || this.#waiting.length === 0) return;
    const bytes = new Uint8Array(this.#waiting.reduce((sum, { length }) => sum + length, 0));
    let at = 0;
    for (const piece of this.#waiting.splice(0)) {
      bytes.set(piece, at);
      at += piece.length;
    }
    this.on.bytes(bytes);
  }

  /** Other messages don't take the place of the one that is shown. */
  hold() {
    if (this.isOn && this.isFollowing) this.#follow(false);
  }

  #follow(isFollowing: boolean) {
    this.isFollowing = isFollowing;
    byId('liveHold').textContent = isFollowing ? 'Hold' : 'Follow';
    if (isFollowing) this.on.follow();
  }

  /** What was read stays, as a log that is complete. */
  stop() {
    const line = this.#line;
    if (!line) return;
    this.#handOn();
    this.#line = undefined;
    byId('live').hidden = true;
    void line.close();
    this.on.end();
  }

  // The message that is shown, to be looked at, or another that people put in its place.
  #look() {
    this.#message = this.on.message() ?? new Uint8Array();
    byId('sendText').value = coreText(this.#message);
    byId('sendText').readOnly = !isUtf8(this.#message);
    byId('sendDialog').showModal();
    return this.#judge();
  }

  // Says what of it would be sent: as it is sealed.
  async #judge() {
    const message = this.#message;
    this.#toSend = undefined;
    byId('sendNow').disabled = true;
    const { bytes, error } = await this.core.seal(message);
    const changes = bytes ? await this.core.sealChanges(message, bytes) : '';
    if (message !== this.#message) return;
    this.#toSend = bytes;
    byId('sendProblem').textContent = error === undefined ? '' : `It can't be sent: ${shownWords(error)}`;
    byId('sendNow').disabled = error !== undefined;
    byId('sendChanges').textContent = error !== undefined ? '' : changes ? `Sent is: ${shownWords(changes)}` : 'It is sealed already.';
  }

  async #send() {
    byId('sendDialog').close();
    if (!this.#toSend || !this.#line?.send) return;
    try {
      await this.#line.send(this.#toSend);
      announce('Sent.');
    } catch (error) {
      announce(`It was not sent: ${shownWords((error as Error).message)}`, true);
    }
  }
}
