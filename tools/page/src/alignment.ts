// Which messages of two logs belong together: those of a kind with the same echo tag, the first to the first, or those
// of a kind at nearly the same time. What would stand crosswise is left apart, so that both logs keep their order.

import { uncrossed } from './search.ts';

/** What is known of a log's messages. */
export interface Side {
  id: Int32Array;
  echo: Int32Array;
  hasEcho: Uint8Array;
  microseconds: Float64Array;
}

export type Way = 'echo' | 'time';

/** Of each line the row in either log, -1 where it has none. */
export interface Alignment {
  left: Int32Array;
  right: Int32Array;
}

const day = 86_400e6; // microseconds
const farthest = 60e6; // that messages of one time are apart

// As if both logs began on one day.
function onOneDay({ left, right }: { left: Side; right: Side }) {
  const first = ({ microseconds }: Side) => microseconds.find((time) => !Number.isNaN(time)) ?? NaN;
  const days = Math.floor(first(left) / day) - Math.floor(first(right) / day);
  return right.microseconds.map((time) => time + (days || 0) * day);
}

function rowsBy(side: Side, keyOf: (row: number) => string | number) {
  const rows = new Map<string | number, number[]>();
  for (let row = 0; row < side.id.length; ++row) {
    const key = keyOf(row);
    const some = rows.get(key);
    if (some) some.push(row);
    else rows.set(key, [row]);
  }
  return rows;
}

function byEcho(left: Side, right: Side) {
  const key =
    ({ id, echo, hasEcho }: Side) =>
    (row: number) =>
      `${id[row]} ${hasEcho[row] ? echo[row] : ''}`;
  const others = rowsBy(right, key(right));
  const partners = new Int32Array(left.id.length).fill(-1);
  for (const [name, rows] of rowsBy(left, key(left))) rows.forEach((row, at) => (partners[row] = others.get(name)?.[at] ?? -1));
  return partners;
}

// Of each kind in order: two belong together when neither has a nearer one behind it.
function byTime(left: Side, right: Side, times: Float64Array) {
  const others = rowsBy(right, (row) => right.id[row]);
  const partners = new Int32Array(left.id.length).fill(-1);
  for (const [id, rows] of rowsBy(left, (row) => left.id[row])) {
    const there = others.get(id) ?? [];
    const apart = (i: number, j: number) => Math.abs(left.microseconds[rows[i]] - times[there[j]]);
    for (let i = 0, j = 0; i < rows.length && j < there.length;) {
      const now = apart(i, j);
      if (apart(i, j + 1) < now) ++j;
      else if (apart(i + 1, j) < now) ++i;
      else if (now <= farthest) partners[rows[i++]] = there[j++];
      else if (left.microseconds[rows[i]] < times[there[j]]) ++i;
      else ++j;
    }
  }
  return partners;
}

/** Both logs line by line. What has no partner stands where its time is, or, without times, that of the left log first. */
export function aligned(left: Side, right: Side, way: Way): Alignment {
  const times = onOneDay({ left, right });
  const partners = uncrossed(way === 'echo' ? byEcho(left, right) : byTime(left, right, times));
  const lines: Alignment = {
    left: new Int32Array(left.id.length + right.id.length),
    right: new Int32Array(left.id.length + right.id.length),
  };
  let count = 0;
  const put = (one: number, other: number) => {
    lines.left[count] = one;
    lines.right[count++] = other;
  };
  let next = 0;
  let end = 0; // of the right rows in front of the next partner
  const ends = new Int32Array(left.id.length + 1).fill(right.id.length);
  for (let row = left.id.length - 1; row >= 0; --row) ends[row] = partners[row] >= 0 ? partners[row] : ends[row + 1];
  for (let row = 0; row <= left.id.length; ++row) {
    end = ends[row];
    const isPair = partners[row] >= 0;
    while (next < end && (isPair || row === left.id.length || times[next] < left.microseconds[row])) put(-1, next++);
    if (row < left.id.length) put(row, isPair ? next++ : -1);
  }
  return { left: lines.left.slice(0, count), right: lines.right.slice(0, count) };
}
