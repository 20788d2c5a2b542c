// Colours for drawings, as the style sheet says them for light and dark.

const style = () => getComputedStyle(document.documentElement);

export const colour = (name: string) => style().getPropertyValue(`--${name}`).trim();

/** One of the eight colours of kinds and curves. */
export const seriesColour = (at: number) => colour(`series${at % 8}`);

export const onColourChange = (call: () => void) => matchMedia('(prefers-color-scheme: dark)').addEventListener('change', call);
