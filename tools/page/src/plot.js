// Numbers of a log's messages drawn over time or sequence, several together, with a status as bands behind them.
import uPlot from 'uplot';
import { announce, byId, element, option, setOptions } from './elements.js';
import { colour, onColourChange, seriesColour } from './colours.js';
import { Cancelled } from './reader.js';
import { counted, number, timeInWords } from './words.js';

const mostCurves = 8;
const plotHeight = 300;

// Ticks of a clock of 24 hours, by the step from tick to tick: what is written, and where the day is new.
const ticks = (step, clock, hasDate) => [step, clock, hasDate ? '\n{YYYY}-{MM}-{DD}' : null, null, hasDate ? '\n{MM}-{DD}' : null, null, null, null, 1];
const timeTicks = (hasDate) => [
  ...(hasDate ? [[86_400, '{YYYY}-{MM}-{DD}', null, null, null, null, null, null, 1]] : []),
  ticks(60, '{HH}:{mm}', hasDate),
  ticks(1, '{HH}:{mm}:{ss}', hasDate),
  ticks(0.001, '{HH}:{mm}:{ss}.{fff}', hasDate),
];

export class Plot {
  #curves = []; // { id, path, rows, numbers }
  #bands; // { id, path, names, rows, numbers }
  #chart;

  constructor(catalogue) {
    this.catalogue = catalogue;
    byId('plotForm').addEventListener('submit', (event) => {
      event.preventDefault();
      this.#addNamed(byId('plotKeyName').value);
    });
    byId('plotOver').addEventListener('change', () => this.draw());
    byId('plotBands').addEventListener('change', () => this.#chooseBands());
    byId('plotWhole').addEventListener('click', () => this.#showWhole());
    byId('plot').addEventListener('keydown', (event) => this.#key(event));
    new ResizeObserver(() => this.#resize()).observe(byId('plot'));
    onColourChange(() => this.draw());
  }

  reset(log) {
    this.log = log;
    this.#curves = [];
    this.#bands = undefined;
    byId('plotBands').value = '';
    this.refresh();
    this.draw();
  }

  /** The keys that the kinds of the log have. */
  refresh() {
    const keys = [...this.log.kinds.keys()].flatMap((id) =>
      this.catalogue.numbers(id).map(({ path, field }) => ({ id, path, field, label: `${this.catalogue.name(id)} ${path}` })),
    );
    this.keys = keys;
    byId('plotKeys').replaceChildren(...keys.map(({ label }) => option(label, label)));
    const isState = ({ path, field }) => field.kind !== 'double' && field.kind !== 'float' && /STATUS|STATE|SEVERITY/.test(path);
    const states = keys.filter(isState);
    setOptions(byId('plotBands'), [option('', 'no bands'), ...states.map(({ label }) => option(label, label))]);
    byId('plotOver').value = this.log.isTimed ? 'time' : 'sequence';
  }

  #addNamed(label) {
    const key = this.keys.find((one) => one.label === label) ?? this.keys.find((one) => one.path === label.trim());
    if (!key) {
      byId('plotProblem').textContent = `No kind in this log has the number "${label}": choose one of the list.`;
      return;
    }
    byId('plotKeyName').value = '';
    this.add(key.id, key.path);
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
    announce(`${path}: ${counted(curve.rows.length, 'value')} drawn.`);
  }

  async #read(id, path) {
    const { log } = this;
    const rows = [];
    for (let row = 0; row < log.count; ++row) if (log.columns.id[row] === id) rows.push(row);
    try {
      const numbers = await log.series(rows, [path]);
      return { id, path, rows, numbers };
    } catch (error) {
      if (!(error instanceof Cancelled)) byId('plotProblem').textContent = error.message;
      return undefined;
    }
  }

  async #chooseBands() {
    const key = this.keys.find(({ label }) => label === byId('plotBands').value);
    this.#bands = key && (await this.#read(key.id, key.path));
    if (this.#bands) this.#bands.names = key.field.names;
    this.draw();
  }

  #x(row) {
    const { columns } = this.log;
    return byId('plotOver').value === 'time' ? columns.microseconds[row] / 1e6 : columns.sequence[row];
  }

  // A curve's points in order of their places; those without a place or a value are left out.
  #points({ rows, numbers }) {
    const points = rows
      .map((row, at) => at)
      .filter((at) => Number.isFinite(numbers[at]) && Number.isFinite(this.#x(rows[at])));
    const xs = Float64Array.from(points, (at) => this.#x(rows[at]));
    const ys = Float64Array.from(points, (at) => numbers[at]);
    if (xs.every((x, at) => at === 0 || xs[at - 1] <= x)) return { xs, ys };
    const order = Uint32Array.from(xs, (_x, at) => at).sort((left, right) => xs[left] - xs[right]);
    return { xs: xs.map((_x, at) => xs[order[at]]), ys: ys.map((_y, at) => ys[order[at]]) };
  }

  // All curves over one row of places; null where a curve has no value.
  #data() {
    const curves = this.#curves.map((curve) => this.#points(curve));
    const next = curves.map(() => 0);
    const places = [];
    const values = curves.map(() => []);
    for (;;) {
      const x = curves.reduce((least, { xs }, at) => (next[at] < xs.length ? Math.min(least, xs[next[at]]) : least), Infinity);
      if (x === Infinity) return [places, ...values];
      places.push(x);
      curves.forEach(({ xs, ys }, at) => values[at].push(xs[next[at]] === x ? ys[next[at]++] : null));
    }
  }

  draw() {
    this.#chart?.destroy();
    this.#chart = undefined;
    byId('plotHint').hidden = this.#curves.length > 0;
    byId('plotWhole').hidden = true;
    this.#listCurves();
    if (!this.log || this.#curves.length === 0 || byId('plotPanel').hidden) return;
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
      height: plotHeight,
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

  // The stretches in which a status stayed the same.
  #stretches() {
    const { rows, numbers, names } = this.#bands;
    const stretches = [];
    rows.forEach((row, at) => {
      const x = this.#x(row);
      if (!Number.isFinite(x) || !Number.isFinite(numbers[at])) return;
      const latest = stretches.at(-1);
      if (latest?.value === numbers[at]) return;
      if (latest) latest.end = x;
      stretches.push({ value: numbers[at], name: names?.[numbers[at]] ?? String(numbers[at]), start: x, end: Infinity });
    });
    return stretches;
  }

  #drawBands(plot) {
    if (!this.#bands) return;
    const { ctx: context, bbox } = plot;
    const ratio = devicePixelRatio || 1;
    const values = [...new Set(this.#bands.numbers)].sort((left, right) => left - right);
    context.save();
    context.font = `${11 * ratio}px ${getComputedStyle(document.body).fontFamily}`;
    context.textBaseline = 'top';
    for (const { value, name, start, end } of this.#stretches()) {
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
    const values = this.#curves.map(({ path }, curve) => [path, latest(plot.data[curve + 1], at)]);
    const x = plot.data[0][at];
    const when = byId('plotOver').value === 'time' ? timeInWords(x * 1e6, this.log.columns.hasDate[0] === 1) : `sequence ${number(x)}`;
    const band = this.#bands && this.#stretches().findLast(({ start }) => start <= x);
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

  #resize() {
    const width = byId('plot').clientWidth;
    if (this.#chart && width > 0 && width !== this.#chart.width) this.#chart.setSize({ width, height: plotHeight });
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

// A value stays until there is the next one.
function latest(values, at) {
  let from = at;
  while (from > 0 && values[from] === null) --from;
  return values[from];
}
