// What stands on a log's line in front of a message.

const arrows = /([\p{L}\d_.:-]*[\p{L}\d])\s*(->|=>|→|>|<-|<=|←|<)\s*([\p{L}\d_.:-]*[\p{L}\d])\W*$/u;
const words =
  /\b(rx|tx|in|out|recv|received|send|sent|incoming|outgoing)\b(?!.*\b(?:rx|tx|in|out|recv|received|send|sent|incoming|outgoing)\b)/iu;

/** Which way the message went, as its line says; nothing when it does not say it. */
export function directionIn(head: string): string | undefined {
  const [, left, arrow, right] = arrows.exec(head) ?? [];
  if (arrow) return /[<←]/.test(arrow) ? `${right} → ${left}` : `${left} → ${right}`;
  return words.exec(head)?.[1]?.toLowerCase();
}

/** The same where there is little room: of two names the first letters, when these differ. */
export const shortDirection = (direction: string) =>
  direction.replace(/^(.).* → (.).*$/u, (whole, from: string, to: string) => (from === to ? whole : `${from}→${to}`));
