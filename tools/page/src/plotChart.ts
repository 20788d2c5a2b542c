// The drawing of a plot: its axes, its curves, and the bands behind them.
import uPlot from 'uplot';
import { type Band, type Curve } from './curves.ts';
import { colour, seriesColour } from './colours.ts';
import { lowerBound } from './search.ts';
import type { Range } from './types.ts';

/** What is drawn. */
export interface Drawing {
  curves: Curve[];
  bands: Band[];
  isTime: boolean;
  hasDate: boolean;
  /** Of paths, which values are in sight; all when it has none. */
  values: Map<string, Range>;
}

// Ticks of a clock of 24 hours, by the step from tick to tick: what is written, and where the day is new.
const ticks = (step: number, clock: string, hasDate: boolean) => [
  step,
  clock,
  hasDate ? '\n{YYYY}-{MM}-{DD}' : null,
  null,
  hasDate ? '\n{MM}-{DD}' : null,
  null,
  null,
  null,
  1,
];
const timeTicks = (hasDate: boolean) => [
  ...(hasDate ? [[86_400, '{YYYY}-{MM}-{DD}', null, null, null, null, null, null, 1]] : []),
  ticks(60, '{HH}:{mm}', hasDate),
  ticks(1, '{HH}:{mm}:{ss}', hasDate),
  ticks(0.001, '{HH}:{mm}:{ss}.{fff}', hasDate),
];

const seenThrough = 0.7; // of the curves in front of the first one

/** uPlot's options for a drawing. */
export function chartOptions(drawing: Drawing, width: number, height: number, hooks: uPlot.Hooks.Arrays): uPlot.Options {
  const { curves, isTime, hasDate, values } = drawing;
  const axis = {
    stroke: colour('muted'),
    font: `12px ${getComputedStyle(document.body).fontFamily}`,
    grid: { stroke: colour('line'), width: 1 },
    ticks: { stroke: colour('line'), width: 1 },
  };
  // The scales of the first two curves stand at the left and at the right.
  const valueAxes = curves.slice(0, 2).map((curve, at) => ({
    ...axis,
    ...(curve.isState ? stateTicks(curve) : {}),
    scale: curve.path,
    side: at === 0 ? 3 : 1,
    stroke: seriesColour(at),
    grid: at === 0 ? axis.grid : { show: false },
    size: curve.isState ? 110 : 64,
  }));
  const scaleOf = ({ path }: Curve): [string, uPlot.Scale] => [
    path,
    { range: (_plot, min, max) => values.get(path) ?? uPlot.rangeNum(min ?? 0, max ?? 1, 0.1, true) },
  ];
  return {
    width,
    height,
    legend: { show: false },
    tzDate: (seconds) => uPlot.tzDate(new Date(seconds * 1e3), 'Etc/UTC'),
    cursor: { drag: { x: true, y: true, uni: 20, setScale: false } },
    scales: { x: { time: isTime }, ...Object.fromEntries(curves.map(scaleOf)) },
    series: [{}, ...curves.map((curve, at) => ({ ...curveStyle(curve, seriesColour(at)), alpha: at === 0 ? 1 : seenThrough }))],
    axes: [{ ...axis, ...(isTime ? { values: timeTicks(hasDate), space: 90 } : {}) }, ...valueAxes],
    hooks: { ...hooks, drawClear: [(plot) => drawBands(plot, drawing.bands)] },
  };
}

function stateTicks(curve: Curve) {
  const values = (_plot: uPlot, all: number[]) => all.map((value) => (Number.isInteger(value) ? curve.nameOf(value) : ''));
  return { values, incrs: [1, 2, 5, 10] };
}

function curveStyle({ path, isState }: Curve, stroke: string): uPlot.Series {
  const steps = isState ? { paths: uPlot.paths.stepped?.({ align: 1 }) } : {};
  return { label: path, scale: path, stroke, width: 1.5, spanGaps: true, points: { size: 5 }, ...steps };
}

/** The colour of each value of some bands. */
export function bandColours(bands: Band[]) {
  const values = [...new Set(bands.map(({ value }) => value))].sort((left, right) => left - right);
  return new Map(values.map((value, at) => [value, seriesColour(at + 2)]));
}

/** Those of the bands that are in sight, with their ends in pixels of the plot's canvas, or of the page. */
export function bandsInSight(plot: uPlot, bands: Band[], isCanvas: boolean) {
  const ratio = isCanvas ? 1 : devicePixelRatio || 1;
  const edge = plot.bbox.left / ratio;
  const width = plot.bbox.width / ratio;
  const first = isCanvas ? edge : 0; // where the place at the edge is
  const { min = 0, max = 0 } = plot.scales.x;
  const last = lowerBound(bands, max, ({ start }) => start);
  const found = [];
  let drawnTo = first;
  for (let at = Math.max(0, lowerBound(bands, min, ({ start }) => start) - 1); at < last; ++at) {
    const { start, end } = bands[at];
    const left = Math.max(first, plot.valToPos(start, 'x', isCanvas));
    const right = Math.min(first + width, end === Infinity ? Infinity : plot.valToPos(end, 'x', isCanvas));
    if (right - drawnTo < 0.5) continue; // it would not be seen
    drawnTo = right;
    found.push({ ...bands[at], left: left - first + edge, right: right - first + edge });
  }
  return found;
}

function drawBands(plot: uPlot, bands: Band[]) {
  const { ctx: context, bbox } = plot;
  const ratio = devicePixelRatio || 1;
  const colours = bandColours(bands);
  const muted = colour('muted');
  context.save();
  context.font = `${11 * ratio}px ${getComputedStyle(document.body).fontFamily}`;
  context.textBaseline = 'top';
  for (const { value, name, left, right } of bandsInSight(plot, bands, true)) {
    context.globalAlpha = 0.14;
    context.fillStyle = colours.get(value) ?? muted;
    context.fillRect(left, bbox.top, right - left, bbox.height);
    context.globalAlpha = 1;
    context.fillStyle = muted;
    if (right - left > 20 * ratio && context.measureText(name).width + 8 * ratio < right - left)
      context.fillText(name, left + 4 * ratio, bbox.top + 4 * ratio);
  }
  context.restore();
}
