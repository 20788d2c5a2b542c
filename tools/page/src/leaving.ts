// Changes that were not saved are not lost unasked: neither when another file is opened nor when the page is left.
import { byId } from './elements.ts';

/** Gives mayLeave(): a promise of whether what was changed may go. */
export function makeLeaving({ isSaved, save }: { isSaved: () => boolean; save: () => void }) {
  const dialog = byId('leaveDialog');
  let answer: ((mayLeave: boolean) => void) | undefined;
  addEventListener('beforeunload', (event) => {
    if (!isSaved()) event.preventDefault();
  });
  const say = (mayLeave: boolean) => {
    answer?.(mayLeave);
    answer = undefined;
    dialog.close();
  };
  byId('leaveSave').addEventListener('click', () => {
    save();
    say(true);
  });
  byId('leaveLose').addEventListener('click', () => say(true));
  byId('leaveStay').addEventListener('click', () => say(false));
  dialog.addEventListener('close', () => say(false));
  return () => {
    if (isSaved()) return Promise.resolve(true);
    answer?.(false);
    dialog.showModal();
    return new Promise<boolean>((resolve) => (answer = resolve));
  };
}
