// Parts of the page that stand packed in it.

/** What is packed with gzip and written as text. */
export function unpackedText(text: string) {
  const packed = Uint8Array.from(atob(text), (character) => character.charCodeAt(0));
  return new Response(new Blob([packed]).stream().pipeThrough(new DecompressionStream('gzip')));
}

/** What an element of the page holds. */
export const packedIn = (id: string) => unpackedText(document.getElementById(id)?.textContent ?? '');

/** Says why there is no page. */
export function noteFailedStart(error: Error) {
  for (const useless of document.querySelectorAll<HTMLElement>('main > *, .bar .actions')) useless.hidden = true;
  document.getElementById('readingProblem')!.textContent = `The page can't start: ${error.message}. Open it in a current browser.`;
}
