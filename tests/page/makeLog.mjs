// A log of a device at work, the same one every time: focus values that drift, a status that changes, the sample
// messages in between; some sequence numbers are missing, and some messages are cut off.
import { readFileSync, readdirSync } from 'node:fs';

const folder = new URL('../../examples/messages/', import.meta.url).pathname;

export const samples = readdirSync(folder)
  .sort()
  .map((name) => ({ name, path: folder + name, text: readFileSync(folder + name, 'utf8') }));

export function message(id, sequence, body) {
  const rest = ` 7 ${sequence} ${body}!!`;
  const length = Buffer.byteLength(rest) + `@@${id} `.length + 5 + 1;
  return `@@${id} ${String(length).padStart(5)}${rest}`;
}

function randomNumbers(seed) {
  let state = seed;
  return () => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return state / 2 ** 32;
  };
}

const bodyOf = (text) => /(\{.*\})!!/s.exec(text)[1];
const idOf = (text) => Number(/^@@(\d+)/.exec(text)[1]);

/** Lines of the log, and in `facts` what the page should find in them. */
export function* logLines(count, facts = {}) {
  Object.assign(facts, { messages: 0, damaged: 0, gaps: 0, missing: 0, kinds: new Map(), focus: [] });
  const random = randomNumbers(1);
  let time = Date.UTC(2026, 2, 1, 6, 0, 0);
  let sequence = 100;
  let status = 1;
  for (let at = 0; at < count; ++at) {
    time += 200 + Math.floor(random() * 4000);
    ++sequence;
    const stamp = new Date(time).toISOString().replace('Z', '');
    // A gap never follows a damaged message or stands in front of one, so that both can be counted.
    const isCut = at % 97 === 50;
    if (at > 0 && at % 151 === 120 && at % 97 > 52) {
      const missing = 1 + Math.floor(random() * 4);
      sequence += missing;
      facts.missing += missing;
      ++facts.gaps;
    }
    const choice = random();
    let text;
    if (choice < 0.55) {
      const value = 1024 + 12 * Math.sin(at / 180) + at / 400 + random();
      text = message(4112, sequence, `{MEDIA_NAME=Northlight violet 0.3;FOCUS_VALUE=${value.toFixed(6)};}`);
    } else if (choice < 0.9) {
      if (random() < 0.04) status = 1 + Math.floor(random() * 4);
      const low = Math.floor(20 + 10 * Math.cos(at / 90));
      text = message(4161, sequence, `{STATUS=${status};LOW_STATUS=${low};SEVERITY=0;NUM_OF_MESSAGES=1;MSGS={Plate ${at} of the job,};}`);
    } else {
      const sample = samples[Math.floor(random() * samples.length)].text;
      text = message(idOf(sample), sequence, bodyOf(sample));
    }
    const id = idOf(text);
    if (isCut) {
      text = text.slice(0, -3);
      ++facts.damaged;
    } else if (id === 4112) {
      facts.focus.push(Number(/FOCUS_VALUE=([\d.]+)/.exec(text)[1]));
    }
    ++facts.messages;
    facts.kinds.set(id, (facts.kinds.get(id) ?? 0) + 1);
    yield `${stamp} device ${text}\n`;
  }
}
