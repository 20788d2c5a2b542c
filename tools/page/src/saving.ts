// What people take out of the page: into a file, or into the clipboard.
import { announce, element } from './elements.ts';
import { shownWords } from './signs.ts';

export function saveBlob(blob: Blob, name: string) {
  const url = URL.createObjectURL(blob);
  element('a', { href: url, download: name }).click();
  setTimeout(() => URL.revokeObjectURL(url), 10_000);
  announce(`Saved as ${shownWords(name)}.`);
}

export async function copyText(text: string) {
  try {
    await navigator.clipboard.writeText(text);
  } catch {
    if (!copyAsSelection(text)) return announce('Not copied: the browser does not let the page. Save it instead.', true);
  }
  return announce('Copied.');
}

// Where a page from disk has no clipboard.
function copyAsSelection(text: string) {
  const area = element('textarea', { class: 'visuallyHidden' });
  area.value = text;
  const focused = document.activeElement;
  document.body.append(area);
  area.select();
  const isCopied = document.execCommand('copy');
  area.remove();
  if (focused instanceof HTMLElement) focused.focus();
  return isCopied;
}
