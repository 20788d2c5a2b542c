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
  const change = (now: View[]) => {
    views = now;
    try {
      localStorage.setItem(kept, JSON.stringify(views));
    } catch {
      // Where the browser keeps nothing they are there until the page is left.
    }
    draw();
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
    change([...views.filter((one) => one.name !== called), { name: called, address: addressNow() }]);
    announce('The filters are kept under this name.');
  });
  draw();
}
