// The texts of two messages, one beside the other, or, where there is no room for that, one in the other: a pair on each
// line, what differs marked in both. It stands in a shadow tree: see rawEditor.ts.
import { Change, Chunk, MergeView, unifiedMergeView } from '@codemirror/merge';
import { EditorState, Text } from '@codemirror/state';
import { EditorView } from '@codemirror/view';
import { byId } from './elements.ts';
import { editorTheme } from './editorTheme.ts';
import type { PairTexts } from './pairTexts.ts';

const roomForTwo = 480; // pixels
const mostInOther = 10_000; // characters that differ in one go: the view of one in the other draws all of them at once

// The library's own rules have several classes.
const isForced = '@media (forced-colors: active)';
const marked = '.cm-changedText.cm-changedText.cm-changedText, .cm-deletedChunk .cm-deletedText.cm-deletedText.cm-deletedText';
const lines = '.cm-changedLine.cm-changedLine, .cm-deletedChunk.cm-deletedChunk';
const collapsed = '.cm-collapsedLines.cm-collapsedLines';
const theme = EditorView.theme({
  '&': { backgroundColor: 'transparent' },
  '.cm-line, .cm-deletedChunk .cm-deletedLine': { paddingInline: '0.6rem' },
  '.cm-gutters': { backgroundColor: 'transparent', border: '0' },
  [lines]: { backgroundColor: 'var(--track)' },
  '.cm-deletedChunk.cm-deletedChunk': { paddingInline: '0', color: 'var(--muted)' },
  [marked]: { background: 'var(--lit)', color: 'var(--litInk)', borderRadius: '3px' },
  [collapsed]: { background: 'var(--track)', color: 'var(--muted)' },
  [isForced]: {
    [lines]: { backgroundColor: 'Canvas' },
    [marked]: { forcedColorAdjust: 'none', background: 'Highlight', color: 'HighlightText' },
    [collapsed]: { background: 'Canvas', borderBlock: '1px dashed' },
  },
  '.cm-collapsedLines::before, .cm-collapsedLines::after': { content: "'\u22ee'" },
});

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
  #shown?: PairTexts;
  #view?: MergeView | EditorView;
  #isNarrow = false;

  constructor() {
    new ResizeObserver(() => {
      const { clientWidth } = this.#host;
      if (clientWidth > 0 && this.#isNarrow !== clientWidth < roomForTwo) this.#draw();
    }).observe(this.#host);
  }

  show(texts: PairTexts) {
    this.#shown = texts;
    this.#draw();
  }

  #draw() {
    this.#view?.destroy();
    this.#root.replaceChildren();
    if (!this.#shown) return;
    const [there, here] = [this.#shown.there, this.#shown.here].map((text) => Text.of(text.split('\n')));
    const changes = this.#shown.changes.map((ends) => new Change(...ends));
    const diffConfig = { override: () => changes.slice() }; // which the view joins and moves
    const collapseUnchanged = { margin: 2, minSize: 6 };
    const shared = { root: this.#root, parent: this.#root };
    this.#isNarrow = this.#host.clientWidth < roomForTwo;
    const isOneInOther = this.#isNarrow && Chunk.build(there, here, diffConfig).every(({ fromA, toA }) => toA - fromA < mostInOther);
    byId('differenceNames').hidden = isOneInOther;
    this.#view = isOneInOther
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
