// Pieces of the page that need no browser.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { sourceModule } from './modules.mjs';

test('of many points the least and the greatest of each column are drawn, of few all', async () => {
  const { drawn } = await sourceModule('curves');
  const xs = Float64Array.from({ length: 10_000 }, (_one, at) => at);
  const ys = xs.map((x) => (x === 5003 ? -7 : x === 5001 ? 9 : 1));
  const [, values] = drawn([{ xs, ys }], [0, 9999], 100);
  assert.equal(values.length, 200);
  assert.deepEqual(values.slice(100, 102), [9, -7], 'in the order in which they come');
  const few = drawn(
    [
      { xs, ys },
      { xs: Float64Array.of(5002.5), ys: Float64Array.of(3) },
    ],
    [5000, 5004],
    100,
  );
  assert.deepEqual(few[0], [4999, 5000, 5001, 5002, 5002.5, 5003, 5004, 5005]);
  assert.deepEqual(few[2], [null, null, null, null, 3, null, null, null]);
});

test('bytes that are no UTF-8 go through the texts of the core and back, whatever they are', async () => {
  const { bytesOfCoreText, coreText, isSame } = await sourceModule('bytes');
  let state = 1;
  for (let round = 0; round < 2000; ++round) {
    const bytes = Uint8Array.from({ length: round % 9 }, () => (state = (state * 48271) % 0x7fffffff) >> 7);
    assert.ok(isSame(bytesOfCoreText(coreText(bytes)), bytes), bytes.join(' '));
  }
});

test('which way a message went is what its line says', async () => {
  const { directionIn } = await sourceModule('lineHead');
  const cases = {
    '08:00:01 host -> device ': 'host → device',
    'dev<-host: ': 'host → dev',
    '[RX] ': 'rx',
    '08:00 ': undefined,
  };
  for (const [head, direction] of Object.entries(cases)) assert.equal(directionIn(head), direction, head);
});
