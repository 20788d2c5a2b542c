// Two mornings of a device: yesterday its cassette was filled at nine; today the message that says so has a misspelt key.
import { message, samples } from './makeLog.mjs';

const cassette = /(\{.*\})!!/s.exec(samples.find(({ name }) => name.startsWith('4100')).text)[1];
const cassetteWith = (content) => cassette.replace(/INPUT_CONTENT=[^;]*/, content);
const sequenceOfFilling = 180;

/** The message that fills it. */
export const filled = message(4100, sequenceOfFilling, cassetteWith('INPUT_CONTENT=100.000000'));

function morning(day, filling) {
  const lines = [];
  for (let at = 0; at < 240; ++at) {
    const seconds = 8 * 3600 + at * 20;
    const clock = [seconds / 3600, (seconds / 60) % 60, seconds % 60].map((part) => String(Math.floor(part)).padStart(2, '0')).join(':');
    const text = at % 30 === 0 ? cassetteWith(`INPUT_CONTENT=${Math.max(0, 60 - at / 3).toFixed(6)}`) : undefined;
    const isEmpty = filling !== 'INPUT_CONTENT' && at === 217;
    const words = isEmpty ? 'Cassette Plate 1 is empty' : `Plate ${at} is done`;
    const status = `{STATUS=${isEmpty ? 4 : 3};LOW_STATUS=0;SEVERITY=${isEmpty ? 2 : 0};NUM_OF_MESSAGES=1;MSGS={${words},};}`;
    const said =
      at === sequenceOfFilling
        ? filled.replace('INPUT_CONTENT', filling)
        : text && at < sequenceOfFilling
          ? message(4100, at, text)
          : message(4161, at, status);
    lines.push(`2026-03-0${day}T${clock}.000 device > host ${said}\n`);
  }
  return { name: `2026-03-0${day}.log`, mimeType: 'text/plain', buffer: Buffer.from(lines.join('')) };
}

export const yesterday = morning(1, 'INPUT_CONTENT');
export const today = morning(2, 'INPUT_CONTNET');
