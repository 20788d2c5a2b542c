// Parts of the page that stand packed in it.

/** What an element of the page holds, packed with gzip and written as text. */
export function packedIn(id: string) {
  const packed = Uint8Array.from(atob(document.getElementById(id)?.textContent ?? ''), (character) => character.charCodeAt(0));
  return new Response(new Blob([packed]).stream().pipeThrough(new DecompressionStream('gzip')));
}

/** Says why there is no page. */
export function noteFailedStart(error: Error) {
  document.getElementById('readingProblem')!.textContent = `The page can't start: ${error.message}. Open it in a current browser.`;
}
