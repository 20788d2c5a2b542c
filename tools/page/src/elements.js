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

export function replaceChildren(parent, ...children) {
  parent.replaceChildren(...children.filter((child) => child !== undefined && child !== null));
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

let announcing = 0;

/** Says something to those who listen. */
export function announce(words) {
  const region = byId('announcer');
  clearTimeout(announcing);
  region.textContent = '';
  announcing = setTimeout(() => (region.textContent = words), 50);
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
