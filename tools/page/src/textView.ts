// The text of a message with its problems underlined and the selected pair lit. A long one stands there in stretches, of
// which only those in sight are drawn with what is in them and laid out, so that a message of any length and with any
// number of problems is shown at once.
import { byId, element } from './elements.ts';
import { bytesOfCoreText, characterStart, coreText } from './bytes.ts';
import { rawSigns, shown, shownWords, withBreaks } from './signs.ts';
import type { MessageModel } from './messageModel.ts';
import type { Bytes, Place } from './types.ts';

const stretchSize = 2048; // bytes
const longestWhole = 30; // bytes of a text that stands on one line

// Of what viewing.ts says of each byte.
const severityClasses = ['', 'wrong-warning', 'wrong-error'];
const kindClasses = ['', 'valueNumber', 'valueText', 'valueName', 'valueIgnored'];

interface Piece extends Place {
  made: HTMLElement;
}

interface Stretch extends Piece {
  isDrawn?: boolean;
  pieces: Piece[];
}

// The text at a place on the screen; browsers have one of two ways to ask.
function caretAt(x: number, y: number): { node?: Node; offset?: number } {
  const position = document.caretPositionFromPoint?.(x, y);
  if (position) return { node: position.offsetNode, offset: position.offset };
  const range = document.caretRangeFromPoint?.(x, y);
  return { node: range?.startContainer, offset: range?.startOffset };
}

// Behind a separator where there is one, since a line ends there.
function endOfStretch(bytes: Bytes, start: number) {
  const most = start + stretchSize;
  if (most >= bytes.length) return bytes.length;
  const separator = Math.max(bytes.lastIndexOf(0x3b, most), bytes.lastIndexOf(0x2c, most)); // ; and ,
  return separator > start ? separator + 1 : characterStart(bytes, most);
}

export class TextView {
  #root = byId('messageText');
  model!: MessageModel;
  #places = new WeakMap<Element, number>(); // of each piece, its first byte
  #stretches: Stretch[] = [];
  #sight: IntersectionObserver;
  #lit?: Place;

  constructor(onByte: (at: number) => void) {
    this.#root.addEventListener('click', (event) => {
      const at = this.#byteAt(event.clientX, event.clientY);
      if (at !== undefined) onByte(at);
    });
    // Stretches are no lines of the message.
    this.#root.addEventListener('copy', (event) => {
      event.clipboardData?.setData('text/plain', getSelection()?.getRangeAt(0).cloneContents().textContent ?? '');
      event.preventDefault();
    });
    this.#root.addEventListener('pointerover', (event) => this.#sayProblems(event.target as Element));
    this.#sight = new IntersectionObserver(
      (entries) => {
        for (const { target, isIntersecting } of entries) {
          const stretch = this.#stretches.find(({ made }) => made === target);
          if (!stretch) continue;
          if (isIntersecting && !stretch.isDrawn) this.#draw(stretch);
        }
      },
      { root: this.#root, rootMargin: '400px' },
    );
  }

  show(model: MessageModel) {
    this.model = model;
    this.#lit = undefined;
    this.#sight.disconnect();
    const { bytes } = model;
    this.#stretches = [];
    for (let start = 0; start < bytes.length;) {
      const end = endOfStretch(bytes, start);
      this.#stretches.push({ made: element('span', { class: 'stretch' }), start, end, pieces: [] });
      start = end;
    }
    // What is not in sight stands there as text alone.
    for (const { made, start, end } of this.#stretches) made.append(...shown(coreText(bytes.subarray(start, end)), true));
    this.#root.replaceChildren(...this.#stretches.map(({ made }) => made));
    this.#root.scrollTop = 0;
    if (this.#stretches.length > 0) this.#draw(this.#stretches[0]);
    for (const { made } of this.#stretches) this.#sight.observe(made);
  }

  /** Lights a stretch of bytes. */
  light(place: Place | undefined) {
    const old = this.#lit;
    this.#lit = place;
    const isTouched = ({ start, end }: Place) => [old, place].some((lit) => lit !== undefined && lit.start < end && lit.end > start);
    for (const stretch of this.#stretches) if (isTouched(stretch)) this.#lightIn(stretch, isTouched);
    this.#bringInSight();
  }

  // Only the pieces that are touched are made again.
  #lightIn(stretch: Stretch, isTouched: (place: Place) => boolean) {
    if (!stretch.isDrawn) return this.#draw(stretch);
    stretch.pieces = stretch.pieces.flatMap((piece) => {
      if (!isTouched(piece)) return [piece];
      const pieces = this.#pieces(piece.start, piece.end);
      piece.made.replaceWith(...pieces.map(({ made }) => made));
      return pieces;
    });
    return undefined;
  }

  // Within the text alone: what stands around it keeps its place. Twice, since what comes in sight may be taller than it
  // was thought to be.
  #bringInSight() {
    const mark = this.#root.querySelector('mark');
    if (!mark) return;
    this.#scrollTo(mark);
    if (this.#stretches.length > 1) this.#scrollTo(mark);
  }

  #scrollTo(mark: Element) {
    const room = this.#root.getBoundingClientRect();
    const { top, bottom } = mark.getBoundingClientRect();
    if (top < room.top) this.#root.scrollTop += top - room.top - 8;
    else if (bottom > room.bottom) this.#root.scrollTop += Math.min(bottom - room.bottom + 8, top - room.top - 8);
  }

  #draw(stretch: Stretch) {
    stretch.isDrawn = true;
    stretch.pieces = this.#pieces(stretch.start, stretch.end);
    stretch.made.replaceChildren(...stretch.pieces.map(({ made }) => made));
  }

  // Pieces of one kind and severity, lit or not.
  #pieces(start: number, end: number) {
    const { kinds, severities } = this.model;
    const lit = this.#lit ?? { start: 0, end: 0 };
    const isLit = (at: number) => at >= lit.start && at < lit.end;
    const pieces: Piece[] = [];
    for (let from = start; from < end;) {
      let to = from + 1;
      while (to < end && severities[to] === severities[from] && kinds[to] === kinds[from] && isLit(to) === isLit(from)) ++to;
      pieces.push(this.#piece(from, to, severities[from], kinds[from], isLit(from)));
      from = to;
    }
    return pieces;
  }

  #piece(start: number, end: number, severity: number, kind: number, isLit: boolean): Piece {
    const words = withBreaks(shown(coreText(this.model.bytes.subarray(start, end)), true));
    const isWhole = kindClasses[kind] === 'valueText' && end - start <= longestWhole;
    const classes = [severityClasses[severity], kindClasses[kind], isWhole && 'whole'].filter(Boolean).join(' ');
    const made = element(isLit ? 'mark' : 'span', { class: classes || null }, ...words);
    this.#places.set(made, start);
    return { made, start, end };
  }

  // What is said of a piece when it is pointed at.
  #sayProblems(target: Element) {
    const piece = target.closest<HTMLElement>('.wrong-error, .wrong-warning');
    if (!piece || piece.title) return;
    const around = this.model.problemsAt(this.#places.get(piece) ?? 0);
    piece.title = around.map(({ message }) => shownWords(message)).join('; ');
  }

  #byteAt(x: number, y: number) {
    const { node, offset } = caretAt(x, y);
    const piece = node?.parentElement?.closest('mark, .stretch > span');
    let at = piece ? this.#places.get(piece) : undefined;
    if (!node || !piece || at === undefined) return undefined;
    for (const child of piece.childNodes) {
      const text = rawSigns.get(child) ?? (child instanceof Text ? child.data : '');
      if (child === node) return at + bytesOfCoreText(text.slice(0, offset)).length;
      if (child.contains(node)) return at;
      at += bytesOfCoreText(text).length;
    }
    return undefined;
  }
}
