// Numbers and times in words.

const pad = (value: number, size: number) => String(value).padStart(size, '0');

/** "2026-03-01 08:00:02.300" on the log's own clock; without the date when it has none. */
export function timeInWords(microseconds: number, hasDate: boolean) {
  if (Number.isNaN(microseconds)) return '';
  const milliseconds = Math.floor(microseconds / 1000);
  const time = new Date(milliseconds);
  const fraction = pad(((milliseconds % 1000) + 1000) % 1000, 3);
  const clock = `${pad(time.getUTCHours(), 2)}:${pad(time.getUTCMinutes(), 2)}:${pad(time.getUTCSeconds(), 2)}.${fraction}`;
  if (!hasDate) return clock;
  return `${time.getUTCFullYear()}-${pad(time.getUTCMonth() + 1, 2)}-${pad(time.getUTCDate(), 2)} ${clock}`;
}

export const number = (value: number) => value.toLocaleString('en');

export const counted = (value: number, one: string, several = `${one}s`) => `${number(value)} ${value === 1 ? one : several}`;

/** "1024.5" for "1024.500000". */
export const shortNumber = (value: string) => (/^-?\d+\.\d+$/.test(value) ? value.replace(/\.?0+$/, '') : value);

export function sizeInWords(bytes: number) {
  if (bytes < 1000) return counted(bytes, 'byte');
  const kilobytes = bytes / 1000;
  return kilobytes < 1000 ? `${kilobytes.toFixed(1)} kB` : `${(kilobytes / 1000).toFixed(1)} MB`;
}

const headerWords: Record<string, string> = { '@id': 'id', '@length': 'length', '@echo': 'echo tag', '@seq': 'sequence number' };

/** "length" for "@length", "0" of "A[0]", "B" of "A[0].B". */
export function labelOf(path: string, parentPath: string): string {
  if (path.startsWith('@')) return headerWords[path] ?? path;
  const label = path.slice(parentPath.length);
  return label.startsWith('.') ? label.slice(1) : label;
}

/** What was done to a log that stood in something else. */
export const unwrapped = (wrapping: string) =>
  wrapping === 'UTF-16' ? 'UTF-16, read as UTF-8' : `${wrapping}, of which the log in it is read`;
