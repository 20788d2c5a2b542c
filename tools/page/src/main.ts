// The page: brings the core to life and connects the parts with the log in hand.
import { announce, busy, byId, seldom } from './elements.ts';
import { Catalogue } from './catalogue.ts';
import { Detail } from './detail.ts';
import { Filters } from './filters.ts';
import { History } from './history.ts';
import { makeLeaving } from './leaving.ts';
import { makeInstallable } from './installing.ts';
import { Live } from './live.ts';
import { Log, type Snapshot } from './log.ts';
import { MessageList } from './messageList.ts';
import { makeOpening } from './opening.ts';
import { OtherLog } from './otherLog.ts';
import { noteFailedStart, packedIn } from './packed.ts';
import type { Panel } from './panel.ts';
import { idOf, makePanels } from './panels.ts';
import { Plot } from './plot.ts';
import { makePrinting } from './printing.ts';
import { Queue } from './queue.ts';
import { saveBlob } from './saving.ts';
import { setUnprintable, shownWords } from './signs.ts';
import { dropStrayClicks } from './strayClicks.ts';
import { makeTabs } from './tabs.ts';
import { TimeLine } from './timeLine.ts';
import type { Bytes, NamedBlob, Range } from './types.ts';
import { counted, number, sizeInWords } from './words.ts';

class Page {
  history = new History();
  log?: Log;
  row?: number; // whose message is shown
  #changing: Promise<void> = Promise.resolve();
  readonly list: MessageList;
  readonly filters: Filters;
  readonly timeLine: TimeLine;
  readonly detail: Detail;
  readonly panels: Panel[];
  readonly plot: Plot;
  readonly live: Live;
  #plotOn = seldom(() => this.log?.isLive && busy(Promise.all(this.panels.map((panel) => panel.complete()))), 500);
  readonly chooseTab: (tab: string) => void;

  static async start(wasm: Bytes) {
    const queue = new Queue(wasm);
    const { core } = queue;
    const [kinds, findingNames, unprintable] = await Promise.all([core.kinds(), core.findingNames(), core.unprintable()]);
    setUnprintable(unprintable);
    return new Page(queue, new Catalogue(kinds), findingNames);
  }

  constructor(
    private readonly queue: Queue,
    catalogue: Catalogue,
    findingNames: string[],
  ) {
    this.list = new MessageList(catalogue, (row) => busy(this.#showRow(row)));
    const { core } = queue;
    const rows = (passing: Uint32Array, known: number, isStopped: boolean) => {
      this.list.setRows(passing, known, isStopped);
      void this.timeLine.follow(passing);
      if (this.log?.isComplete && this.row === undefined && passing.length > 0) this.list.choose(passing[0]);
    };
    const others = (passes?: (row: number) => boolean) => {
      for (const panel of this.panels) panel.follow(passes);
    };
    const stretch = (range: Range | undefined) => this.#lookAt(range);
    this.filters = new Filters(core, catalogue, findingNames, { rows, others, stretch });
    this.timeLine = new TimeLine(catalogue, {
      row: (row) => this.#choose(row),
      range: stretch,
    });
    this.detail = new Detail(core, catalogue, findingNames, {
      edit: (row, bytes) => this.#inTurn(() => this.#edit(row, bytes)),
      mendKind: (finding) => this.#inTurn(() => this.#mendKind(finding)),
      editing: () => this.live.hold(),
    });
    this.panels = makePanels({
      core,
      catalogue,
      other: new OtherLog(queue),
      onRow: (row, tab = 'messageTab') => {
        this.#choose(row);
        this.chooseTab(tab);
      },
      onStretch: stretch,
    });
    this.plot = this.panels.find((panel) => panel instanceof Plot)!;
    this.chooseTab = makeTabs(byId('tabs'), (tab) => {
      if (this.log) this.panels.find((panel) => tab === `${idOf(panel)}Tab`)?.open();
    });
    const mayLeave = makeLeaving({ isSaved: () => this.history.isSaved && this.#isKept, save: () => this.#saveLog() });
    makeOpening(async (files) => (await mayLeave()) && busy(this.#open(files)));
    this.live = new Live(core, {
      mayBegin: mayLeave,
      begin: (name, isFile) => this.#openLive(name, isFile),
      bytes: (bytes) => void this.#grow(bytes),
      end: () => busy(this.#endLive()),
      follow: () => this.#chooseNewest(),
      message: () => (this.row === undefined ? undefined : this.detail.bytes),
    });
    byId('cancelReading').addEventListener('click', () => this.log?.cancel());
    byId('saveLog').addEventListener('click', () => this.#saveLog());
    byId('undoEdit').addEventListener('click', () => busy(this.#inTurn(() => this.#undo())));
    byId('redoEdit').addEventListener('click', () => busy(this.#inTurn(() => this.#redo())));
    document.addEventListener('keydown', (event) => this.#key(event));
    byId('plotKey').addEventListener('click', () => this.#plotActive());
    makePrinting(() => ({ log: this.log, model: byId('messagePanelBody').hidden ? undefined : this.detail.model }));
    byId('backToList').addEventListener('click', () => this.#showPane('list'));
    dropStrayClicks([byId('listPane'), byId('detailPane')]);
  }

  async #open(files: NamedBlob[]) {
    this.live.stop();
    this.log?.cancel();
    const name = files.length === 1 ? files[0].name : `${counted(files.length, 'file')}`;
    const log = new Log(name, files, this.queue, 'log');
    this.log = log;
    this.row = undefined;
    this.history = new History();
    this.#prepare(log);
    const refresh = async () => {
      if (this.log === log) await this.#refresh(log);
    };
    const seldomRefresh = seldom(refresh, 300);
    let refusal: string | undefined;
    try {
      await log.read(seldomRefresh);
    } catch (error) {
      refusal = shownWords((error as Error).message);
      byId('readingProblem').textContent = refusal;
    }
    if (this.log !== log) return;
    await this.#order(log);
    await refresh();
    if (this.log !== log) return;
    busy(Promise.all(this.panels.map((panel) => panel.complete())));
    const { withProblems } = log.counts;
    const found =
      log.count > 0
        ? `${counted(log.count, 'message')}, ${withProblems > 0 ? number(withProblems) : 'none'} with problems.`
        : 'No message.';
    announce(refusal ?? `${log.isCut ? 'Stopped: ' : ''}${found}`, refusal !== undefined);
    if (log.count > 0 && this.row === undefined) this.list.choose(0);
    if (log.count === 1) this.detail.tree.focus();
    else if (document.activeElement === document.body || byId('pasteDialog').contains(document.activeElement)) this.list.focus();
    if (log.count === 1) this.#showPane('detail');
  }

  #openLive(name: string, isFile: boolean) {
    this.log?.cancel();
    const log = new Log(name, [{ name, blob: new Blob() }], this.queue, 'live');
    if (!isFile) log.keptSize = 0;
    this.log = log;
    this.row = undefined;
    this.history = new History();
    this.#prepare(log);
    busy(log.follow('begin'));
    void this.#refresh(log);
  }

  async #grow(bytes: Bytes) {
    const { log } = this;
    if (!log?.isLive) return;
    const isMore = await log.follow('more', bytes);
    if (this.log !== log) return;
    await this.#refresh(log);
    if (!isMore) return;
    if (this.live.isFollowing) this.#chooseNewest();
    this.#plotOn();
  }

  async #endLive() {
    const { log } = this;
    if (!log?.isLive) return;
    await log.follow('end');
    if (this.log !== log) return;
    await this.#refresh(log);
    await Promise.all(this.panels.map((panel) => panel.complete()));
  }

  #chooseNewest() {
    const row = this.list.rows.at(-1);
    if (row !== undefined) this.list.choose(row);
  }

  // Several files become one log; the message in sight stays.
  async #order(log: Log) {
    const places = await log.orderByTime();
    if (!places || this.log !== log) return;
    this.filters.forget();
    this.list.reset(log);
    const { row } = this;
    this.row = undefined;
    await this.filters.apply();
    if (row !== undefined) this.list.choose(places[row]);
  }

  #prepare(log: Log) {
    byId('welcome').hidden = true;
    byId('work').hidden = false;
    byId('progress').hidden = false;
    byId('messagePanelBody').hidden = true;
    byId('readingProblem').textContent = '';
    this.#showHistory();
    this.list.reset(log);
    this.timeLine.reset(log);
    for (const panel of this.panels) panel.reset(log);
    this.filters.reset(log);
    this.chooseTab('messageTab');
    this.#showPane('list');
    this.#showName(log);
    this.list.focus();
  }

  #showName(log: Log) {
    byId('fileName').textContent = shownWords([`${log.name}, ${sizeInWords(log.size)}`, ...log.notes].join(' · '));
  }

  #refresh(log: Log) {
    byId('progress').hidden = log.isComplete || log.isLive;
    byId('progressBar').value = log.size > 0 ? Math.min(1, log.done / log.size) : 1;
    byId('progressWords').textContent =
      log.source.read.size > 0
        ? `${sizeInWords(log.done)} of ${sizeInWords(log.size)}, ${counted(log.count, 'message')}`
        : `${sizeInWords(log.done)} unpacked`;
    this.#showName(log);
    this.#showSummary(log);
    this.#showHistory();
    this.filters.refresh();
    for (const panel of this.panels) panel.refresh();
    byId('overview').hidden = log.count < 2;
    byId('work').dataset.only = log.isComplete && log.count < 2 ? (log.count === 1 ? 'one' : 'none') : 'many';
    return this.filters.apply();
  }

  #showSummary(log: Log) {
    const { count, counts, kinds } = log;
    const facts = [counted(count, 'message'), counted(kinds.size, 'kind')];
    if (counts.withErrors > 0) facts.push(`${number(counts.withErrors)} with errors`);
    if (counts.damaged > 0) facts.push(`${number(counts.damaged)} damaged`);
    if (counts.gaps > 0) facts.push(`${counted(counts.gaps, 'gap')} with ${number(counts.missing)} missing`);
    if (log.isLive) facts.push('live');
    else if (!log.isComplete) facts.push('still reading');
    else if (log.isCut) facts.push(`only the first ${sizeInWords(log.done)} of ${sizeInWords(log.size)} were read`);
    byId('summary').textContent = facts.join(' · ');
  }

  async #showRow(row: number) {
    const { log } = this;
    if (!log) return;
    this.row = row;
    const bytes = await log.message(row);
    if (this.log !== log || this.row !== row) return;
    await this.detail.show(log, row, bytes);
    if (this.log === log && this.row === row) for (const panel of this.panels) panel.show(log, row, bytes);
  }

  // List, time line and panels look at one stretch.
  #lookAt(range: Range | undefined) {
    this.timeLine.show(range);
    this.filters.setRange(range);
    for (const panel of this.panels) panel.stretch(range);
  }

  #choose(row: number) {
    this.list.choose(row);
    this.list.focus();
  }

  // Changes are made one after the other, in the order in which people ask for them.
  #inTurn(change: () => Promise<void>) {
    const done = this.#changing.then(change);
    this.#changing = done.catch(() => {});
    return done;
  }

  async #edit(row: number, bytes: Bytes) {
    if (!this.log) return;
    const described = await this.queue.core.row(bytes);
    await this.#change(Uint32Array.of(row), new Blob([bytes]), Uint32Array.of(bytes.length), described);
  }

  // Messages of some rows become others, which can be taken back.
  async #change(rows: Uint32Array, messages: Blob, sizes: Uint32Array, described: Bytes) {
    const { log } = this;
    if (!log) return;
    const before = log.snapshot(rows);
    const after = await log.take(rows, messages, sizes, described);
    this.history.add({ rows, before, after });
    await this.#put(rows, after);
  }

  async #mendKind(finding: number) {
    const { log } = this;
    if (!log) return;
    const { rows, messages, sizes, described } = await log.mended(finding);
    if (this.log !== log) return;
    if (rows.length > 0) await this.#change(rows, messages, sizes, described);
    announce(`${counted(rows.length, 'message')} mended.`);
  }

  // Messages become others, everywhere.
  async #put(rows: Uint32Array, messages: Snapshot) {
    const { log } = this;
    if (!log) return;
    this.live.hold(); // what was changed stays in sight
    await log.put(rows, messages);
    this.#showHistory();
    await this.filters.update(rows);
    this.list.draw();
    this.#showSummary(log);
    const panels = this.panels.map((panel) => panel.update(rows));
    const shown = this.row !== undefined && rows.includes(this.row) ? this.#showRow(this.row) : undefined;
    if (!shown) this.#choose(rows[0]);
    await Promise.all([...panels, shown]);
  }

  // Whether what was read is there elsewhere too.
  get #isKept() {
    return !this.log || this.log.size <= this.log.keptSize;
  }

  #showHistory() {
    const { canUndo, canRedo, isSaved } = this.history;
    byId('undoEdit').hidden = byId('redoEdit').hidden = !canUndo && !canRedo;
    byId('undoEdit').disabled = !canUndo;
    byId('redoEdit').disabled = !canRedo;
    byId('saveLog').hidden = isSaved && !canUndo && this.#isKept;
  }

  async #undo() {
    if (!this.history.canUndo) return;
    const { rows, before } = this.history.undo();
    await this.#put(rows, before);
    announce('Taken back.');
  }

  async #redo() {
    if (!this.history.canRedo) return;
    const { rows, after } = this.history.redo();
    await this.#put(rows, after);
    announce('Done again.');
  }

  #key(event: KeyboardEvent) {
    if (!(event.ctrlKey || event.metaKey) || event.altKey || (event.target as Element).closest('input, textarea, select, dialog')) return;
    const key = event.key.toLowerCase();
    const isRedo = key === 'y' || (key === 'z' && event.shiftKey);
    if (!isRedo && key !== 'z') return;
    event.preventDefault();
    busy(this.#inTurn(() => (isRedo ? this.#redo() : this.#undo())));
  }

  #saveLog() {
    const { log } = this;
    if (!log) return;
    saveBlob(log.whole(), log.files.length === 1 ? log.name.replaceAll(/[\\/:*?"<>|]+/g, '-') : 'log.txt');
    this.history.noteSaved();
    if (!this.#isKept) log.keptSize = log.size;
    this.#showHistory();
  }

  #plotActive() {
    const path = this.detail.numberPath;
    if (path === undefined || !this.log || this.row === undefined) return;
    this.chooseTab('plotTab');
    byId('plotTab').focus();
    busy(this.plot.add(this.log.columns.id[this.row], path));
  }

  // On a narrow page one pane is shown at a time.
  #showPane(name: 'list' | 'detail') {
    byId('work').dataset.pane = name;
    if (name === 'list') this.list.draw();
  }

  get showPane() {
    return (name: 'list' | 'detail') => this.#showPane(name);
  }
}

async function start() {
  const page = await Page.start(new Uint8Array(await packedIn('core').arrayBuffer()));
  byId('messages').addEventListener('click', () => page.showPane('detail'));
  byId('messages').addEventListener('keydown', ({ key }) => {
    if (key !== 'Enter') return;
    page.showPane('detail');
    page.detail.tree.focus();
  });
  makeInstallable();
  document.body.classList.add('isReady');
}

start().catch(noteFailedStart);
