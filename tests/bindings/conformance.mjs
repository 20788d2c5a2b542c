// The JavaScript package against what the library says of the same messages: conformance.mjs CONFORMANCE LOG
import assert from 'node:assert/strict';
import { createReadStream, readFileSync } from 'node:fs';
import * as vek from 'vekparams2ascii';

const [conformance, log] = process.argv.slice(2);
const lines = readFileSync(conformance, 'utf8').trimEnd().split('\n');
const cases = lines.map((line) => JSON.parse(line));

// The bytes of a text of the library's JSON.
const bytesOf = (text) =>
  Buffer.concat([...text].map((one) => (one >= '\uef80' && one <= '\uefff' ? Buffer.from([one.charCodeAt(0) & 0xff]) : Buffer.from(one))));

const unbounded = { inf: Infinity, '-inf': -Infinity, nan: NaN, '-nan': NaN };

function same(found, expected, kind) {
  if (kind === 'real') assert.equal(found, unbounded[expected] ?? Number(expected));
  else if (Array.isArray(expected) && kind === 'wide') assert.equal(typeof found, 'string');
  else if (found instanceof vek.Record) hasValues(found, expected);
  else assert.equal(found, expected);
}

function hasValues(record, keys) {
  for (const { key, name, kind, isList, isCount } of record.fields) {
    if (isCount || !(key in keys)) continue;
    if (!isList) same(record[name], keys[key], kind);
    else keys[key].forEach((one, i) => same(record[name][i], one, kind));
    if (isList) assert.equal(record[name].length, keys[key].length);
  }
}

let refused = 0;
for (const one of cases) {
  if (one.group === 'default') {
    const made = new (vek.messageClasses.get(one.id))();
    made.sequence = 1;
    assert.equal(String(made), one.again);
    continue;
  }
  const source = bytesOf(one.source),
    problems = one.problems ?? [];
  const message = vek.parse(source, { damaged: true });
  assert.deepEqual(
    message.problems.map((each) => [each.code, each.path, each.start, each.end, each.remedy]),
    problems.map((each) => [each.code, each.path, each.start, each.end, each.suggestion]),
  );
  hasValues(message, one[one.name]);
  assert.deepEqual([message.messageId, message.echo, message.sequence], [one.id, one.echo, one.seq]);
  const error = problems.find((each) => each.severity === 'error');
  if (error) {
    ++refused;
    const { path, start, end, suggestion } = error;
    assert.throws(() => vek.parse(source), { name: 'MessageError', path, start, end, remedy: suggestion });
  }
  if (one.again === null) continue;
  message.sequence = (message.sequence + 1) | 0;
  assert.equal(Buffer.compare(Buffer.from(message.toBytes()), bytesOf(one.again)), 0, one.again);
  assert.equal(String(message), one.again);
  assert.ok(vek.parse(one.again, { damaged: true }).equals(message));
}
assert.ok(cases.length > 2500 && refused > 300);

for (const [make, error, path] of [
  [() => new vek.FocusValue({ focusValue: '1' }), TypeError, 'FOCUS_VALUE'],
  [() => new vek.FocusValue({ focusValue: NaN }), TypeError, 'FOCUS_VALUE'],
  [() => new vek.FocusValue({ mediaName: null }), TypeError, 'MEDIA_NAME'],
  [() => new vek.FocusValue({ mediaName: '\ud800' }), TypeError, 'MEDIA_NAME'],
  [() => new vek.FocusValue({ mediaName: 'a\0b' }), vek.MessageError, 'MEDIA_NAME'],
  [() => new vek.DeviceState({ deviceState: 2 ** 31 }), vek.MessageError, 'DEVICE_STATE'],
  [() => new vek.DeviceState({ deviceState: 0.5 }), TypeError, 'DEVICE_STATE'],
  [() => new vek.Media({ type: vek.Transport.Sheet }), TypeError, 'TYPE'],
  [
    () => new vek.CassetteArray({ arrayCassette: [new vek.Cassette(), new vek.Cassette({ mediaPosition: 1 })] }),
    TypeError,
    'ARRAY_CASSETTE[1].MEDIA_POSITION',
  ],
  [() => new vek.DeviceStatus({ msgs: Array(11).fill('x') }), vek.MessageError, 'MSGS[10]'],
  [() => new vek.CylinderJob({ deviceMediaNameId: 'x'.repeat(256) }), vek.MessageError, 'DEVICE_MEDIA_NAME_ID'],
  [() => new vek.FocusValue({ focus_valeu: 1 }), TypeError, 'FocusValue has no member focus_valeu; did you mean focusValue?'],
  [() => new vek.FocusValue({ mediaName: Buffer.from('x') }), TypeError, 'MEDIA_NAME: Buffer {…} is no text'],
  [() => new vek.DeviceStatus({ msgs: [, 'x'] }), TypeError, 'MSGS[0]: undefined is no text'],
  [() => new vek.DeviceInfo({ spinnerSpeed: null }), TypeError, 'SPINNER_SPEED: null is no array'],
  [() => vek.parse(null), TypeError, 'not null'],
  [() => vek.parse(new ArrayBuffer(4)), TypeError, 'not ArrayBuffer {…}'],
  [() => vek.parseAs('@@', vek.Media), TypeError, 'a class of messages first, not "@@"'],
])
  assert.throws(
    () => String(make()),
    (thrown) => thrown instanceof error && thrown.message.includes(path),
  );
assert.equal(String(new vek.JobPort({ jobName: '\u{1f600}', jobId: 1 })), '@@4194    59 -1 0 {JOB_NAME={-10179,-8704,0,};JOB_ID=1;}!!');
for (const [value, text] of [
  [2 ** -7, '0.007812'],
  [3 * 2 ** -7, '0.023438'],
  [-0, '-0.000000'],
  [5e9 + 2 ** -7, '5000000000.007812'],
  [1e22, '10000000000000000000000.000000'],
  [0.1 + 0.2, '0.300000'],
])
  assert.ok(String(new vek.FocusValue({ focusValue: value })).includes(`FOCUS_VALUE=${text};`), text);

const whole = readFileSync(log),
  found = [];
for await (const one of vek.messages(createReadStream(log, { highWaterMark: 7 }))) found.push(one);
assert.ok(found.length > 5 && found.every((one) => one.time.startsWith('2026-') && one.line > 0));
assert.ok(found.every((one) => whole.subarray(one.offset, one.offset + one.source.length).equals(Buffer.from(one.source))));
assert.equal(found.filter((one) => one.problems.length > 0).length, 1);
// In another text it is the same log, whatever pieces it comes in.
const sources = async (bytes, size) => {
  const pieces = Array.from({ length: Math.ceil(bytes.length / size) }, (_one, at) => bytes.subarray(at * size, (at + 1) * size));
  const all = [];
  for await (const { source, time } of vek.messages(pieces)) all.push(`${time} ${Buffer.from(source)}`);
  return all;
};
const plain = await sources(whole, whole.length);
const words = whole.toString();
const wrappings = [
  Buffer.from(`\ufeff${words}`, 'utf16le'),
  Buffer.from(words, 'utf16le').swap16(),
  Buffer.from(words.trimEnd().replaceAll(/.*/g, (line) => (line === '' ? '' : JSON.stringify({ MESSAGE: line, _PID: '7' })))),
];
for (const bytes of wrappings) for (const size of [7, 1000, bytes.length]) assert.deepEqual(await sources(bytes, size), plain);
for (const log of [['text'], 'nofile.log', null]) await assert.rejects(async () => vek.messages(log).next(), TypeError);

// The inspector's calls are of the same module, and read the same.
const { inspector } = vek;
for (const { source, problems } of found) {
  assert.equal(inspector.view(source).problems?.length ?? 0, problems.length);
  const [remedy] = inspector.remedies(source);
  assert.equal(remedy === undefined, problems.length === 0);
  if (remedy) assert.equal(vek.check(inspector.mend(source, remedy.problem)).length, problems.length - 1);
}

const speed = (all, work) => {
  for (let i = 0; i < 200; ++i) all.forEach(work); // until it is compiled
  const started = process.hrtime.bigint();
  for (let i = 0; i < 200; ++i) all.forEach(work);
  return Math.round((200 * all.length * 1e9) / Number(process.hrtime.bigint() - started));
};
const samples = cases.filter((one) => one.group === 'sample').map((one) => bytesOf(one.source));
const messages = samples.map((one) => vek.parse(one));
const texts = cases.filter((one) => one.group === 'sample').map((one) => JSON.stringify(one[one.name]));
const [parse, parseJson] = [speed(samples, (one) => vek.parse(one)), speed(texts, (one) => JSON.parse(one))];
const write = speed(messages, (one) => one.toBytes());
console.log(`the ${samples.length} samples: parse ${parse} messages a second, JSON.parse ${parseJson}; toBytes ${write}`);
console.log(`${cases.length} cases as the library has them`);
