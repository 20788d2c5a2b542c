// What is being looked for in the log's messages, how far it is, and a button that ends it there: shown when it takes a
// while.
import { byId, element } from './elements.ts';
import { shown, shownWords } from './signs.ts';

const pause = 300; // milliseconds between looks

/** What goes on. */
export interface Task {
  words: string;
  share: number;
  stop: () => void;
}

export class Tasks {
  #running = new Map<Task, HTMLElement | undefined>(); // with what shows it
  #timer?: ReturnType<typeof setInterval>;

  add(task: Task) {
    this.#running.set(task, undefined);
    this.#timer ??= setInterval(() => this.#look(), pause);
  }

  delete(task: Task) {
    this.#running.get(task)?.remove();
    this.#running.delete(task);
    if (this.#running.size > 0) return;
    clearInterval(this.#timer);
    this.#timer = undefined;
  }

  // What is here still when people could begin to wonder.
  #look() {
    for (const [task, line] of this.#running) {
      const shownAs = line ?? this.#line(task);
      shownAs.querySelector('.share')!.textContent = `${Math.floor(100 * task.share)} %`;
      this.#running.set(task, shownAs);
    }
  }

  #line(task: Task) {
    const stop = { type: 'button', class: 'remove', 'aria-label': `Stop: ${shownWords(task.words)}`, onclick: () => task.stop() };
    const line = element('li', {}, ...shown(task.words), ' ', element('span', { class: 'share' }), element('button', stop, '×'));
    byId('tasks').append(line);
    return line;
  }
}
