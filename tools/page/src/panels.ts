// The panels beside the message, in the order of their tabs. Each has a file, and a section of index.html or one that
// it makes itself: see panel.ts.
import { byId, element } from './elements.ts';
import { Beside } from './beside.ts';
import { Differences } from './differences.ts';
import type { Panel, Parts } from './panel.ts';
import { Plot } from './plot.ts';
import { State } from './state.ts';

const panels = [Differences, Plot, State, Beside];

/** The id of a panel's section and tab. */
export const idOf = (panel: Panel) => (panel.constructor as typeof Panel).id;

/** Makes the panels, each with its tab. */
export function makePanels(parts: Parts) {
  return panels.map((Kind): Panel => {
    const { id, title } = Kind;
    const attributes = {
      type: 'button',
      role: 'tab',
      id: `${id}Tab`,
      'aria-controls': `${id}Panel`,
      'aria-selected': 'false',
      tabindex: '-1',
    };
    byId('tabs').append(element('button', attributes, title));
    return new Kind(parts);
  });
}
