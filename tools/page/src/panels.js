// The panels beside the message, in the order of their tabs. Each has a file, and a section of index.html or one that
// it makes itself: see panel.js.
import { byId, element } from './elements.js';
import { Differences } from './differences.js';
import { Plot } from './plot.js';

const panels = [Differences, Plot];

/** Makes the panels, each with its tab. */
export function makePanels(parts) {
  return panels.map((Kind) => {
    const { id, title } = Kind;
    const attributes = { type: 'button', role: 'tab', id: `${id}Tab`, 'aria-controls': `${id}Panel`, 'aria-selected': 'false', tabindex: '-1' };
    byId('tabs').append(element('button', attributes, title));
    return Object.assign(new Kind(parts), { id });
  });
}
