// Tabs as keyboards and screen readers know them: one stop, arrow keys go from tab to tab.

import { byId } from './elements.ts';

export function makeTabs(tablist: HTMLElement, onTab: (tab: string) => void) {
  const tabs = [...tablist.querySelectorAll<HTMLElement>('[role=tab]')];
  const choose = (chosen: HTMLElement) => {
    for (const tab of tabs) {
      const isChosen = tab === chosen;
      tab.setAttribute('aria-selected', String(isChosen));
      tab.tabIndex = isChosen ? 0 : -1;
      byId(tab.getAttribute('aria-controls') ?? '').hidden = !isChosen;
    }
    onTab(chosen.id);
  };
  for (const tab of tabs) tab.addEventListener('click', () => choose(tab));
  tablist.addEventListener('keydown', ({ key }) => {
    const step = key === 'ArrowRight' ? 1 : key === 'ArrowLeft' ? -1 : 0;
    if (!step) return;
    const next = tabs[(tabs.findIndex((tab) => tab === document.activeElement) + step + tabs.length) % tabs.length];
    choose(next);
    next.focus();
  });
  return (id: string) => choose(byId(id));
}
