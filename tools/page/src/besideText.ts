// The texts of two messages, one beside the other, or, where there is no room for that, one in the other: a pair on each
// line, what differs marked in both. It stands in a shadow tree: see rawEditor.ts.
import { MergeView, unifiedMergeView } from '@codemirror/merge';
import { Text, EditorState } from '@codemirror/state';
import { EditorView } from '@codemirror/view';
import { coreText } from './bytes.ts';
import type { MessageModel } from './messageModel.ts';
import { byId } from './elements.ts';
import { shownWords } from './signs.ts';
import { editorTheme } from './editorTheme.ts';

const roomForTwo = 480; // pixels
const diffConfig = { scanLimit: 5000, timeout: 100 }; // characters that differ, milliseconds: beyond, more is marked than differs

// The library's own rules have several classes.
const isForced = '@media (forced-colors: active)';
const marked = '.cm-changedText.cm-changedText.cm-changedText, .cm-deletedChunk .cm-deletedText.cm-deletedText.cm-deletedText';
const lines = '.cm-changedLine.cm-changedLine, .cm-deletedChunk.cm-deletedChunk';
const theme = EditorView.theme({
  '&': { backgroundColor: 'transparent' },
  '.cm-line, .cm-deletedChunk .cm-deletedLine': { paddingInline: '0.6rem' },
  '.cm-gutters': { backgroundColor: 'transparent', border: '0' },
  [lines]: { backgroundColor: 'var(--track)' },
  '.cm-deletedChunk.cm-deletedChunk': { paddingInline: '0', color: 'var(--muted)' },
  [marked]: { background: 'var(--lit)', color: 'var(--litInk)', borderRadius: '3px' },
  [isForced]: {
    [lines]: { backgroundColor: 'Canvas' },
    [marked]: { forcedColorAdjust: 'none', background: 'Highlight', color: 'HighlightText' },
  },
  '.cm-collapsedLines.cm-collapsedLines': { background: 'var(--track)', color: 'var(--muted)' },
  '.cm-collapsedLines::before, .cm-collapsedLines::after': { content: "'\u22ee'" },
});

/** The text with each pair on a line of its own, elements without keys aside. */
function linesOf(model: MessageModel) {
  const ends = new Set([model.bytes.length]);
  for (let at = 0; at < model.count; ++at) {
    const { element, count, whole, children } = model.node(at);
    if (count === undefined && element) continue;
    if (at > 0) ends.add(whole.start);
    if (children.some((child) => !child.element || child.count !== undefined)) ends.add(children.at(-1)!.whole.end);
  }
  const lines: string[] = [];
  let from = 0;
  for (const end of [...ends].sort((left, right) => left - right)) {
    if (end > from) lines.push(shownWords(coreText(model.bytes.subarray(from, end))));
    from = end;
  }
  return Text.of(lines.length > 0 ? lines : ['']);
}

const extensions = (label: string) => [
  editorTheme,
  theme,
  EditorView.lineWrapping,
  EditorState.readOnly.of(true),
  EditorView.contentAttributes.of({ 'aria-label': label, tabindex: '0' }),
  EditorView.editable.of(false),
  EditorView.clipboardOutputFilter.of((text) => text.replaceAll('\n', '')), // lines end here alone
];

export class BesideText {
  #host = byId('differenceTexts');
  #root = this.#host.attachShadow({ mode: 'open' });
  #shown?: { there: Text; here: Text };
  #view?: MergeView | EditorView;
  #isNarrow = false;

  constructor() {
    new ResizeObserver(() => {
      const { clientWidth } = this.#host;
      if (clientWidth > 0 && this.#isNarrow !== clientWidth < roomForTwo) this.#draw();
    }).observe(this.#host);
  }

  show(there: MessageModel, here: MessageModel) {
    this.#shown = { there: linesOf(there), here: linesOf(here) };
    this.#draw();
  }

  #draw() {
    this.#view?.destroy();
    this.#root.replaceChildren();
    if (!this.#shown) return;
    const { there, here } = this.#shown;
    const collapseUnchanged = { margin: 2, minSize: 6 };
    const shared = { root: this.#root, parent: this.#root };
    this.#isNarrow = this.#host.clientWidth < roomForTwo;
    byId('differenceNames').hidden = this.#isNarrow;
    this.#view = this.#isNarrow
      ? new EditorView({
          ...shared,
          doc: here,
          extensions: [
            extensions('Both texts, what stands there above what stands here'),
            unifiedMergeView({ original: there, mergeControls: false, collapseUnchanged, diffConfig }),
          ],
        })
      : new MergeView({
          ...shared,
          a: { doc: there, extensions: extensions("The other message's text") },
          b: { doc: here, extensions: extensions("This message's text") },
          collapseUnchanged,
          diffConfig,
        });
  }
}
