// Elements are made here and nowhere else. What they say is set as text, so nothing of a message becomes markup.

export const byId = (id) => document.getElementById(id);

/** element('button', { class: 'quiet', onclick }, 'Words', otherElement) */
export function element(name, attributes = {}, ...children) {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) {
    if (value === undefined || value === null || value === false) continue;
    if (key.startsWith('on')) made.addEventListener(key.slice(2), value);
    else made.setAttribute(key, value === true ? '' : value);
  }
  made.append(...children.filter((child) => child !== undefined && child !== null));
  return made;
}

export function option(value, text) {
  return element('option', { value }, text);
}

/** Puts new options into a selection and keeps its choice where that is still there. */
export function setOptions(select, options) {
  const chosen = select.value;
  select.replaceChildren(...options);
  if (options.some((one) => one.value === chosen)) select.value = chosen;
}

/** Lets the page answer before more is done. */
export const nextTask = () => new Promise((resolve) => setTimeout(resolve));

const sliceSize = 150_000;

/** Calls slice(from, to) for all of `count`, a piece after the other, and lets the page answer between them. */
export async function inSlices(count, slice, start = 0) {
  for (let from = start; from < count; from += sliceSize) {
    if (from > start) await nextTask();
    slice(from, Math.min(count, from + sliceSize));
  }
}

/** Calls work() again and again: once at a time, and once more when it was asked for meanwhile. */
export function oneByOne(work) {
  let running;
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
export async function busy(promise) {
  ++running;
  byId('work').setAttribute('aria-busy', 'true');
  try {
    return await promise;
  } finally {
    if (--running === 0) byId('work').removeAttribute('aria-busy');
  }
}

let announcing = 0;

/** Says what was done, or, when it was refused, why: to be seen for a while, and heard by screen readers. */
export function announce(words, isRefused = false) {
  const region = byId('announcer');
  clearTimeout(announcing);
  region.textContent = '';
  announcing = setTimeout(() => {
    region.textContent = words;
    region.classList.toggle('refused', isRefused);
    announcing = setTimeout(() => (region.textContent = ''), 3000 + 60 * words.length);
  }, 50);
}

/** Calls once in a while at most, the last time after all calls; less often when a call takes long. */
export function seldom(call, milliseconds) {
  let timer = 0;
  let pause = milliseconds;
  return () => {
    timer ||= setTimeout(() => {
      timer = 0;
      const start = performance.now();
      call();
      pause = Math.max(milliseconds, 6 * (performance.now() - start));
    }, pause);
  };
}
