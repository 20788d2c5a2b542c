// Numbers of a log's messages drawn over time or sequence, several together, with a status as bands behind them.
import uPlot from 'uplot';
import { Curve, drawn, extent, nearestPlace, nextPlace } from './curves.ts';
import { announce, busy, byId, element, nextTask, option, seldom, setOptions } from './elements.ts';
import { onColourChange } from './colours.ts';
import type { Catalogue } from './catalogue.ts';
import type { Log } from './log.ts';
import { Panel, type Parts } from './panel.ts';
import type { KindKey, Range } from './types.ts';
import { chartOptions, type Drawing } from './plotChart.ts';
import { plotCsv, plotPng, plotSvg } from './plotSaving.ts';
import { saveBlob } from './saving.ts';
import { lowerBound } from './search.ts';
import { counted, number, timeInWords } from './words.ts';

const mostCurves = 8;
const leastHeight = 260;
const savedKinds = ['Png', 'Svg', 'Csv'] as const;

const inSeconds = (from: number, to: number): Range => [from / 1e6, to / 1e6];

type Key = KindKey & { id: number; label: string };

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
  #drawing?: Drawing;
  #values = new Map<string, Range>(); // of paths, which values are in sight
  #passes?: (row: number) => boolean;
  #stretch?: Range; // of the time line
  #whole: Range = [0, 1]; // first and last place
  #range?: Range; // what is shown of it; nothing for all
  #place?: number; // that the keyboard goes to
  #readPlace?: number; // that was read off
  #round = 0;
  #isTime = true; // of the places that the curves have; what is chosen may be on its way
  #placeSoon = seldom(() => busy(this.#placeAll()), 500);
  #pressedAt = [0, 0];

  readonly #catalogue: Catalogue;

  constructor(private readonly parts: Parts) {
    super();
    this.#catalogue = parts.catalogue;
    byId('plotForm').addEventListener('submit', (event) => {
      event.preventDefault();
      this.#addNamed(byId('plotKeyName').value);
    });
    byId('plotOver').addEventListener('change', () => {
      this.#isOverChosen = true;
      busy(this.#placeAll());
    });
    byId('plotBands').addEventListener('change', () => busy(this.#chooseBands()));
    byId('plotWhole').addEventListener('click', () => this.#lookAtAll());
    for (const kind of savedKinds) byId(`plot${kind}`).addEventListener('click', () => busy(this.#save(kind)));
    byId('plot').addEventListener('wheel', (event) => this.#wheel(event), { passive: false });
    byId('plot').addEventListener('pointerdown', ({ clientX, clientY }) => (this.#pressedAt = [clientX, clientY]));
    byId('plot').addEventListener('click', (event) => this.#click(event));
    byId('plot').addEventListener('keydown', (event) => this.#key(event));
    const size = new ResizeObserver(() => this.#resize());
    size.observe(byId('plot'));
    size.observe(byId('detailPane'));
    onColourChange(() => this.draw());
  }

  override reset(log: Log) {
    for (const curve of this.#all()) curve.stop();
    this.log = log;
    this.#curves = [];
    this.#bands = undefined;
    this.#kinds = undefined;
    this.#stretch = undefined;
    this.#passes = undefined;
    this.#values.clear();
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
    const key = this.keys?.find((one) => one.id === id && one.path === path);
    if (!this.log || !key) return;
    const curve = new Curve(this.log, key);
    this.#curves.push(curve);
    await this.#readOn([curve]);
    if (this.#curves.includes(curve)) announce(`${path}: ${counted(curve.rows.length, 'value')} drawn${this.#lack(curve)}.`);
  }

  // What is not drawn of a curve, in words.
  #lack({ isComplete, isStopped, end, log }: Curve) {
    if (isComplete && log.isComplete) return '';
    return isStopped ? ` of the first ${number(end)} messages` : ' so far';
  }

  // Draws what some curves have, and what they get.
  async #readOn(curves: Curve[]) {
    const { log } = this;
    await Promise.all(curves.map((curve) => curve.run(() => curve.isComplete || this.#placeSoon())));
    if (this.log === log) await this.#placeAll();
  }

  #all() {
    return this.#bands ? [...this.#curves, this.#bands] : this.#curves;
  }

  /** The log is read to its end: the curves go on to it. */
  override complete() {
    this.refresh();
    return this.#readOn(this.#all());
  }

  /** Messages were changed. */
  override async update(rows: Uint32Array) {
    const { log } = this;
    for (const curve of this.#all()) await curve.update(rows);
    if (this.log !== log) return;
    this.refresh();
    await this.#placeAll();
  }

  async #chooseBands() {
    const key = this.keys?.find(({ label }) => label === byId('plotBands').value);
    this.#bands?.stop();
    this.#bands = this.log && key && new Curve(this.log, key);
    await this.#readOn(this.#all());
  }

  // Puts all points where they belong, and draws them.
  async #placeAll() {
    const { log } = this;
    if (!log) return;
    const round = ++this.#round;
    const isTime = byId('plotOver').value === 'time';
    const placings = [];
    for (const curve of this.#all()) {
      placings.push(await curve.place(isTime, this.#passes));
      await nextTask();
    }
    if (this.log !== log || round !== this.#round) return;
    for (const takeOver of placings) takeOver();
    if (this.#isTime !== isTime) {
      this.#readPlace = undefined;
      byId('plotReading').textContent = '';
    }
    this.#isTime = isTime;
    this.#values.clear();
    this.#range = this.#stretchHere();
    this.draw();
  }

  override open() {
    this.draw();
  }

  draw() {
    const { left = -1, top = -1 } = this.#chart?.cursor ?? {};
    this.#chart?.destroy();
    this.#chart = undefined;
    byId('plotHint').hidden = this.#curves.length > 0;
    byId('plotSaving').hidden = this.#curves.length === 0;
    this.#listCurves();
    const { log } = this;
    if (!log || this.#curves.length === 0 || byId('plotPanel').hidden) return;
    const isTime = this.#isTime;
    this.#whole = (isTime && log.isTimed ? inSeconds(log.times.first, log.times.last) : extent(this.#curves)) ?? [0, 1];
    const bandsOf = this.#bands?.stretches() ?? [];
    this.#drawing = { curves: this.#curves, bands: bandsOf, isTime, hasDate: log.columns.hasDate[0] === 1, values: this.#values };
    const hooks = { setSelect: [(plot: uPlot) => this.#zoomToSelection(plot)], setCursor: [(plot: uPlot) => this.#noteCursor(plot)] };
    this.#chart = new uPlot(chartOptions(this.#drawing, byId('plot').clientWidth, this.#height(), hooks), [[]], byId('plot'));
    this.#show(this.#range);
    if (byId('plot').matches(':hover')) this.#chart.setCursor({ left, top }); // the pointer stays where it was
    const bands = this.#bands ? `, with bands of ${this.#bands.path}` : '';
    byId('plot').setAttribute('aria-label', `Plot of ${this.#curves.map(({ path }) => path).join(', ')}${bands}`);
  }

  // Time line and plot look at the same stretch when both are over time.
  #stretchHere() {
    return this.#stretch && this.#isTime && this.log?.isTimed ? inSeconds(...this.#stretch) : undefined;
  }

  override stretch(range: Range | undefined) {
    this.#stretch = range;
    if (this.#isTime) this.#show(this.#stretchHere());
  }

  override follow(passes: ((row: number) => boolean) | undefined) {
    this.#passes = passes;
    if (this.#curves.length > 0) busy(this.#placeAll());
  }

  // As people want it.
  #lookAt(range: Range | undefined) {
    this.#show(range);
    const seen = this.#range;
    if (this.#isTime && this.log?.isTimed) this.parts.onStretch(seen && [seen[0] * 1e6, seen[1] * 1e6]);
  }

  #lookAtAll() {
    this.#values.clear();
    this.#lookAt(undefined);
  }

  /** Shows a stretch of the places, or all. */
  #show(range: Range | undefined) {
    const [first, last] = this.#whole;
    const [from, to] = range ? [Math.max(first, range[0]), Math.min(last, range[1])] : this.#whole;
    const isWhole = from <= first && to >= last;
    this.#range = isWhole ? undefined : [from, to];
    byId('plotWhole').hidden = isWhole && this.#values.size === 0;
    const chart = this.#chart;
    if (!chart) return;
    chart.batch(() => {
      chart.setData(drawn(this.#curves, [from, to], Math.max(100, Math.round(chart.bbox.width / (devicePixelRatio || 1)))), false);
      chart.setScale('x', to > from ? { min: from, max: to } : { min: from - 1, max: from + 1 });
    });
  }

  #zoomToSelection(plot: uPlot) {
    const { left, top, width, height } = plot.select;
    if (width < 5 || height < 5) return;
    plot.setSelect({ left: 0, top: 0, width: 0, height: 0 }, false);
    const isOfValues = height < plot.over.clientHeight;
    if (isOfValues) this.#lookAtValues(plot, top, top + height);
    const isOfPlaces = width < plot.over.clientWidth;
    this.#lookAt(isOfPlaces ? [plot.posToVal(left, 'x'), plot.posToVal(left + width, 'x')] : this.#range);
  }

  // Those between two heights.
  #lookAtValues(plot: uPlot, top: number, bottom: number) {
    for (const { path } of this.#curves) this.#values.set(path, [plot.posToVal(bottom, path), plot.posToVal(top, path)]);
  }

  // Zooms about the pointer, with Shift the values; sideways it goes along.
  #wheel(event: WheelEvent) {
    const plot = this.#chart;
    if (!plot || event.ctrlKey) return;
    event.preventDefault();
    const box = plot.over.getBoundingClientRect();
    const { min = 0, max = 1 } = plot.scales.x;
    const along = event.shiftKey ? 0 : event.deltaX;
    const turned = event.deltaY || (event.shiftKey ? event.deltaX : 0);
    if (Math.abs(along) > Math.abs(turned)) {
      const step = (along / box.width) * (max - min);
      const [first, last] = this.#whole;
      const kept = Math.max(first - min, Math.min(last - max, step));
      this.#lookAt([min + kept, max + kept]);
      return;
    }
    const factor = Math.exp(Math.max(-240, Math.min(240, turned)) / 400);
    if (event.shiftKey) {
      const y = event.clientY - box.top;
      this.#lookAtValues(plot, y - y * factor, y + (box.height - y) * factor);
      this.#show(this.#range);
    } else {
      const middle = plot.posToVal(event.clientX - box.left, 'x');
      this.#lookAt([middle - (middle - min) * factor, middle + (max - middle) * factor]);
    }
  }

  // The message of the nearest point.
  #click(event: MouseEvent) {
    const plot = this.#chart;
    const isDrag = Math.hypot(event.clientX - this.#pressedAt[0], event.clientY - this.#pressedAt[1]) > 4;
    if (!plot || isDrag || !plot.over.contains(event.target as Node)) return;
    const box = plot.over.getBoundingClientRect();
    const [x, y] = [event.clientX - box.left, event.clientY - box.top];
    let nearest: { row: number; away: number } | undefined;
    for (const { xs, ys, at, path } of this.#curves) {
      const middle = lowerBound(xs, plot.posToVal(x, 'x'));
      for (let i = Math.max(0, middle - 200); i < Math.min(xs.length, middle + 200); ++i) {
        const away = Math.hypot(plot.valToPos(xs[i], 'x') - x, plot.valToPos(ys[i], path) - y);
        if (away < (nearest?.away ?? 60)) nearest = { row: at[i], away };
      }
    }
    if (nearest) this.parts.onRow(nearest.row);
  }

  async #save(kind: (typeof savedKinds)[number]) {
    const [plot, drawing] = [this.#chart, this.#drawing];
    if (!plot || !drawing) return;
    const makers = {
      Png: () => plotPng(plot, drawing),
      Svg: () => plotSvg(plot, drawing),
      Csv: () => plotCsv(this.#all(), this.#range ?? this.#whole, drawing),
    };
    const blob = await makers[kind]();
    if (blob) saveBlob(blob, `${this.#curves.map(({ path }) => path).join(' ')}.${kind.toLowerCase()}`);
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
    const when = this.#isTime ? timeInWords(x * 1e6, this.log?.columns.hasDate[0] === 1) : `sequence ${number(x)}`;
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
          `${this.#catalogue.name(curve.id)} ${curve.path}${this.#lack(curve)}`,
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
    curve.stop();
    this.#curves = this.#curves.filter((one) => one !== curve);
    this.draw();
    byId('plotKeyName').focus();
  }

  // What the pane has left below the form.
  #height() {
    const pane = byId('detailPane').getBoundingClientRect();
    const room = pane.bottom - byId('plot').getBoundingClientRect().top - byId('plotReading').offsetHeight - 50;
    return Math.max(leastHeight, matchMedia('(max-width: 800px)').matches ? innerHeight / 2 : room);
  }

  #resize() {
    const width = byId('plot').clientWidth;
    if (!this.#chart || width === 0) return;
    const height = Math.floor(this.#height());
    if (width === this.#chart.width && Math.abs(height - this.#chart.height) < 2) return;
    this.#chart.setSize({ width, height });
    this.#show(this.#range);
  }

  // Reads off and zooms without a pointer.
  #key(event: KeyboardEvent) {
    if (!this.#chart) return;
    const [first, last] = this.#range ?? this.#whole;
    const x = this.#readPlace;
    const next = (isBack: boolean) => (x === undefined ? nearestPlace(this.#curves, first) : nextPlace(this.#curves, x, isBack));
    const places: Record<string, () => number | undefined> = {
      ArrowRight: () => next(false),
      ArrowLeft: () => next(true),
      Home: () => nearestPlace(this.#curves, first),
      End: () => nearestPlace(this.#curves, last),
    };
    if (event.key in places) this.#goTo(places[event.key]());
    else if (event.key === '+' || event.key === '-') this.#zoom(event.key === '+' ? 0.5 : 2);
    else if (event.key === 'Escape') this.#lookAtAll();
    else if (event.key === 'Enter') this.#openRead();
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
    this.#lookAt([middle - (middle - min) * factor, middle + (max - middle) * factor]);
  }

  #openRead() {
    const x = this.#readPlace;
    const curve = x === undefined ? undefined : this.#curves.find((one) => one.xs[one.lastUpTo(x)] === x);
    if (x !== undefined && curve) this.parts.onRow(curve.at[curve.lastUpTo(x)]);
  }
}
