// How CodeMirror's editors look, as the page's other texts do.
import { EditorView } from '@codemirror/view';

export const editorTheme = EditorView.theme({
  '&': { height: '100%', backgroundColor: 'var(--raised)', color: 'var(--ink)' },
  '&.cm-focused': { outline: '2px solid var(--accent)', outlineOffset: '-2px' },
  '.cm-content': { fontFamily: 'var(--mono)', fontSize: '0.9rem', caretColor: 'var(--ink)' },
  '.cm-scroller': { overflow: 'auto' },
});
