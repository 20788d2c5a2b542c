// Numbers of a log's messages drawn over time or sequence, several together, with a status as bands behind them.
import uPlot from 'uplot';
import { announce, busy, byId, element, option, setOptions } from './elements.js';
import { colour, onColourChange, seriesColour } from './colours.js';
import { Cancelled } from './reader.js';
import { lowerBound } from './search.js';
import { counted, number, timeInWords } from './words.js';

const mostCurves = 8;
const leastHeight = 260;

// Ticks of a clock of 24 hours, by the step from tick to tick: what is written, and where the day is new.
const ticks = (step, clock, hasDate) => [step, clock, hasDate ? '\n{YYYY}-{MM}-{DD}' : null, null, hasDate ? '\n{MM}-{DD}' : null, null, null, null, 1];
const timeTicks = (hasDate) => [
  ...(hasDate ? [[86_400, '{YYYY}-{MM}-{DD}', null, null, null, null, null, null, 1]] : []),
  ticks(60, '{HH}:{mm}', hasDate),
  ticks(1, '{HH}:{mm}:{ss}', hasDate),
  ticks(0.001, '{HH}:{mm}:{ss}.{fff}', hasDate),
];

export class Plot {
  #curves = []; // { id, path, rows, numbers, end }: the rows in front of `end` are known
  #bands; // { id, path, names, rows, numbers }
  #chart;
  #isOverChosen = false; // by people
  #kinds; // how many the keys are of
  #stretches = []; // of the bands
  #latest = []; // of each curve, its latest value at each place

  constructor(catalogue) {
    this.catalogue = catalogue;
    byId('plotForm').addEventListener('submit', (event) => {
      event.preventDefault();
      this.#addNamed(byId('plotKeyName').value);
    });
    byId('plotOver').addEventListener('change', () => {
      this.#isOverChosen = true;
      this.draw();
    });
    byId('plotBands').addEventListener('change', () => busy(this.#chooseBands()));
    byId('plotWhole').addEventListener('click', () => this.#showWhole());
    byId('plot').addEventListener('keydown', (event) => this.#key(event));
    new ResizeObserver(() => this.#resize()).observe(byId('plot'));
    onColourChange(() => this.draw());
  }

  reset(log) {
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
  refresh() {
    if (!this.#isOverChosen) byId('plotOver').value = this.log.isTimed || this.log.count === 0 ? 'time' : 'sequence';
    if (this.#kinds === this.log.kinds.size && this.keys) return;
    this.#kinds = this.log.kinds.size;
    const keys = [...this.log.kinds.keys()].flatMap((id) =>
      this.catalogue.numbers(id).map((one) => ({ id, ...one, label: `${this.catalogue.name(id)} ${one.path}` })),
    );
    this.keys = keys;
    byId('plotKeys').replaceChildren(...keys.map(({ label }) => option(label, label)));
    const isState = ({ path, holds }) => holds !== 'real' && /STATUS|STATE|SEVERITY/.test(path);
    const states = keys.filter(isState);
    setOptions(byId('plotBands'), [option('', 'no bands'), ...states.map(({ label }) => option(label, label))]);
  }

  #addNamed(label) {
    const key = this.keys.find((one) => one.label === label) ?? this.keys.find((one) => one.path === label.trim());
    if (!key) {
      byId('plotProblem').textContent = `No kind in this log has the number "${label}": choose one of the list.`;
      return;
    }
    byId('plotKeyName').value = '';
    busy(this.add(key.id, key.path));
  }

  /** Draws a key of a kind with what is drawn already. */
  async add(id, path) {
    byId('plotProblem').textContent = '';
    if (this.#curves.some((curve) => curve.id === id && curve.path === path)) return;
    if (this.#curves.length === mostCurves) {
      byId('plotProblem').textContent = `There are ${mostCurves} curves: take one away first.`;
      return;
    }
    const curve = await this.#read(id, path);
    if (!curve) return;
    this.#curves.push(curve);
    this.draw();
    announce(`${path}: ${counted(curve.rows.length, 'value')} drawn${this.log.isComplete ? '' : ' so far: the log is still being read'}.`);
  }

  async #read(id, path) {
    const { log } = this;
    const curve = { id, path, rows: [], numbers: [] };
    try {
      await this.#readOn(log, curve);
      return this.log === log ? curve : undefined;
    } catch (error) {
      if (!(error instanceof Cancelled)) byId('plotProblem').textContent = error.message;
      return undefined;
    }
  }

  // Takes the numbers of the messages that a curve has not yet.
  async #readOn(log, curve) {
    const rows = [];
    const { columns, count } = log;
    for (let row = curve.end ?? 0; row < count; ++row) if (columns.id[row] === curve.id) rows.push(row);
    const onProgress = (share) => (byId('plotReading').textContent = `Reading ${curve.path}: ${Math.round(100 * share)} %`);
    const numbers = await log.series(rows, curve.path, { onProgress });
    byId('plotReading').textContent = '';
    curve.end = count;
    for (const [at, row] of rows.entries()) {
      curve.rows.push(row);
      curve.numbers.push(numbers[at]);
    }
  }

  #all() {
    return this.#bands ? [...this.#curves, this.#bands] : this.#curves;
  }

  /** The log is read to its end: the curves go on to it. */
  async noteComplete() {
    const { log } = this;
    this.refresh();
    if (this.#all().length === 0) return;
    for (const curve of this.#all()) {
      if (log.files.length > 1) Object.assign(curve, { rows: [], numbers: [], end: 0 }); // they stand in another order now
      await this.#readOn(log, curve);
      if (this.log !== log) return;
    }
    this.draw();
  }

  /** A message was changed. */
  async update(row) {
    const { log } = this;
    for (const curve of this.#all()) {
      const at = lowerBound(curve.rows, row);
      const isOfKind = log.columns.id[row] === curve.id;
      if (curve.rows[at] !== row && isOfKind) {
        curve.rows.splice(at, 0, row);
        curve.numbers.splice(at, 0, NaN);
      }
      if (curve.rows[at] === row) curve.numbers[at] = isOfKind ? (await log.series([row], curve.path))[0] : NaN;
    }
    this.refresh();
    if (this.log === log && this.#all().length > 0) this.draw();
  }

  async #chooseBands() {
    const key = this.keys.find(({ label }) => label === byId('plotBands').value);
    this.#bands = key && (await this.#read(key.id, key.path));
    if (this.#bands) this.#bands.names = key.names;
    this.draw();
  }

  // A curve's points in order of their places; those without a place or a value are left out.
  #points({ rows, numbers }) {
    const { columns } = this.log;
    const isTime = byId('plotOver').value === 'time';
    let xs = new Float64Array(rows.length);
    let ys = new Float64Array(rows.length);
    let count = 0;
    let isOrdered = true;
    for (let at = 0; at < rows.length; ++at) {
      const x = isTime ? columns.microseconds[rows[at]] / 1e6 : columns.sequence[rows[at]];
      if (!Number.isFinite(numbers[at]) || !Number.isFinite(x)) continue;
      isOrdered &&= count === 0 || xs[count - 1] <= x;
      xs[count] = x;
      ys[count++] = numbers[at];
    }
    xs = xs.subarray(0, count);
    ys = ys.subarray(0, count);
    if (isOrdered) return { xs, ys };
    const order = Uint32Array.from(xs, (_x, at) => at).sort((left, right) => xs[left] - xs[right]);
    return { xs: xs.map((_x, at) => xs[order[at]]), ys: ys.map((_y, at) => ys[order[at]]) };
  }

  // All curves over one row of places; null where a curve has no value. Also, of each place, each curve's latest value.
  #data() {
    const curves = this.#curves.map((curve) => this.#points(curve));
    if (curves.length === 1) {
      this.#latest = [curves[0].ys];
      return [curves[0].xs, curves[0].ys];
    }
    const next = curves.map(() => 0);
    const places = [];
    const values = curves.map(() => []);
    this.#latest = curves.map(() => []);
    for (;;) {
      let x = Infinity;
      for (let at = 0; at < curves.length; ++at) if (next[at] < curves[at].xs.length) x = Math.min(x, curves[at].xs[next[at]]);
      if (x === Infinity) return [places, ...values];
      places.push(x);
      for (let at = 0; at < curves.length; ++at) {
        const value = curves[at].xs[next[at]] === x ? curves[at].ys[next[at]++] : null;
        values[at].push(value);
        this.#latest[at].push(value ?? this.#latest[at].at(-1));
      }
    }
  }

  draw() {
    this.#chart?.destroy();
    this.#chart = undefined;
    byId('plotHint').hidden = this.#curves.length > 0;
    byId('plotWhole').hidden = true;
    this.#listCurves();
    if (!this.log || this.#curves.length === 0 || byId('plotPanel').hidden) return;
    this.#findStretches();
    this.#chart = new uPlot(this.#options(), this.#data(), byId('plot'));
    const bands = this.#bands ? `, with bands of ${this.#bands.path}` : '';
    byId('plot').setAttribute('aria-label', `Plot of ${this.#curves.map(({ path }) => path).join(', ')}${bands}`);
  }

  #options() {
    const isTime = byId('plotOver').value === 'time';
    const hasDate = this.log.columns.hasDate[0] === 1;
    const axis = {
      stroke: colour('muted'),
      font: `12px ${getComputedStyle(document.body).fontFamily}`,
      grid: { stroke: colour('line'), width: 1 },
      ticks: { stroke: colour('line'), width: 1 },
    };
    // The scales of the first two curves stand at the left and at the right.
    const valueAxes = this.#curves.slice(0, 2).map(({ path }, at) => ({
      ...axis,
      scale: path,
      side: at === 0 ? 3 : 1,
      stroke: seriesColour(at),
      grid: at === 0 ? axis.grid : { show: false },
      size: 64,
    }));
    return {
      width: byId('plot').clientWidth,
      height: this.#height(),
      legend: { show: false },
      tzDate: (seconds) => uPlot.tzDate(new Date(seconds * 1e3), 'Etc/UTC'),
      cursor: { drag: { x: true, y: false } },
      scales: { x: { time: isTime } },
      series: [{}, ...this.#curves.map(({ path }, at) => curveStyle(path, seriesColour(at)))],
      axes: [{ ...axis, ...(isTime ? { values: timeTicks(hasDate), space: 90 } : {}) }, ...valueAxes],
      hooks: {
        drawClear: [(plot) => this.#drawBands(plot)],
        setScale: [(plot, key) => key === 'x' && this.#noteZoom(plot)],
        setCursor: [(plot) => this.#noteCursor(plot)],
      },
    };
  }

  // The stretches in which a status stayed the same, in order.
  #findStretches() {
    this.#stretches = [];
    if (!this.#bands) return;
    const { names } = this.#bands;
    const { xs, ys } = this.#points(this.#bands);
    for (let at = 0; at < xs.length; ++at) {
      const latest = this.#stretches.at(-1);
      if (latest?.value === ys[at]) continue;
      if (latest) latest.end = xs[at];
      this.#stretches.push({ value: ys[at], name: names?.[ys[at]] ?? String(ys[at]), start: xs[at], end: Infinity });
    }
  }

  #drawBands(plot) {
    if (!this.#bands) return;
    const { ctx: context, bbox } = plot;
    const ratio = devicePixelRatio || 1;
    const values = [...new Set(this.#bands.numbers)].sort((left, right) => left - right);
    context.save();
    context.font = `${11 * ratio}px ${getComputedStyle(document.body).fontFamily}`;
    context.textBaseline = 'top';
    for (const { value, name, start, end } of this.#stretches) {
      const left = Math.max(bbox.left, plot.valToPos(start, 'x', true));
      const right = Math.min(bbox.left + bbox.width, end === Infinity ? Infinity : plot.valToPos(end, 'x', true));
      if (right <= left) continue;
      context.globalAlpha = 0.14;
      context.fillStyle = seriesColour(values.indexOf(value) + 2);
      context.fillRect(left, bbox.top, right - left, bbox.height);
      context.globalAlpha = 1;
      context.fillStyle = colour('muted');
      if (context.measureText(name).width + 8 * ratio < right - left) context.fillText(name, left + 4 * ratio, bbox.top + 4 * ratio);
    }
    context.restore();
  }

  #noteZoom(plot) {
    const places = plot.data[0];
    const { min, max } = plot.scales.x;
    byId('plotWhole').hidden = !(places.length > 0 && (min > places[0] || max < places.at(-1)));
  }

  #noteCursor(plot) {
    const at = plot.cursor.idx;
    if (at === null || at === undefined) return;
    const values = this.#curves.map(({ path }, curve) => [path, this.#latest[curve][at]]);
    const x = plot.data[0][at];
    const when = byId('plotOver').value === 'time' ? timeInWords(x * 1e6, this.log.columns.hasDate[0] === 1) : `sequence ${number(x)}`;
    const band = this.#stretches[lowerBound(this.#stretches, x + 1e-9, ({ start }) => start) - 1];
    if (band) values.push([this.#bands.path, band.name]);
    byId('plotReading').textContent = `${when}: ${values.map(([path, value]) => `${path} ${value ?? 'not yet known'}`).join(', ')}`;
  }

  #showWhole() {
    const places = this.#chart?.data[0];
    if (places?.length) this.#chart.setScale('x', { min: places[0], max: places.at(-1) });
  }

  #listCurves() {
    byId('plotCurves').replaceChildren(
      ...this.#curves.map((curve, at) =>
        element(
          'li',
          {},
          element('span', { class: `swatch swatch${at}` }),
          `${this.catalogue.name(curve.id)} ${curve.path}`,
          element('button', { type: 'button', class: 'remove', 'aria-label': `Take ${curve.path} away`, onclick: () => this.#remove(curve) }, '×'),
        ),
      ),
    );
  }

  #remove(curve) {
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
    if (this.#chart && width > 0 && width !== this.#chart.width) this.#chart.setSize({ width, height: this.#height() });
  }

  // Reads off and zooms without a pointer.
  #key(event) {
    const plot = this.#chart;
    if (!plot) return;
    const last = plot.data[0].length - 1;
    const at = plot.cursor.idx ?? -1;
    const steps = { ArrowRight: at + 1, ArrowLeft: at - 1, Home: 0, End: last };
    if (event.key in steps) {
      const next = Math.min(last, Math.max(0, steps[event.key]));
      const left = plot.valToPos(plot.data[0][next], 'x');
      const path = plot.data.slice(1).findIndex((values) => values[next] !== null);
      plot.setCursor({ left, top: plot.valToPos(plot.data[path + 1][next], this.#curves[path].path) });
    } else if (event.key === '+' || event.key === '-') {
      this.#zoom(event.key === '+' ? 0.5 : 2);
    } else if (event.key === 'Escape') {
      this.#showWhole();
    } else {
      return;
    }
    event.preventDefault();
  }

  // About the cursor.
  #zoom(factor) {
    const plot = this.#chart;
    const places = plot.data[0];
    const { min, max } = plot.scales.x;
    const middle = places[plot.cursor.idx ?? -1] ?? (min + max) / 2;
    const half = ((max - min) * factor) / 2;
    plot.setScale('x', { min: Math.max(places[0], middle - half), max: Math.min(places.at(-1), middle + half) });
  }
}

const curveStyle = (path, stroke) => ({ label: path, scale: path, stroke, width: 1.5, spanGaps: true, points: { size: 5 } });
