// A message's text, to be changed as it stands: with its values coloured and its problems underlined as it is typed. It
// stands in a shadow tree, where the editor's styles are no elements that the page's policy would refuse.
import { standardKeymap, history, historyKeymap } from '@codemirror/commands';
import { EditorState, StateEffect, StateField, type Range } from '@codemirror/state';
import { Decoration, EditorView, highlightSpecialChars, keymap, type DecorationSet } from '@codemirror/view';
import { bytesOfCoreText, coreText, isSame } from './bytes.ts';
import { editorTheme } from './editorTheme.ts';
import { busy, byId, element, seldom } from './elements.ts';
import { MessageModel } from './messageModel.ts';
import type { CoreCalls } from './reader.ts';
import { rowSize } from './columns.ts';
import { shown, shownWords, unprintableSigns } from './signs.ts';
import type { Bytes } from './types.ts';
import { counted } from './words.ts';

const largest = 200_000; // bytes
const mostSaid = 3; // problems
const kindColours = ['', 'number', 'text', 'name', 'muted']; // of viewing.ts's kinds
const setMarks = StateEffect.define<DecorationSet>();

// What is underlined and coloured goes along with what is typed until it is looked at again.
const marks = StateField.define<DecorationSet>({
  create: () => Decoration.none,
  update(now, { changes, effects }) {
    return effects.find((effect) => effect.is(setMarks))?.value ?? now.map(changes);
  },
  provide: (field) => EditorView.decorations.from(field),
});

const underline = (colour: string) => ({ textDecoration: `underline wavy 1.5px var(--${colour})`, textUnderlineOffset: '4px' });
const theme = EditorView.theme({
  '.cm-error': underline('error'),
  '.cm-warning': underline('warning'),
  '.sign': { border: '1px solid var(--muted)', borderRadius: '3px', color: 'var(--muted)', fontSize: '0.8em' },
  ...Object.fromEntries(kindColours.slice(1).map((colour) => [`.cm-${colour}`, { color: `var(--${colour})` }])),
});

// What is typed takes the place of what is selected. Left to themselves, Firefox keeps a line that is selected whole, and
// Chromium gives what is typed the colour of what was there, as a style that the page's policy refuses.
const typingOver = EditorView.domEventHandlers({
  beforeinput(event, view) {
    const { data, inputType, isComposing, cancelable } = event;
    if (inputType !== 'insertText' || data === null || isComposing || !cancelable || view.state.selection.main.empty) return false;
    event.preventDefault();
    view.dispatch(view.state.replaceSelection(data), { userEvent: 'input.type', scrollIntoView: true });
    return true;
  },
});

export class RawEditor {
  #dialog = byId('rawDialog');
  #view?: EditorView;
  #bytes: Bytes = new Uint8Array(); // that it was opened with
  #refused?: string; // text of which it is said why it isn't taken
  #judge = seldom(() => void busy(this.#mark()), 150);

  constructor(
    private readonly core: CoreCalls,
    /** Gives a promise that is done when the message is shown. */
    private readonly onBytes: (bytes: Bytes) => Promise<void>,
  ) {
    byId('rawForm').addEventListener('submit', (event) => {
      event.preventDefault();
      busy(this.#commit());
    });
    byId('rawAsIs').addEventListener('click', () => busy(this.#take(this.#typed)));
    byId('rawCancel').addEventListener('click', () => this.#dialog.close());
    this.#dialog.addEventListener('cancel', (event) => {
      if (isSame(this.#typed, this.#bytes)) return;
      event.preventDefault();
      this.#say('It was changed: Set it, or Cancel to drop that.');
    });
    this.#dialog.addEventListener('close', () => {
      this.#view?.destroy();
      this.#view = undefined;
    });
  }

  /** False when it is too long. */
  open(bytes: Bytes) {
    if (bytes.length > largest) return false;
    this.#bytes = bytes;
    const host = byId('rawText');
    const root = host.shadowRoot ?? host.attachShadow({ mode: 'open' });
    const render = (code: number) => element('span', { class: 'sign' }, shownWords(String.fromCodePoint(code)));
    this.#view = new EditorView({
      parent: root,
      root,
      state: EditorState.create({
        doc: coreText(bytes),
        extensions: [
          EditorState.lineSeparator.of('\n'), // others are characters
          EditorView.lineWrapping,
          EditorView.contentAttributes.of({ 'aria-label': 'The text of the message', spellcheck: 'false', autocapitalize: 'off' }),
          highlightSpecialChars({ specialChars: unprintableSigns(), render }),
          history(),
          keymap.of([{ key: 'Mod-Enter', run: () => (busy(this.#commit()), true) }, ...historyKeymap, ...standardKeymap]),
          typingOver,
          marks,
          editorTheme,
          theme,
          EditorView.updateListener.of(({ docChanged }) => docChanged && this.#judge()),
        ],
      }),
    });
    byId('rawAsIs').hidden = true;
    this.#refused = undefined;
    this.#dialog.showModal();
    this.#view.focus();
    busy(this.#mark());
    return true;
  }

  get #typed() {
    return bytesOfCoreText(this.#view?.state.doc.toString() ?? '');
  }

  #say(words: string) {
    byId('rawWords').replaceChildren(...shown(words));
  }

  #refuse(words: string) {
    this.#refused = this.#view?.state.doc.toString();
    this.#say(words);
  }

  async #mark() {
    const view = this.#view;
    if (!view) return;
    const text = view.state.doc.toString();
    const bytes = bytesOfCoreText(text);
    const model = await MessageModel.of(this.core, bytes);
    if (view !== this.#view || view.state.doc.toString() !== text) return;
    view.dispatch({ effects: setMarks.of(Decoration.set(marksOf(text, model), true)) });
    if (text === this.#refused) return;
    const found = Array.from({ length: Math.min(mostSaid, model.problemCount) }, (_one, at) => model.problem(at).message);
    this.#say(found.length === 0 ? 'No problem.' : `${counted(model.problemCount, 'problem')}: ${found.join('; ')}`);
  }

  // Sealed, unless people want it as it stands.
  async #commit() {
    const bytes = this.#typed;
    if (isSame(bytes, this.#bytes)) return this.#dialog.close();
    const { bytes: sealed, error } = await this.core.seal(bytes);
    if (sealed) return this.#take(sealed);
    this.#refuse(`It can\u2019t be sealed: ${error}`);
    byId('rawAsIs').hidden = false;
    return undefined;
  }

  async #take(bytes: Bytes) {
    const row = await this.core.row(bytes);
    const isWhole = row.length === rowSize && new DataView(row.buffer).getUint32(16, true) === bytes.length;
    if (!isWhole) return this.#refuse('This is not one message: it begins with @@ and its number, and nothing stands around it.');
    this.#dialog.close();
    return this.onBytes(bytes);
  }
}

// Of the bytes of a text what they are part of, and how bad that is, by its characters.
function marksOf(text: string, { kinds, severities }: MessageModel) {
  const found: Range<Decoration>[] = [];
  const classAt = (at: number) =>
    [kindColours[kinds[at]], ['', 'warning', 'error'][severities[at]]]
      .filter(Boolean)
      .map((name) => `cm-${name}`)
      .join(' ');
  let start = 0;
  let now = '';
  let byte = 0;
  let at = 0;
  const end = (next: string) => {
    if (now !== '' && at > start) found.push(Decoration.mark({ class: now }).range(start, at));
    [start, now] = [at, next];
  };
  for (const character of text) {
    const here = classAt(byte);
    if (here !== now) end(here);
    byte += bytesOfCoreText(character).length;
    at += character.length;
  }
  end('');
  return found;
}
