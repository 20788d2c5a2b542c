// What was found in a message, each with its place; choosing one goes there.
import { byId, element } from './elements.js';
import { counted } from './words.js';

export function showProblems(model, onProblem) {
  byId('problemPane').hidden = model.problems.length === 0;
  byId('problemCount').textContent = counted(model.problems.length, 'problem');
  byId('problems').replaceChildren(...model.problems.map((problem) => item(problem, onProblem)));
}

function item(problem, onProblem) {
  const { severity, message, consequence, suggestion, code, path, start, end } = problem;
  return element(
    'li',
    { 'data-code': code },
    element(
      'button',
      { type: 'button', class: `problem ${severity}`, onclick: () => onProblem(problem) },
      element('span', { class: 'problemSeverity' }, severity),
      element('span', { class: 'problemMessage' }, message),
      consequence ? element('span', { class: 'problemConsequence' }, consequence) : null,
      suggestion ? element('span', { class: 'problemMeant' }, 'did you mean ', element('b', {}, suggestion), '?') : null,
      element('span', { class: 'problemPlace' }, `${path ? `${path}, ` : ''}${placeInWords(start, end)}`),
    ),
  );
}

const placeInWords = (start, end) => (end - start > 1 ? `bytes ${start + 1} to ${end}` : `byte ${start + 1}`);
