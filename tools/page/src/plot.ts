// Numbers of a log's messages drawn over time or sequence, several together, with a status as bands behind them.
import uPlot from 'uplot';
import { Curve, type Band, drawn, extent, nearestPlace, nextPlace } from './curves.ts';
import { announce, busy, byId, element, nextTask, option, setOptions } from './elements.ts';
import { colour, onColourChange, seriesColour } from './colours.ts';
import type { Catalogue } from './catalogue.ts';
import type { Log } from './log.ts';
import { Panel, type Parts } from './panel.ts';
import type { NumberKey, Range } from './types.ts';
import { Cancelled } from './reader.ts';
import { lowerBound } from './search.ts';
import { counted, number, timeInWords } from './words.ts';

const mostCurves = 8;
const leastHeight = 260;

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

type Key = NumberKey & { id: number; label: string };

export class Plot extends Panel {
  static override id = 'plot';
  static override title = 'Plot';
  log?: Log;
  keys?: Key[];
  #curves: Curve[] = [];
  #bands?: Curve;
  #chart?: uPlot;
  #isOverChosen = false; // by people
  #kinds?: number; // how many the keys are of
  #stretches: Band[] = []; // of the bands
  #whole: Range = [0, 1]; // first and last place of the curves
  #range?: Range; // what is shown of it; nothing for all
  #place?: number; // that the keyboard goes to
  #readPlace?: number; // that was read off
  #round = 0;

  readonly #catalogue: Catalogue;

  constructor({ catalogue }: Parts) {
    super();
    this.#catalogue = catalogue;
    byId('plotForm').addEventListener('submit', (event) => {
      event.preventDefault();
      this.#addNamed(byId('plotKeyName').value);
    });
    byId('plotOver').addEventListener('change', () => {
      this.#isOverChosen = true;
      busy(this.#placeAll());
    });
    byId('plotBands').addEventListener('change', () => busy(this.#chooseBands()));
    byId('plotWhole').addEventListener('click', () => this.#show(undefined));
    byId('plot').addEventListener('keydown', (event) => this.#key(event));
    new ResizeObserver(() => this.#resize()).observe(byId('plot'));
    onColourChange(() => this.draw());
  }

  override reset(log: Log) {
    this.log = log;
    this.#curves = [];
    this.#bands = undefined;
    this.#kinds = undefined;
    byId('plotBands').value = '';
    this.#isOverChosen = false;
    this.refresh();
    this.draw();
  }

  /** The keys that the kinds of the log have. */
  override refresh() {
    const { log } = this;
    if (!log) return;
    if (!this.#isOverChosen) byId('plotOver').value = log.isTimed || log.count === 0 ? 'time' : 'sequence';
    if (this.#kinds === log.kinds.size && this.keys) return;
    this.#kinds = log.kinds.size;
    const keys = [...log.kinds.keys()].flatMap((id) =>
      this.#catalogue.numbers(id).map((one) => ({ id, ...one, label: `${this.#catalogue.name(id)} ${one.path}` })),
    );
    this.keys = keys;
    byId('plotKeys').replaceChildren(...keys.map(({ label }) => option(label, label)));
    const isState = ({ path, holds }: Key) => holds !== 'real' && /STATUS|STATE|SEVERITY/.test(path);
    const states = keys.filter(isState);
    setOptions(byId('plotBands'), [option('', 'no bands'), ...states.map(({ label }) => option(label, label))]);
  }

  #addNamed(label: string) {
    const key = this.keys?.find((one) => one.label === label) ?? this.keys?.find((one) => one.path === label.trim());
    if (!key) {
      byId('plotProblem').textContent = `No kind in this log has the number "${label}": choose one of the list.`;
      return;
    }
    byId('plotKeyName').value = '';
    busy(this.add(key.id, key.path));
  }

  /** Draws a key of a kind with what is drawn already. */
  async add(id: number, path: string) {
    byId('plotProblem').textContent = '';
    if (this.#curves.some((curve) => curve.id === id && curve.path === path)) return;
    if (this.#curves.length === mostCurves) {
      byId('plotProblem').textContent = `There are ${mostCurves} curves: take one away first.`;
      return;
    }
    const curve = await this.#read(this.keys?.find((one) => one.id === id && one.path === path));
    if (!curve) return;
    this.#curves.push(curve);
    await this.#placeAll();
    announce(`${path}: ${counted(curve.rows.length, 'value')} drawn${this.log?.isComplete ? '' : ' so far: the log is still being read'}.`);
  }

  async #read(key: Key | undefined) {
    const { log } = this;
    if (!log || !key) return undefined;
    const curve = new Curve(key);
    try {
      await this.#readOn(log, curve);
      return this.log === log ? curve : undefined;
    } catch (error) {
      if (!(error instanceof Cancelled)) byId('plotProblem').textContent = (error as Error).message;
      return undefined;
    }
  }

  async #readOn(log: Log, curve: Curve) {
    const onProgress = (share: number) => (byId('plotReading').textContent = `Reading ${curve.path}: ${Math.round(100 * share)} %`);
    await curve.readOn(log, { onProgress });
    byId('plotReading').textContent = '';
  }

  #all() {
    return this.#bands ? [...this.#curves, this.#bands] : this.#curves;
  }

  /** The log is read to its end: the curves go on to it. */
  override async complete() {
    const { log } = this;
    if (!log) return;
    this.refresh();
    for (const curve of this.#all()) {
      await this.#readOn(log, curve);
      if (this.log !== log) return;
    }
    await this.#placeAll();
  }

  /** A message was changed. */
  override async update(row: number) {
    const { log } = this;
    if (!log) return;
    for (const curve of this.#all()) await curve.update(log, row);
    if (this.log !== log) return;
    this.refresh();
    await this.#placeAll();
  }

  async #chooseBands() {
    const key = this.keys?.find(({ label }) => label === byId('plotBands').value);
    this.#bands = key && (await this.#read(key));
    await this.#placeAll();
  }

  // Puts all points where they belong, and draws them.
  async #placeAll() {
    const { log } = this;
    if (!log) return;
    const round = ++this.#round;
    const isTime = byId('plotOver').value === 'time';
    for (const curve of this.#all()) {
      await curve.place(log, isTime);
      await nextTask();
    }
    if (this.log !== log || round !== this.#round) return;
    this.#stretches = this.#bands?.stretches() ?? [];
    this.#range = undefined;
    this.draw();
  }

  override open() {
    this.draw();
  }

  draw() {
    this.#chart?.destroy();
    this.#chart = undefined;
    byId('plotHint').hidden = this.#curves.length > 0;
    this.#listCurves();
    const { log } = this;
    if (!log || this.#curves.length === 0 || byId('plotPanel').hidden) return;
    this.#whole = extent(this.#curves) ?? [0, 1];
    const chart = new uPlot(this.#options(log), [[]], byId('plot'));
    this.#chart = chart;
    this.#show(this.#range);
    const bands = this.#bands ? `, with bands of ${this.#bands.path}` : '';
    byId('plot').setAttribute('aria-label', `Plot of ${this.#curves.map(({ path }) => path).join(', ')}${bands}`);
  }

  /** Shows a stretch of the places, or all. */
  #show(range: Range | undefined) {
    const [first, last] = this.#whole;
    const [from, to] = range ? [Math.max(first, range[0]), Math.min(last, range[1])] : this.#whole;
    const isWhole = from <= first && to >= last;
    this.#range = isWhole ? undefined : [from, to];
    byId('plotWhole').hidden = isWhole;
    const chart = this.#chart;
    if (!chart) return;
    chart.batch(() => {
      chart.setData(drawn(this.#curves, [from, to], Math.max(100, Math.round(chart.bbox.width / (devicePixelRatio || 1)))), false);
      chart.setScale('x', to > from ? { min: from, max: to } : { min: from - 1, max: from + 1 });
    });
  }

  #options(log: Log): uPlot.Options {
    const isTime = byId('plotOver').value === 'time';
    const hasDate = log.columns.hasDate[0] === 1;
    const axis = {
      stroke: colour('muted'),
      font: `12px ${getComputedStyle(document.body).fontFamily}`,
      grid: { stroke: colour('line'), width: 1 },
      ticks: { stroke: colour('line'), width: 1 },
    };
    // The scales of the first two curves stand at the left and at the right.
    const valueAxes = this.#curves.slice(0, 2).map((curve, at) => ({
      ...axis,
      ...(curve.isState
        ? {
            values: (_plot: uPlot, values: number[]) => values.map((value) => (Number.isInteger(value) ? curve.nameOf(value) : '')),
            incrs: [1, 2, 5, 10],
          }
        : {}),
      scale: curve.path,
      side: at === 0 ? 3 : 1,
      stroke: seriesColour(at),
      grid: at === 0 ? axis.grid : { show: false },
      size: curve.isState ? 110 : 64,
    }));
    return {
      width: byId('plot').clientWidth,
      height: this.#height(),
      legend: { show: false },
      tzDate: (seconds) => uPlot.tzDate(new Date(seconds * 1e3), 'Etc/UTC'),
      cursor: { drag: { x: true, y: false, setScale: false } },
      scales: { x: { time: isTime } },
      series: [{}, ...this.#curves.map((curve, at) => curveStyle(curve, seriesColour(at)))],
      axes: [{ ...axis, ...(isTime ? { values: timeTicks(hasDate), space: 90 } : {}) }, ...valueAxes],
      hooks: {
        drawClear: [(plot) => this.#drawBands(plot)],
        setSelect: [(plot) => this.#zoomToSelection(plot)],
        setCursor: [(plot) => this.#noteCursor(plot)],
      },
    };
  }

  #drawBands(plot: uPlot) {
    if (!this.#bands) return;
    const { ctx: context, bbox } = plot;
    const ratio = devicePixelRatio || 1;
    const { min = 0, max = 0 } = plot.scales.x;
    const values = [...new Set(this.#stretches.map(({ value }) => value))].sort((left, right) => left - right);
    const colours = new Map(values.map((value, at) => [value, seriesColour(at + 2)]));
    const muted = colour('muted');
    context.save();
    context.font = `${11 * ratio}px ${getComputedStyle(document.body).fontFamily}`;
    context.textBaseline = 'top';
    const last = lowerBound(this.#stretches, max, ({ start }) => start);
    let drawnTo = bbox.left;
    for (let at = Math.max(0, lowerBound(this.#stretches, min, ({ start }) => start) - 1); at < last; ++at) {
      const { value, name, start, end } = this.#stretches[at];
      const left = Math.max(bbox.left, plot.valToPos(start, 'x', true));
      const right = Math.min(bbox.left + bbox.width, end === Infinity ? Infinity : plot.valToPos(end, 'x', true));
      if (right - drawnTo < 0.5) continue; // it would not be seen
      drawnTo = right;
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

  #zoomToSelection(plot: uPlot) {
    const { left, width } = plot.select;
    if (width < 5) return;
    this.#show([plot.posToVal(left, 'x'), plot.posToVal(left + width, 'x')]);
    plot.setSelect({ left: 0, top: 0, width: 0, height: 0 }, false);
  }

  #noteCursor(plot: uPlot) {
    const { left = -1 } = plot.cursor;
    const x = this.#place ?? (left >= 0 ? nearestPlace(this.#curves, plot.posToVal(left, 'x')) : undefined);
    if (x === undefined) return;
    this.#readPlace = x;
    const values = this.#curves.map((curve): [string, string | number | undefined] => [
      curve.path,
      curve.isState ? this.#nameAt(curve, x) : curve.ys[curve.lastUpTo(x)],
    ]);
    const when = byId('plotOver').value === 'time' ? timeInWords(x * 1e6, this.log?.columns.hasDate[0] === 1) : `sequence ${number(x)}`;
    if (this.#bands) values.push([this.#bands.path, this.#nameAt(this.#bands, x)]);
    byId('plotReading').textContent = `${when}: ${values.map(([path, value]) => `${path} ${value ?? 'not yet known'}`).join(', ')}`;
  }

  #nameAt(curve: Curve, x: number) {
    const at = curve.lastUpTo(x);
    return at < 0 ? undefined : curve.nameOf(curve.ys[at]);
  }

  #listCurves() {
    byId('plotCurves').replaceChildren(
      ...this.#curves.map((curve, at) =>
        element(
          'li',
          {},
          element('span', { class: `swatch swatch${at}` }),
          `${this.#catalogue.name(curve.id)} ${curve.path}`,
          element(
            'button',
            { type: 'button', class: 'remove', 'aria-label': `Take ${curve.path} away`, onclick: () => this.#remove(curve) },
            '×',
          ),
        ),
      ),
    );
  }

  #remove(curve: Curve) {
    this.#curves = this.#curves.filter((one) => one !== curve);
    this.draw();
    byId('plotKeyName').focus();
  }

  // What the pane has left below the form.
  #height() {
    const pane = byId('detailPane').getBoundingClientRect();
    const room = pane.bottom - byId('plot').getBoundingClientRect().top - byId('plotReading').offsetHeight - 30;
    return matchMedia('(max-width: 800px)').matches ? leastHeight : Math.max(leastHeight, room);
  }

  #resize() {
    const width = byId('plot').clientWidth;
    if (!this.#chart || width === 0 || width === this.#chart.width) return;
    this.#chart.setSize({ width, height: this.#height() });
    this.#show(this.#range);
  }

  // Reads off and zooms without a pointer.
  #key(event: KeyboardEvent) {
    if (!this.#chart) return;
    const [first, last] = this.#range ?? this.#whole;
    const x = this.#readPlace;
    const next = (isBack: boolean) => (x === undefined ? first : nextPlace(this.#curves, x, isBack));
    const places: Record<string, () => number | undefined> = {
      ArrowRight: () => next(false),
      ArrowLeft: () => next(true),
      Home: () => nearestPlace(this.#curves, first),
      End: () => nearestPlace(this.#curves, last),
    };
    if (event.key in places) this.#goTo(places[event.key]());
    else if (event.key === '+' || event.key === '-') this.#zoom(event.key === '+' ? 0.5 : 2);
    else if (event.key === 'Escape') this.#show(undefined);
    else return;
    event.preventDefault();
  }

  #goTo(x: number | undefined) {
    const plot = this.#chart;
    if (!plot || x === undefined) return;
    const curve = this.#curves.find((one) => one.xs[one.lastUpTo(x)] === x);
    if (!curve) return;
    this.#place = x;
    plot.setCursor({ left: plot.valToPos(x, 'x'), top: plot.valToPos(curve.ys[curve.lastUpTo(x)], curve.path) });
    this.#place = undefined;
  }

  // About what was read off.
  #zoom(factor: number) {
    const { min = 0, max = 1 } = this.#chart?.scales.x ?? {};
    const x = this.#readPlace;
    const middle = x !== undefined && x >= min && x <= max ? x : (min + max) / 2;
    this.#show([middle - (middle - min) * factor, middle + (max - middle) * factor]);
  }
}

function curveStyle({ path, isState }: Curve, stroke: string): uPlot.Series {
  const steps = isState ? { paths: uPlot.paths.stepped?.({ align: 1 }) } : {};
  return { label: path, scale: path, stroke, width: 1.5, spanGaps: true, points: { size: 5 }, ...steps };
}
