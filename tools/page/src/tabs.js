// Tabs as keyboards and screen readers know them: one stop, arrow keys go from tab to tab.

export function makeTabs(tablist, onTab) {
  const tabs = [...tablist.querySelectorAll('[role=tab]')];
  const choose = (chosen) => {
    for (const tab of tabs) {
      const isChosen = tab === chosen;
      tab.setAttribute('aria-selected', isChosen);
      tab.tabIndex = isChosen ? 0 : -1;
      document.getElementById(tab.getAttribute('aria-controls')).hidden = !isChosen;
    }
    onTab(chosen.id);
  };
  for (const tab of tabs) tab.addEventListener('click', () => choose(tab));
  tablist.addEventListener('keydown', ({ key }) => {
    const step = { ArrowRight: 1, ArrowLeft: -1 }[key];
    if (!step) return;
    const next = tabs[(tabs.indexOf(document.activeElement) + step + tabs.length) % tabs.length];
    choose(next);
    next.focus();
  });
  return (id) => choose(tabs.find((tab) => tab.id === id));
}
