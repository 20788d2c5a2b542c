// The text of a message with its problems underlined and the selected pair lit.
import { byId, element } from './elements.js';
import { shownText } from './bytes.js';

export class TextView {
  #root = byId('messageText');
  #starts = new WeakMap(); // of each stretch, its first byte

  constructor(onByte) {
    this.#root.addEventListener('click', (event) => {
      const at = this.#byteAt(event);
      if (at !== undefined) onByte(at);
    });
  }

  show(model) {
    this.model = model;
    this.light(undefined);
  }

  /** Lights a stretch of bytes. */
  light(place) {
    const { bytes, problems } = this.model;
    const edges = new Set([0, bytes.length]);
    for (const { start, end } of problems) edges.add(start).add(end);
    if (place) edges.add(place.start).add(place.end);
    const places = [...edges].filter((edge) => edge <= bytes.length).sort((left, right) => left - right);
    const stretches = places.slice(0, -1).map((start, i) => this.#stretch(start, places[i + 1], place));
    this.#root.replaceChildren(...stretches);
    this.#root.querySelector('mark')?.scrollIntoView({ block: 'nearest' });
  }

  #stretch(start, end, place) {
    const isLit = place !== undefined && start >= place.start && end <= place.end;
    const around = this.model.problems.filter((problem) => problem.start <= start && end <= problem.end);
    const worst = around.some(({ severity }) => severity === 'error') ? 'error' : 'warning';
    const made = element(
      isLit ? 'mark' : 'span',
      { class: around.length > 0 ? `wrong-${worst}` : null, title: around.map(({ message }) => message).join('; ') || null },
      shownText(this.model.bytes.subarray(start, end)),
    );
    this.#starts.set(made, start);
    return made;
  }

  #byteAt(event) {
    const position = document.caretPositionFromPoint?.(event.clientX, event.clientY);
    const range = position ?? document.caretRangeFromPoint?.(event.clientX, event.clientY);
    const node = range?.offsetNode ?? range?.startContainer;
    const start = this.#starts.get(node?.parentElement);
    if (start === undefined) return undefined;
    const inFront = node.data.slice(0, range.offset ?? range.startOffset);
    return start + new TextEncoder().encode(inFront).length;
  }
}
