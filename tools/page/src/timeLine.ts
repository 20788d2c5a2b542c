// The time line: how many messages of each kind there are when, where numbers are missing, and what is damaged.
import type { Catalogue } from './catalogue.ts';
import type { Log } from './log.ts';
import type { Range } from './types.ts';
import { byId, inSlices, oneByOne } from './elements.ts';
import { colour, onColourChange, seriesColour } from './colours.ts';
import { counted, number, timeInWords } from './words.ts';

const mostLanes = 6;
const laneHeight = 18;
const markHeight = 14; // of a lane of marks
interface Bin {
  first: number; // row
  count: number;
  lanes: Uint32Array;
  errors: number;
  problems: number;
  damaged: number;
  missing: number;
}

interface Lanes {
  own: Map<number, number>; // ids to lanes
  count: number;
  isShared: boolean; // the last one
}

const marks = [
  { name: 'errors', colour: 'error', of: (bin: Bin) => bin.errors },
  { name: 'missing', colour: 'warning', of: (bin: Bin) => bin.missing },
];
const edge = 6; // so that bars at the end are whole

export class TimeLine {
  log?: Log;
  rows: Uint32Array = new Uint32Array();
  range?: Range;
  #shownEnds?: Range; // what is drawn
  #lanesDrawn: Lanes = { own: new Map(), count: 0, isShared: false };
  #canvas = byId('timeLine');
  #cursor = -1;
  #pointed?: number; // column under the pointer
  #left = 0; // where the names end and the lanes begin
  #dragFrom?: number;
  #bins: (Bin | undefined)[] = [];

  /** on.row(): a message was pointed out; on.range(): what is shown was changed. */
  constructor(
    private readonly catalogue: Catalogue,
    private readonly on: { row: (row: number) => void; range: (range: Range | undefined) => void },
  ) {
    new ResizeObserver(() => void this.count()).observe(byId('timeLineFrame'));
    onColourChange(() => this.#draw());
    this.#canvas.addEventListener('keydown', (event) => this.#key(event));
    this.#canvas.addEventListener('pointermove', (event) => this.#point(event));
    this.#canvas.addEventListener('pointerdown', (event) => this.#startDrag(event));
    this.#canvas.addEventListener('pointerup', (event) => this.#endDrag(event));
    this.#canvas.addEventListener('pointerleave', () => this.#read(undefined));
    byId('wholeTime').addEventListener('click', () => this.#zoom(undefined));
  }

  reset(log: Log) {
    this.log = log;
    this.range = undefined;
    this.#cursor = -1;
    this.#bins = [];
    this.rows = new Uint32Array();
    byId('wholeTime').hidden = true;
  }

  // Asks for a stretch, or for all.
  #zoom(range: Range | undefined) {
    this.on.range(range);
  }

  /** The same; others know. */
  show(range: Range | undefined) {
    this.range = range;
    this.#cursor = -1;
    byId('wholeTime').hidden = range === undefined;
    void this.count();
  }

  // The ends of what is shown.
  #ends(log: Log): Range {
    if (this.range) return this.range;
    if (!log.isTimed) return [0, Math.max(1, log.count - 1)];
    const { first, last } = log.times;
    return last > first ? [first, last] : [first, first + 1];
  }

  // The kinds that have a lane of their own, the most frequent first; the others share the last one.
  #lanes(log: Log): Lanes {
    const kinds = [...log.kinds].sort(([, left], [, right]) => right - left).map(([id]) => id);
    const isShared = kinds.length > mostLanes;
    const own = isShared ? kinds.slice(0, mostLanes - 1) : kinds;
    return { own: new Map(own.map((id, lane) => [id, lane])), count: own.length + (isShared ? 1 : 0), isShared };
  }

  /** Shows some messages alone. */
  follow(rows: Uint32Array) {
    this.rows = rows;
    return this.count();
  }

  /** Draws it of the messages that there are now. */
  count = oneByOne(async () => {
    const { log } = this;
    if (!log || log.count === 0) return;
    const lanes = this.#lanes(log);
    const ends = this.#ends(log);
    const width = byId('timeLineFrame').clientWidth;
    const left = width > 700 ? 150 : 110;
    const bins = await this.#count(log, lanes, ends, Math.max(1, width - left - edge));
    if (this.log !== log) return;
    this.#shownEnds = ends;
    this.#lanesDrawn = lanes;
    this.#left = left;
    this.#bins = bins;
    this.#draw();
  });

  #draw() {
    if (this.#bins.length === 0) return;
    const lanes = this.#lanesDrawn;
    const width = this.#left + this.#bins.length + edge;
    const height = lanes.count * laneHeight + marks.length * markHeight;
    const ratio = window.devicePixelRatio || 1;
    Object.assign(this.#canvas, { width: width * ratio, height: height * ratio });
    this.#canvas.style.height = `${height}px`;
    const context = this.#canvas.getContext('2d')!;
    context.scale(ratio, ratio);
    this.#drawNames(context, lanes);
    context.translate(this.#left, 0);
    this.#drawBins(context, lanes);
    this.#drawMarks(context, lanes);
    if (this.#cursor >= 0) {
      context.fillStyle = colour('ink');
      context.fillRect(this.#cursor, 0, 1, height);
    }
    this.#say();
  }

  // A bin for every column of pixels.
  async #count(log: Log, lanes: Lanes, [from, to]: Range, width: number) {
    const bins = Array.from({ length: width }, (): Bin | undefined => undefined);
    const scale = (width - 1) / (to - from);
    const { isTimed, columns } = log;
    const take = (row: number) => {
      const at = Math.floor(((isTimed ? columns.microseconds[row] : row) - from) * scale);
      if (!(at >= 0 && at < width)) return;
      const bin = (bins[at] ??= {
        first: row,
        count: 0,
        lanes: new Uint32Array(lanes.count),
        errors: 0,
        problems: 0,
        damaged: 0,
        missing: 0,
      });
      ++bin.count;
      ++bin.lanes[lanes.own.get(columns.id[row]) ?? lanes.count - 1];
      bin.damaged += columns.isDamaged[row];
      bin.missing += columns.missing[row];
      if (columns.severity[row] === 2) ++bin.problems;
      if (columns.severity[row] === 2 || columns.isDamaged[row]) ++bin.errors;
    };
    const { rows } = this;
    await inSlices(rows.length, (first, last) => {
      for (let at = first; at < last; ++at) take(rows[at]);
    });
    return bins;
  }

  // How many errors and missing numbers there are when: a density, on a scale of its own.
  #drawMarks(context: CanvasRenderingContext2D, lanes: Lanes) {
    for (const [at, { colour: name, of }] of marks.entries()) {
      const bottom = lanes.count * laneHeight + (at + 1) * markHeight - 1;
      const most = this.#bins.reduce((sum, bin) => Math.max(sum, bin ? of(bin) : 0), 1);
      context.fillStyle = colour(name);
      this.#bins.forEach((bin, x) => {
        if (!bin || of(bin) === 0) return;
        const tall = 3 + (Math.log1p(of(bin)) / Math.log1p(most)) * (markHeight - 5);
        context.fillRect(x, bottom - tall, 2, tall);
      });
    }
  }

  #drawBins(context: CanvasRenderingContext2D, lanes: Lanes) {
    const most = this.#bins.reduce((sum, bin) => Math.max(sum, ...(bin?.lanes ?? [])), 1);
    for (let lane = 0; lane < lanes.count; ++lane) {
      context.fillStyle = colour('track');
      context.fillRect(0, lane * laneHeight + laneHeight - 2, this.#bins.length, 1);
      context.fillStyle = lanes.isShared && lane === lanes.count - 1 ? colour('muted') : seriesColour(lane);
      this.#bins.forEach((bin, x) => {
        if (!bin || bin.lanes[lane] === 0) return;
        const share = Math.log1p(bin.lanes[lane]) / Math.log1p(most);
        const tall = 4 + share * (laneHeight - 8);
        context.fillRect(x, (lane + 1) * laneHeight - 2 - tall, 2, tall);
      });
    }
  }

  #drawNames(context: CanvasRenderingContext2D, lanes: Lanes) {
    context.font = `11px ${getComputedStyle(document.body).fontFamily}`;
    context.textBaseline = 'middle';
    const names = [...lanes.own].map(([id]) => this.catalogue.name(id));
    if (lanes.isShared) names.push('other kinds');
    names.forEach((name, lane) => {
      context.fillStyle = colour('muted');
      context.fillText(name, 0, lane * laneHeight + laneHeight / 2, this.#left - 10);
    });
    marks.forEach(({ name, colour: its }, at) => {
      context.fillStyle = colour(its);
      context.fillText(name, 0, lanes.count * laneHeight + at * markHeight + markHeight / 2 + 1);
    });
  }

  #placeOf(x: number) {
    const [from, to] = this.#shownEnds ?? [0, 1];
    return from + ((to - from) * x) / Math.max(1, this.#bins.length - 1);
  }

  #whenInWords(x: number) {
    const at = this.#placeOf(x);
    return this.log?.isTimed ? timeInWords(at, this.log.columns.hasDate[0] === 1) : `message ${number(Math.round(at) + 1)}`;
  }

  /** What the page says of the bin at a column, or of the whole. */
  #say(x = this.#pointed ?? this.#cursor) {
    let words = '';
    if (x >= 0 && x < this.#bins.length) {
      const bin = this.#bins[x];
      const facts = [counted(bin?.count ?? 0, 'message')];
      if (bin?.problems) facts.push(`${number(bin.problems)} with errors`);
      if (bin?.damaged) facts.push(`${number(bin.damaged)} damaged`);
      if (bin?.missing) facts.push(`${number(bin.missing)} missing`);
      words = `${this.#whenInWords(x)}: ${facts.join(', ')}`;
      this.#canvas.setAttribute('aria-valuenow', String(x));
      this.#canvas.setAttribute('aria-valuemax', String(this.#bins.length - 1));
      this.#canvas.setAttribute('aria-valuetext', words);
    } else if (this.#shownEnds) {
      words = `${this.#whenInWords(0)} to ${this.#whenInWords(this.#bins.length - 1)}`;
    }
    byId('timeLineWords').textContent = words;
  }

  // Reads a column off, until the pointer goes elsewhere: what is drawn anew in the meantime leaves the words to it.
  #read(x: number | undefined) {
    this.#pointed = x;
    this.#say();
  }

  #columnOf(event: PointerEvent) {
    return Math.round(event.clientX - this.#canvas.getBoundingClientRect().left - this.#left);
  }

  #point(event: PointerEvent) {
    const x = this.#columnOf(event);
    this.#read(x);
    const band = byId('timeLineBand');
    band.hidden = this.#dragFrom === undefined;
    if (this.#dragFrom === undefined) return;
    band.style.left = `${this.#left + Math.min(x, this.#dragFrom)}px`;
    band.style.width = `${Math.abs(x - this.#dragFrom)}px`;
  }

  #startDrag(event: PointerEvent) {
    this.#dragFrom = this.#columnOf(event);
    this.#canvas.setPointerCapture(event.pointerId);
  }

  #endDrag(event: PointerEvent) {
    const from = this.#dragFrom;
    const to = this.#columnOf(event);
    this.#dragFrom = undefined;
    byId('timeLineBand').hidden = true;
    if (from === undefined) return;
    if (Math.abs(to - from) > 4) this.#zoomToColumns(Math.min(from, to), Math.max(from, to));
    else this.#goTo(to);
  }

  #zoomToColumns(left: number, right: number) {
    this.#zoom([this.#placeOf(left), this.#placeOf(right)]);
  }

  // The nearest message to a column.
  #goTo(x: number) {
    for (let away = 0; away < this.#bins.length; ++away)
      for (const at of [x - away, x + away]) {
        const bin = this.#bins[at];
        if (bin) return this.on.row(bin.first);
      }
    return undefined;
  }

  #key(event: KeyboardEvent) {
    const last = this.#bins.length - 1;
    const steps: Record<string, number> = { ArrowRight: 1, ArrowLeft: -1, PageUp: 20, PageDown: -20, Home: -Infinity, End: Infinity };
    const x = Math.max(0, this.#cursor);
    this.#pointed = undefined;
    if (event.key in steps) this.#cursor = this.#nextBin(x, steps[event.key]);
    else if (event.key === 'Enter') return this.#goTo(x);
    else if (event.key === '+') return this.#zoomToColumns(Math.max(0, x - last / 8), Math.min(last, x + last / 8));
    else if (event.key === '-' || event.key === 'Escape') return this.#zoom(undefined);
    else return undefined;
    event.preventDefault();
    return this.#draw();
  }

  // With single steps, empty columns are passed over.
  #nextBin(x: number, step: number) {
    const last = this.#bins.length - 1;
    let at = Math.min(last, Math.max(0, x + step));
    if (Math.abs(step) === 1) while (!this.#bins[at] && at > 0 && at < last) at += step;
    return at;
  }
}
