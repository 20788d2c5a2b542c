// A plot as a file: what is in sight of it as a picture of pixels or of lines, and its values as a table.
import type uPlot from 'uplot';
import { colour, seriesColour } from './colours.ts';
import { type Curve, pointsIn } from './curves.ts';
import { bandColours, bandsInSight, type Drawing } from './plotChart.ts';
import type { Range } from './types.ts';
import { timeInWords } from './words.ts';

const margin = 12;
const headHeight = 26;

/** The plot on its ground, with what is drawn above it. */
export function plotPng(plot: uPlot, { curves }: Drawing): Promise<Blob | null> {
  const ratio = devicePixelRatio || 1;
  const { width, height } = plot.ctx.canvas;
  const picture = document.createElement('canvas');
  Object.assign(picture, { width: width + 2 * margin * ratio, height: height + (headHeight + 2 * margin) * ratio });
  const context = picture.getContext('2d')!;
  context.fillStyle = colour('raised');
  context.fillRect(0, 0, picture.width, picture.height);
  context.font = `${13 * ratio}px ${getComputedStyle(document.body).fontFamily}`;
  context.textBaseline = 'middle';
  let left = margin * ratio;
  for (const [at, { path }] of curves.entries()) {
    context.fillStyle = seriesColour(at);
    context.fillText(path, left, (margin + headHeight / 2) * ratio);
    left += context.measureText(path).width + 18 * ratio;
  }
  context.drawImage(plot.ctx.canvas, margin * ratio, (margin + headHeight) * ratio);
  return new Promise((resolve) => picture.toBlob(resolve, 'image/png'));
}

const escaped = (text: string) => text.replaceAll('&', '&amp;').replaceAll('<', '&lt;').replaceAll('"', '&quot;');

function svgText(words: string, x: number, y: number, fill: string, anchor: 'start' | 'middle' | 'end' = 'start') {
  const lines = words.split('\n').map((line, at) => `<tspan x="${x.toFixed(1)}" dy="${at === 0 ? 0 : 14}">${escaped(line)}</tspan>`);
  return `<text y="${y.toFixed(1)}" fill="${fill}" text-anchor="${anchor}">${lines.join('')}</text>`;
}

// uPlot keeps of each axis what it has drawn.
type DrawnAxis = uPlot.Axis & { _splits?: number[]; _values?: (string | null)[] };

/** The same as lines and words. */
export function plotSvg(plot: uPlot, { curves, bands }: Drawing): Blob {
  const ratio = devicePixelRatio || 1;
  const area = {
    left: plot.bbox.left / ratio,
    top: plot.bbox.top / ratio,
    width: plot.bbox.width / ratio,
    height: plot.bbox.height / ratio,
  };
  const bottom = area.top + area.height;
  const xOf = (value: number) => area.left + plot.valToPos(value, 'x');
  const yOf = (value: number, scale: string) => area.top + plot.valToPos(value, scale);
  const muted = colour('muted');
  const parts: string[] = [];

  const colours = bandColours(bands);
  for (const { value, name, left, right } of bandsInSight(plot, bands, false)) {
    const fill = colours.get(value) ?? muted;
    parts.push(
      `<rect x="${left.toFixed(1)}" y="${area.top}" width="${(right - left).toFixed(1)}" height="${area.height}" fill="${fill}" opacity="0.14"/>`,
    );
    if (right - left > 8 + 6.5 * name.length) parts.push(svgText(name, left + 4, area.top + 14, muted));
  }
  for (const [at, axis] of (plot.axes as DrawnAxis[]).entries())
    for (const [i, split] of (axis._splits ?? []).entries()) {
      const words = String(axis._values?.[i] ?? '');
      if (at === 0) {
        const x = xOf(split);
        parts.push(`<path d="M${x.toFixed(1)} ${area.top}V${bottom}" stroke="${colour('line')}"/>`);
        if (words) parts.push(svgText(words, x, bottom + 18, muted, 'middle'));
      } else {
        const y = yOf(split, axis.scale ?? '');
        if (at === 1) parts.push(`<path d="M${area.left} ${y.toFixed(1)}h${area.width}" stroke="${colour('line')}"/>`);
        const [x, anchor] = at === 1 ? [area.left - 6, 'end' as const] : [area.left + area.width + 6, 'start' as const];
        if (words) parts.push(svgText(words, x, y + 4, seriesColour(at - 1), anchor));
      }
    }
  const [places, ...values] = plot.data;
  for (const [at, { path, isState }] of curves.entries()) {
    let line = '';
    for (const [i, value] of values[at].entries()) {
      if (value === null || value === undefined) continue;
      const x = xOf(places[i]).toFixed(1);
      const y = yOf(value, path).toFixed(1);
      line += line === '' ? `M${x} ${y}` : isState ? `H${x}V${y}` : `L${x} ${y}`;
    }
    parts.push(`<path d="${line}" clip-path="url(#area)" fill="none" stroke="${seriesColour(at)}" stroke-width="1.5"/>`);
  }
  let left = area.left;
  const names = curves.map(({ path }, at) => {
    const words = svgText(path, left, -8, seriesColour(at));
    left += 8 * path.length + 18;
    return words;
  });
  const box = `0 ${-headHeight} ${plot.width} ${plot.height + headHeight}`;
  return new Blob(
    [
      `<svg xmlns="http://www.w3.org/2000/svg" viewBox="${box}" width="${plot.width}" height="${plot.height + headHeight}" font-family="sans-serif" font-size="12">`,
      `<rect x="0" y="${-headHeight}" width="100%" height="100%" fill="${colour('raised')}"/>`,
      `<clipPath id="area"><rect x="${area.left}" y="${area.top}" width="${area.width}" height="${area.height}"/></clipPath>`,
      ...parts,
      ...names,
      '</svg>\n',
    ],
    { type: 'image/svg+xml' },
  );
}

const quoted = (words: string) => (/[",\n]/.test(words) ? `"${words.replaceAll('"', '""')}"` : words);

/** Every value in a stretch, a line for each place, names of enumerations by name. */
export function plotCsv(curves: Curve[], range: Range, { isTime, hasDate }: Drawing): Blob {
  const [places, ...values] = pointsIn(curves, range);
  const nameOf = (curve: Curve, value: number | null) => (value === null ? '' : curve.isState ? curve.nameOf(value) : String(value));
  const lines = places.map((place, i) =>
    [isTime ? timeInWords(place * 1e6, hasDate) : String(place), ...curves.map((curve, at) => quoted(nameOf(curve, values[at][i])))].join(
      ',',
    ),
  );
  const head = [isTime ? 'time' : 'sequence', ...curves.map(({ path }) => quoted(path))].join(',');
  return new Blob([[head, ...lines, ''].join('\n')], { type: 'text/csv' });
}
