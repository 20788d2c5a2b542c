// A message on paper: its name and facts, its problems, every pair with its value and kind, and its text.
import { byId, element } from './elements.ts';
import { coreText } from './bytes.ts';
import type { Log } from './log.ts';
import type { MessageModel } from './messageModel.ts';
import { shown } from './signs.ts';
import { counted, number } from './words.ts';

const mostPairs = 3000;
const mostProblems = 300;

const heading = (words: string) => element('h3', {}, words);

function pairRows(model: MessageModel) {
  const numbers = model.listed(() => true);
  const rows = numbers.slice(0, mostPairs).map((at) => {
    const { label, depth, value, count, field } = model.node(at);
    const name = element('th', { scope: 'row' }, ...shown(label));
    name.style.paddingInlineStart = `${Math.max(0, depth - 1)}rem`;
    const words = count === undefined ? shown(value ?? '') : [counted(count, 'part')];
    return element('tr', {}, name, element('td', {}, ...words), element('td', {}, field?.words ?? ''));
  });
  return numbers.length > mostPairs
    ? [...rows, element('tr', {}, element('td', {}, `and ${number(numbers.length - mostPairs)} more`))]
    : rows;
}

function problems(model: MessageModel) {
  const count = Math.min(model.problemCount, mostProblems);
  if (count === 0) return [];
  const items = Array.from({ length: count }, (_one, at) => {
    const { severity, message, consequence, path } = model.problem(at);
    return element(
      'li',
      {},
      element('b', {}, severity),
      ' ',
      ...shown([message, consequence].filter(Boolean).join('; ')),
      ' ',
      ...shown(path ?? ''),
    );
  });
  return [heading(counted(model.problemCount, 'problem')), element('ul', {}, ...items)];
}

/** Puts the message that is shown on the page that is printed. */
export function makePrinting(shownMessage: () => { log?: Log; model?: MessageModel }) {
  addEventListener('beforeprint', () => {
    const { log, model } = shownMessage();
    const title = byId('messageName').textContent ?? '';
    document.body.classList.toggle('printsMessage', model !== undefined);
    if (!log || !model) return;
    byId('printout').replaceChildren(
      element('h2', {}, title),
      element('p', {}, ...shown(log.name), ' · ', byId('messageFacts').textContent),
      element('p', {}, byId('messageAbout').textContent),
      ...problems(model),
      heading('Values'),
      element('table', {}, element('tbody', {}, ...pairRows(model))),
      heading('Text'),
      element('pre', {}, ...shown(coreText(model.bytes), true)),
    );
  });
  addEventListener('afterprint', () => byId('printout').replaceChildren());
}
