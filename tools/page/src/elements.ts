// Elements are made here and nowhere else. What they say is set as text, so nothing of a message becomes markup.

// The elements of index.html that are more than any element is.
interface Elements {
  addKey: HTMLSelectElement;
  besideOnly: HTMLInputElement;
  besideWay: HTMLSelectElement;
  cancelReading: HTMLButtonElement;
  columnPath: HTMLInputElement;
  columns: HTMLDetailsElement;
  compareWith: HTMLSelectElement;
  editValue: HTMLButtonElement;
  editor: HTMLFormElement;
  file: HTMLInputElement;
  filterKind: HTMLSelectElement;
  filterProblem: HTMLSelectElement;
  filterWhere: HTMLInputElement;
  filterWords: HTMLInputElement;
  leaveDialog: HTMLDialogElement;
  listDialog: HTMLDialogElement;
  liveAddress: HTMLInputElement;
  liveBaud: HTMLInputElement;
  liveDialog: HTMLDialogElement;
  liveFile: HTMLButtonElement;
  liveSerial: HTMLButtonElement;
  pasteDialog: HTMLDialogElement;
  pasteText: HTMLTextAreaElement;
  otherFile: HTMLInputElement;
  plotBands: HTMLSelectElement;
  plotKey: HTMLButtonElement;
  plotKeyName: HTMLInputElement;
  plotOver: HTMLSelectElement;
  progressBar: HTMLProgressElement;
  rawDialog: HTMLDialogElement;
  redoEdit: HTMLButtonElement;
  savePassing: HTMLButtonElement;
  sendDialog: HTMLDialogElement;
  sendNow: HTMLButtonElement;
  sendText: HTMLTextAreaElement;
  stateSince: HTMLSelectElement;
  timeLine: HTMLCanvasElement;
  undoEdit: HTMLButtonElement;
  viewName: HTMLInputElement;
  views: HTMLDetailsElement;
}

export function byId<Id extends string>(id: Id): Id extends keyof Elements ? Elements[Id] : HTMLElement;
export function byId(id: string): HTMLElement {
  const found = document.getElementById(id);
  if (!found) throw new Error(`the page has no ${id}`);
  return found;
}

type Attribute = string | number | boolean | null | undefined | ((event: Event) => void);
export type Child = Node | string | null | undefined;

/** element('button', { class: 'quiet', onclick }, 'Words', otherElement) */
export function element<Name extends keyof HTMLElementTagNameMap>(
  name: Name,
  attributes: Record<string, Attribute> = {},
  ...children: Child[]
): HTMLElementTagNameMap[Name] {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) {
    if (value === undefined || value === null || value === false) continue;
    if (key.startsWith('on')) made.addEventListener(key.slice(2), value as (event: Event) => void);
    else made.setAttribute(key, value === true ? '' : String(value));
  }
  made.append(...children.filter((child): child is Node | string => child !== undefined && child !== null));
  return made;
}

export function option(value: string | number, text: string) {
  return element('option', { value }, text);
}

/** Puts new options into a selection and keeps its choice where that is still there. */
export function setOptions(select: HTMLSelectElement, options: HTMLOptionElement[]) {
  const chosen = select.value;
  select.replaceChildren(...options);
  if (options.some((one) => one.value === chosen)) select.value = chosen;
}

/** Closes a box of choices when people go on elsewhere. */
export function closesByItself(details: HTMLDetailsElement) {
  document.addEventListener('pointerdown', ({ target }) => {
    if (!details.contains(target as Node)) details.open = false;
  });
  details.addEventListener('keydown', ({ key }) => {
    if (key !== 'Escape') return;
    details.open = false;
    details.querySelector('summary')?.focus();
  });
}

/** Lets the page answer before more is done. */
export const nextTask = () => new Promise((resolve) => setTimeout(resolve));

const sliceSize = 150_000;

/** Calls slice(from, to) for all of `count`, a piece after the other, and lets the page answer between them. */
export async function inSlices(count: number, slice: (from: number, to: number) => void, start = 0) {
  for (let from = start; from < count; from += sliceSize) {
    if (from > start) await nextTask();
    slice(from, Math.min(count, from + sliceSize));
  }
}

/** Calls work() again and again: once at a time, and once more when it was asked for meanwhile. */
export function oneByOne(work: () => Promise<void>) {
  let running: Promise<void> | undefined;
  let isWanted = false;
  const run = async () => {
    try {
      do {
        isWanted = false;
        await work();
      } while (isWanted);
    } finally {
      running = undefined;
    }
  };
  return () => {
    isWanted = true;
    return (running ??= run());
  };
}

let running = 0;

/** Marks the page as busy until a promise is done. */
export async function busy<Result>(promise: Promise<Result> | Result) {
  ++running;
  byId('work').setAttribute('aria-busy', 'true');
  try {
    return await promise;
  } finally {
    if (--running === 0) byId('work').removeAttribute('aria-busy');
  }
}

let announcing: ReturnType<typeof setTimeout> | undefined;

/** Says what was done, or, when it was refused, why: to be seen for a while, and heard by screen readers. */
export function announce(words: string, isRefused = false) {
  const region = byId('announcer');
  clearTimeout(announcing);
  region.textContent = '';
  announcing = setTimeout(() => {
    region.textContent = words;
    region.classList.toggle('refused', isRefused);
    announcing = setTimeout(() => (region.textContent = ''), 3000 + 60 * words.length);
  }, 50);
}

/**
 * Calls once in a while at most, the last time after all calls; less often when a call takes long. `isEager`: at once when
 * the latest call is a while ago.
 */
export function seldom(call: () => unknown, milliseconds: number, isEager = false) {
  let timer: ReturnType<typeof setTimeout> | undefined;
  let pause = milliseconds;
  let ended = -Infinity;
  return () => {
    timer ??= setTimeout(
      () => {
        timer = undefined;
        const start = performance.now();
        call();
        ended = performance.now();
        pause = Math.max(milliseconds, 6 * (ended - start));
      },
      isEager ? Math.max(0, ended + pause - performance.now()) : pause,
    );
  };
}
