// Views: filters under a name, kept by the browser, as they stand in the address.
import { announce, byId, closesByItself, element } from './elements.ts';
import { shown, shownWords } from './signs.ts';

const kept = 'vekmsg views';

type View = { name: string; address: string };

function load(): View[] {
  try {
    const views = JSON.parse(localStorage.getItem(kept) ?? '') as View[];
    return views.map(({ name, address }) => ({ name: String(name), address: String(address) }));
  } catch {
    return [];
  }
}

/** onView(address): a view is to be shown; addressNow(): what would show what is shown. */
export function makeViews(onView: (address: string) => void, addressNow: () => string) {
  const details = byId('views');
  const name = byId('viewName');
  let views = load();
  closesByItself(details);

  const draw = () => {
    byId('viewChoices').replaceChildren(
      ...views.map((view) =>
        element(
          'li',
          {},
          element('button', { type: 'button', class: 'quiet small', onclick: () => choose(view) }, ...shown(view.name)),
          element(
            'button',
            { type: 'button', class: 'remove', 'aria-label': `Forget ${shownWords(view.name)}`, onclick: () => forget(view) },
            '×',
          ),
        ),
      ),
    );
  };
  // Gives whether the browser keeps them, and not this page alone.
  const change = (now: View[]) => {
    views = now;
    draw();
    try {
      localStorage.setItem(kept, JSON.stringify(views));
      return true;
    } catch {
      return false;
    }
  };
  const choose = ({ address }: View) => {
    details.open = false;
    onView(address);
  };
  const forget = (view: View) => {
    change(views.filter((one) => one !== view));
    name.focus();
  };

  byId('viewForm').addEventListener('submit', (event) => {
    event.preventDefault();
    const called = name.value.trim();
    if (called === '') return;
    name.value = '';
    const isKept = change([...views.filter((one) => one.name !== called), { name: called, address: addressNow() }]);
    if (isKept) announce('The filters are kept under this name.');
    else announce('This browser keeps nothing: they have this name until the page is left. A bookmark of it has them, too.', true);
  });
  draw();
}
