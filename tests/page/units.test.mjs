// Pieces of the page that need no browser.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { test } from 'node:test';
import { gzipSync } from 'node:zlib';
import { zstdCore } from '../../tools/page/zstdCore.mjs';
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

test('what comes in pieces stands where it came', async () => {
  const { bytesIn, extended, noSource, sliceOf } = await sourceModule('source');
  const piece = Uint8Array.from({ length: 100_003 }, (_one, at) => at % 251);
  let source = noSource();
  for (let count = 1; count <= 10; ++count) source = extended(source, piece);
  assert.ok(source.read.size > 0 && source.tail.length > 0);
  const whole = Buffer.concat(Array(10).fill(piece));
  const ends = [0, 1, source.read.size - 1, source.read.size, source.read.size + 1, whole.length];
  for (const start of ends)
    for (const end of ends.filter((one) => one >= start)) {
      assert.deepEqual(Buffer.from(await bytesIn(source, start, end)), whole.subarray(start, end));
      assert.equal(sliceOf(source, start, end).size, end - start);
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

test('what can stand next in a condition is offered at its place', async () => {
  const { charactersAt, offersAt } = await sourceModule('condition');
  const keys = [
    { path: 'MSGS[*]', holds: 'text' },
    { path: 'LIST[*].TYPE', holds: 'name', names: ['film', 'plate'] },
    { path: 'IS_SPOT', holds: 'boolean' },
  ];
  const cases = {
    'ms|': 'MSGS[*]',
    'not (ty|': 'LIST[*].TYPE',
    'MSGS[*] ~ a and is|_S': 'IS_SPOT LIST[*].TYPE',
    'LIST[12].TYPE = |': 'film plate',
    'LIST[*].TYPE != pl|': 'plate',
    'IS_SPOT = f|': 'FALSE',
    'MSGS[*] ~ m|': '',
    'IS_SPOT |': '',
    'x or @e|': '@echo',
  };
  for (const [at, words] of Object.entries(cases)) {
    const caret = at.indexOf('|');
    assert.equal(offersAt(at.replace('|', ''), caret, keys).words.join(' '), words, at);
  }
  assert.deepEqual(charactersAt('A = \u00fc\ud83d\ude00 x', { start: 11, end: 12 }), { start: 8, end: 9 });
});

test('two logs line by line: every row once and in order, pairs of one kind and tag or time, as many as can stand so', async () => {
  const { aligned } = await sourceModule('alignment');
  let state = 7;
  const below = (most) => (state = (state * 48271) % 0x7fffffff) % most;
  const side = (count) => {
    let time = below(50) * 1e6;
    const fill = (Type, next) => Type.from({ length: count }, next);
    return {
      id: fill(Int32Array, () => below(3)),
      echo: fill(Int32Array, () => below(4)),
      hasEcho: fill(Uint8Array, () => 1),
      microseconds: fill(Float64Array, () => (time += below(100) * 1e6)),
    };
  };
  const isRising = (rows) => rows.every((row, at) => row === at);
  for (let round = 0; round < 400; ++round) {
    const [left, right] = [side(below(12)), side(below(12))];
    for (const way of ['echo', 'time']) {
      const lines = aligned(left, right, way);
      const there = (rows) => [...rows].filter((row) => row >= 0);
      assert.ok(isRising(there(lines.left)) && isRising(there(lines.right)), 'in order');
      assert.deepEqual([there(lines.left).length, there(lines.right).length], [left.id.length, right.id.length]);
      lines.left.forEach((row, at) => {
        const other = lines.right[at];
        if (row < 0 || other < 0) return;
        assert.equal(left.id[row], right.id[other]);
        if (way === 'echo') assert.equal(left.echo[row], right.echo[other]);
        else assert.ok(Math.abs(left.microseconds[row] - right.microseconds[other]) <= 60e6);
      });
    }
    // A log beside itself, and beside what is left of it, finds every message again.
    const kept = left.id.map((_id, at) => at).filter((at) => round % 2 === 0 || at % 3 > 0);
    const rest = Object.fromEntries(
      Object.entries(left).map(([name, column]) => [name, column.constructor.from(kept, (at) => column[at])]),
    );
    if (round % 2 === 0 || new Set(left.microseconds).size === left.id.length) {
      const { left: rows, right: others } = aligned(left, rest, 'time');
      const pairs = [...rows].filter((row, at) => row >= 0 && others[at] >= 0).length;
      assert.equal(pairs, kept.length);
    }
  }
});

test('two texts are aligned by lines and keys, then within these: what is alike in quite unlike ones is not marked', async () => {
  const { differing } = await sourceModule('lineDiff');
  let state = 5;
  const below = (most) => (state = (state * 48271) % 0x7fffffff) % most;
  // What is not marked is the same in both; gives what is marked.
  const marked = (there, here) => {
    const changes = differing(there, here);
    let [from, other] = [0, 0];
    for (const [at, to, atOther, toOther] of [...changes, [there.length, there.length, here.length, here.length]]) {
      assert.equal(there.slice(from, at), here.slice(other, atOther));
      [from, other] = [to, toOther];
    }
    return [changes.map(([at, to]) => there.slice(at, to)), changes.map(([, , at, to]) => here.slice(at, to))];
  };
  const some = () => Array.from({ length: below(9) }, () => ['', '{', `A=${below(4)};`, `B=${below(3)};`, 'x,', '},\u{1f600}'][below(6)]);
  for (let round = 0; round < 3000; ++round) marked(some().join('\n'), some().join('\n'));

  const word = (at) => (Math.imul(at + 1, 2654435761) >>> 0).toString(36);
  const lines = (side, one) => Array.from({ length: 9000 }, (_none, at) => one(at, word(at), word(at + 9000 * side))).join('\n');
  const cases = {
    'lines of either alone': (at, _same, other) => (at % 3 === 0 ? `L${at % 2}=${at};` : `${other},`),
    'other values of each key': (_at, same, other) => `K${same}=${other};`,
    'elements of two keys': (at, _same, other) => (at % 2 === 0 ? `NAME=${other};` : `TYPE=${at % 4};`),
  };
  for (const [name, one] of Object.entries(cases)) {
    const [left, right] = [lines(1, one), lines(2, one)];
    assert.ok(left.length > 75_000 && right.length > 75_000, name);
    for (const side of marked(left, right)) assert.ok(!side.some((words) => /=/.test(words)), name);
  }
});

test('what zstd packed is unpacked, however it did; what is damaged or cut off anywhere is refused, or is what was packed', async () => {
  const { NotUnpacked, unpackedZstd } = await sourceModule('zstd', { 'page:zstd': gzipSync(zstdCore()).toString('base64') });
  const unpack = async (bytes) => {
    const pieces = [];
    for await (const piece of unpackedZstd(new Blob([bytes]))) pieces.push(piece);
    return Buffer.concat(pieces);
  };
  const pack = (bytes, ...options) => spawnSync('zstd', ['-qc', ...options], { input: bytes, maxBuffer: 1 << 28 }).stdout;
  let state = 1;
  const next = () => (state = (state * 48271) % 0x7fffffff) >> 7;
  const log = (lines) => Buffer.from(Array.from({ length: lines }, (_one, at) => `${at} @@4112 FOCUS_VALUE=${next() % 999}\n`).join(''));

  const skipped = Buffer.from([0x5a, 0x2a, 0x4d, 0x18, 3, 0, 0, 0, 1, 2, 3]);
  const long = log(400_000);
  for (const text of [Buffer.alloc(0), log(1), Buffer.alloc(1 << 20, 7), Buffer.alloc((1 << 20) + 1, 7), long])
    for (const options of [['-1'], ['-9', '--no-check'], ['--long=27']])
      assert.ok((await unpack(pack(text, ...options))).equals(text), `${text.length} bytes with ${options}`);
  const frames = [pack(log(3)), skipped, pack(Buffer.alloc(0)), pack(long), skipped];
  assert.equal((await unpack(Buffer.concat(frames))).length, Buffer.concat([log(3), long]).length, 'in several frames');

  const text = log(40);
  const whole = pack(text);
  const refused = (error) => error instanceof NotUnpacked;
  for (let at = 0; at < whole.length; ++at) {
    await assert.rejects(unpack(whole.subarray(0, at)), refused, `cut off behind ${at} bytes`);
    const damaged = Buffer.from(whole);
    damaged[at] ^= 1 << (next() % 8);
    const got = await unpack(damaged).catch((error) => assert.ok(refused(error), String(error)));
    assert.ok(got === undefined || got.equals(text), `damaged at ${at}`);
  }
  await assert.rejects(unpack(Buffer.concat([whole, Buffer.from('rest')])), refused);
  await assert.rejects(unpack(pack(text, '--long=31')), { message: 'looks back farther than 128 MB', options: '--long=31' });
});
