// The text of a message with its problems underlined and the selected pair lit. A long one stands there in stretches, of
// which only those in sight are drawn with what is in them and laid out, so that a message of any length and with any
// number of problems is shown at once.
import { byId, element } from './elements.js';
import { bytesOfCoreText, characterStart, coreText } from './bytes.js';
import { shown, shownWords } from './signs.js';

const stretchSize = 4096; // bytes

const severityClasses = ['', 'wrong-warning', 'wrong-error'];
const kindClasses = ['', 'valueNumber', 'valueText', 'valueName', 'valueIgnored'];

// What each byte is part of: a number, a text, a name, or what a host ignores.
function kindsIn({ bytes, nodes, header }) {
  const kinds = new Uint8Array(bytes.length);
  for (const { whole } of header) kinds.fill(1, whole.start, whole.end);
  for (const { at, count, use, field, place } of nodes) {
    if (count !== undefined || at === 0 || !place) continue;
    const kind = field?.kind ?? '';
    const isName = kind === 'enumeration' || kind === 'boolean';
    const isIgnored = use !== 'assigned' && use !== 'empty';
    kinds.fill(isIgnored ? 4 : isName ? 3 : kind.endsWith('string') ? 2 : 1, place.start, place.end);
  }
  return kinds;
}

// Lines end between pairs where they can.
function withBreaks(pieces) {
  const broken = (text) => text.split(/(?<=[;,])/).flatMap((one) => (/[;,]$/.test(one) ? [one, element('wbr')] : [one]));
  return pieces.flatMap((piece) => (typeof piece === 'string' ? broken(piece) : [piece]));
}

// Behind a separator where there is one, since a line ends there.
function endOfStretch(bytes, start) {
  const most = start + stretchSize;
  if (most >= bytes.length) return bytes.length;
  const separator = Math.max(bytes.lastIndexOf(0x3b, most), bytes.lastIndexOf(0x2c, most)); // ; and ,
  return separator > start ? separator + 1 : characterStart(bytes, most);
}

export class TextView {
  #root = byId('messageText');
  #places = new WeakMap(); // of each piece, its first byte
  #stretches = []; // { made, start, end, isDrawn }
  #sight;
  #lit;

  constructor(onByte) {
    this.#root.addEventListener('click', (event) => {
      const at = this.#byteAt(event.clientX, event.clientY);
      if (at !== undefined) onByte(at);
    });
    // Stretches are no lines of the message.
    this.#root.addEventListener('copy', (event) => {
      event.clipboardData.setData('text/plain', getSelection().getRangeAt(0).cloneContents().textContent);
      event.preventDefault();
    });
    this.#root.addEventListener('pointerover', (event) => this.#sayProblems(event.target));
    this.#sight = new IntersectionObserver(
      (entries) => {
        for (const { target, isIntersecting } of entries) {
          const stretch = this.#stretches.find(({ made }) => made === target);
          if (!stretch) continue;
          stretch.isInSight = isIntersecting;
          if (isIntersecting && !stretch.isDrawn) this.#draw(stretch);
        }
      },
      { root: this.#root, rootMargin: '400px' },
    );
  }

  show(model) {
    this.model = model;
    this.#lit = undefined;
    this.#sight.disconnect();
    const { bytes } = model;
    this.#kinds = kindsIn(model);
    this.#severities = new Uint8Array(bytes.length);
    for (const severity of ['warning', 'error'])
      for (const problem of model.problems) if (problem.severity === severity) this.#severities.fill(severity === 'error' ? 2 : 1, problem.start, problem.end);
    this.#stretches = [];
    for (let start = 0; start < bytes.length; ) {
      const end = endOfStretch(bytes, start);
      this.#stretches.push({ made: element('span', { class: 'stretch' }), start, end });
      start = end;
    }
    for (const stretch of this.#stretches) stretch.made.append(...this.#pieces(stretch.start, stretch.end, false));
    this.#root.replaceChildren(...this.#stretches.map(({ made }) => made));
    this.#root.scrollTop = 0;
    if (this.#stretches.length > 0) this.#draw(this.#stretches[0]);
    for (const { made } of this.#stretches) this.#sight.observe(made);
  }

  #severities = new Uint8Array(); // of each byte: 0 nothing, 1 warning, 2 error
  #kinds = new Uint8Array(); // of each byte: which of kindClasses it has

  /** Lights a stretch of bytes. */
  light(place) {
    const touches = ({ start, end }, lit) => lit && lit.start < end && lit.end > start;
    const old = this.#lit;
    this.#lit = place;
    for (const stretch of this.#stretches)
      if (touches(stretch, old) || touches(stretch, place)) {
        if (stretch.isDrawn || touches(stretch, place)) this.#draw(stretch);
      }
    this.#bringInSight();
  }

  // Within the text alone: what stands around it keeps its place. Twice, since what comes in sight may be taller than it
  // was thought to be.
  #bringInSight() {
    const mark = this.#root.querySelector('mark');
    if (!mark) return;
    this.#scrollTo(mark);
    if (this.#stretches.length > 1) this.#scrollTo(mark);
  }

  #scrollTo(mark) {
    const room = this.#root.getBoundingClientRect();
    const { top, bottom } = mark.getBoundingClientRect();
    if (top < room.top) this.#root.scrollTop += top - room.top - 8;
    else if (bottom > room.bottom) this.#root.scrollTop += Math.min(bottom - room.bottom + 8, top - room.top - 8);
  }

  #draw(stretch) {
    stretch.isDrawn = true;
    stretch.made.replaceChildren(...this.#pieces(stretch.start, stretch.end, true));
  }

  // Pieces of one kind and severity, lit or not; of what is not in sight, the text alone.
  #pieces(start, end, isInSight) {
    if (!isInSight) return [this.#piece(start, end)];
    const severities = this.#severities;
    const kinds = this.#kinds;
    const lit = this.#lit ?? { start: 0, end: 0 };
    const isLit = (at) => at >= lit.start && at < lit.end;
    const pieces = [];
    for (let from = start; from < end; ) {
      let to = from + 1;
      while (to < end && severities[to] === severities[from] && kinds[to] === kinds[from] && isLit(to) === isLit(from)) ++to;
      pieces.push(this.#piece(from, to, severities[from], kinds[from], isLit(from)));
      from = to;
    }
    return pieces;
  }

  #piece(start, end, severity = 0, kind = 0, isLit = false) {
    const words = withBreaks(shown(coreText(this.model.bytes.subarray(start, end)), true));
    const classes = [severityClasses[severity], kindClasses[kind]].filter(Boolean).join(' ');
    const made = element(isLit ? 'mark' : 'span', { class: classes || null }, ...words);
    this.#places.set(made, start);
    return made;
  }

  // What is said of a piece when it is pointed at.
  #sayProblems(target) {
    const piece = target.closest?.('.wrong-error, .wrong-warning');
    if (!piece || piece.title) return;
    const at = this.#places.get(piece);
    const around = this.model.problems.filter(({ start, end }) => start <= at && at < end).slice(0, 5);
    piece.title = around.map(({ message }) => shownWords(message)).join('; ');
  }

  #byteAt(x, y) {
    const position = document.caretPositionFromPoint?.(x, y);
    const range = position ?? document.caretRangeFromPoint?.(x, y);
    const node = range?.offsetNode ?? range?.startContainer;
    const piece = node?.parentElement?.closest('mark, .stretch > span');
    if (!this.#places.has(piece)) return undefined;
    let at = this.#places.get(piece);
    for (const child of piece.childNodes) {
      if (child === node) return at + bytesOfCoreText(node.data.slice(0, range.offset ?? range.startOffset)).length;
      if (child.contains(node)) return at;
      at += bytesOfCoreText(child.raw ?? child.data ?? '').length;
    }
    return undefined;
  }
}
