// The page: brings the core to life and connects the parts with the log in hand.
import { announce, byId, seldom } from './elements.js';
import { Catalogue } from './catalogue.js';
import { Core } from './core.js';
import { Detail, saveBlob } from './detail.js';
import { Differences } from './differences.js';
import { Filters } from './filters.js';
import { Log } from './log.js';
import { MessageList } from './messageList.js';
import { makeOpening } from './opening.js';
import { Plot } from './plot.js';
import { Reader } from './reader.js';
import { makeTabs } from './tabs.js';
import { TimeLine } from './timeLine.js';
import { counted, number, sizeInWords } from './words.js';

class Page {
  constructor(core, wasm) {
    this.reader = new Reader(wasm);
    const catalogue = new Catalogue(core.catalogue());
    this.list = new MessageList(catalogue, (row) => this.#showRow(row));
    this.filters = new Filters(catalogue, core.findingNames(), (rows) => this.list.setRows(rows));
    this.timeLine = new TimeLine(catalogue, {
      onRow: (row) => this.#choose(row),
      onRange: (range) => this.filters.setRange(range),
    });
    this.detail = new Detail(core, catalogue, (row, bytes) => this.#edit(row, bytes));
    this.differences = new Differences(core, catalogue);
    this.plot = new Plot(catalogue);
    this.chooseTab = makeTabs(byId('tabs'), (id) => this.#onTab(id));
    makeOpening((blob, name) => this.#open(blob, name));
    byId('cancelReading').addEventListener('click', () => this.reader.cancel());
    byId('saveLog').addEventListener('click', () => saveBlob(this.log.withEdits(), this.log.name));
    byId('plotKey').addEventListener('click', () => this.#plotActive());
    byId('backToList').addEventListener('click', () => this.#showPane('list'));
  }

  async #open(blob, name) {
    const log = new Log(name, blob, this.reader);
    this.log = log;
    this.row = undefined;
    this.#prepare(log);
    const refresh = () => this.log === log && this.#refresh();
    const seldomRefresh = seldom(refresh, 300);
    try {
      await log.read(seldomRefresh);
    } catch (error) {
      byId('readingProblem').textContent = error.message;
      announce(error.message);
    }
    if (this.log !== log) return;
    refresh();
    this.plot.reset(log);
    announce(`${log.isCancelled ? 'Stopped: ' : ''}${counted(log.count, 'message')}, ${number(log.counts.withProblems)} with problems.`);
    if (log.count > 0 && this.row === undefined) this.list.choose(0);
    if (log.count === 1) this.detail.tree.focus();
    else this.list.focus();
    if (log.count === 1) this.#showPane('detail');
  }

  #prepare(log) {
    byId('welcome').hidden = true;
    byId('work').hidden = false;
    byId('progress').hidden = false;
    byId('messagePanelBody').hidden = true;
    byId('readingProblem').textContent = '';
    byId('saveLog').hidden = true;
    byId('fileName').textContent = `${log.name}, ${sizeInWords(log.blob.size)}`;
    this.filters.reset(log);
    this.list.reset(log);
    this.timeLine.reset(log);
    this.differences.reset();
    this.plot.reset(log);
    this.chooseTab('messageTab');
    this.#showPane('list');
  }

  #refresh() {
    const { log } = this;
    byId('progress').hidden = log.isComplete;
    byId('progressBar').value = log.blob.size > 0 ? log.done / log.blob.size : 1;
    byId('progressWords').textContent = `${sizeInWords(log.done)} of ${sizeInWords(log.blob.size)}, ${counted(log.count, 'message')}`;
    this.#showSummary();
    this.filters.refresh();
    this.filters.apply();
    this.timeLine.draw();
    byId('overview').hidden = log.count < 2;
    byId('work').dataset.only = log.isComplete && log.count === 1 ? 'one' : 'many';
  }

  #showSummary() {
    const { count, counts, kinds } = this.log;
    const facts = [counted(count, 'message'), counted(kinds.size, 'kind')];
    if (counts.withErrors > 0) facts.push(`${number(counts.withErrors)} with errors`);
    if (counts.damaged > 0) facts.push(`${number(counts.damaged)} damaged`);
    if (counts.gaps > 0) facts.push(`${counted(counts.gaps, 'gap')} with ${number(counts.missing)} missing`);
    byId('summary').textContent = facts.join(' · ');
  }

  async #showRow(row) {
    const { log } = this;
    this.row = row;
    const original = await log.original(row);
    if (this.log !== log || this.row !== row) return;
    byId('messagePanelBody').hidden = false;
    this.detail.show(log, row, original);
    this.differences.show(log, row, this.detail.bytes);
  }

  #choose(row) {
    this.list.choose(row);
    this.list.focus();
  }

  #edit(row, bytes) {
    if (bytes) this.log.edits.set(row, bytes);
    else this.log.edits.delete(row);
    byId('saveLog').hidden = this.log.edits.size === 0;
    this.list.draw();
    if (bytes) this.differences.show(this.log, row, bytes);
  }

  #onTab(id) {
    if (!this.log) return;
    if (id === 'differenceTab') this.differences.draw();
    if (id === 'plotTab') this.plot.draw();
  }

  #plotActive() {
    const path = this.detail.numberPath;
    if (!path) return;
    this.chooseTab('plotTab');
    byId('plotTab').focus();
    this.plot.add(this.log.columns.id[this.row], path);
  }

  // On a narrow page one pane is shown at a time.
  #showPane(name) {
    byId('work').dataset.pane = name;
    if (name === 'list') this.list.draw();
  }

  get showPane() {
    return (name) => this.#showPane(name);
  }
}

async function start() {
  const packed = Uint8Array.from(atob(byId('core').textContent), (character) => character.charCodeAt(0));
  const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream('gzip'));
  const wasm = new Uint8Array(await new Response(stream).arrayBuffer());
  const page = new Page(await Core.load(wasm), wasm);
  byId('messages').addEventListener('click', () => page.showPane('detail'));
  byId('messages').addEventListener('keydown', ({ key }) => {
    if (key !== 'Enter') return;
    page.showPane('detail');
    page.detail.tree.focus();
  });
  document.body.classList.add('isReady');
}

start().catch((error) => {
  byId('readingProblem').textContent = `The page can't start: ${error.message}. Open it in a current browser.`;
});
