// The command line: what it showed, what is typed, its history and completions.

const MOST_LINES = 3000;
const MOST_HISTORY = 500;
const HISTORY = 'gcad-history';

export class CommandLine {
  // `act`: {line(text), escape(), stop(), complete(text, number)}
  constructor(act) {
    this.act = act;
    this.log = document.getElementById('log');
    this.form = document.getElementById('line');
    this.entry = document.getElementById('entry');
    this.prompt = document.getElementById('prompt');
    this.keywords = document.getElementById('keywords');
    this.list = document.getElementById('completions');
    this.history = JSON.parse(sessionStorage.getItem(HISTORY) ?? '[]');
    this.at = this.history.length;
    this.asked = 0;
    this.chosen = -1;
    this.form.addEventListener('submit', (event) => {
      event.preventDefault();
      this.enter();
    });
    this.entry.addEventListener('keydown', (event) => this.key(event));
    this.entry.addEventListener('input', () => this.hideCompletions());
    this.entry.addEventListener('blur', () => this.hideCompletions());
    this.list.addEventListener('mousedown', (event) => {
      event.preventDefault();
      const item = event.target.closest('li');
      if (item) this.take(item.dataset.name);
    });
    document.getElementById('stop').addEventListener('click', () => act.stop());
  }

  // ---- what it shows

  clear() { this.log.replaceChildren(); }

  add(text, skipped) {
    const atEnd = this.log.scrollTop + this.log.clientHeight >= this.log.scrollHeight - 8;
    const lines = text.split('\n');
    if (skipped) this.log.append(Object.assign(document.createElement('div'), {textContent: '…'}));
    let last = this.log.lastElementChild;
    if (!last) this.log.append(last = document.createElement('div'));
    last.append(lines[0]);
    const more = document.createDocumentFragment();
    for (const line of lines.slice(1).slice(-MOST_LINES))
      more.append(Object.assign(document.createElement('div'), {textContent: line}));
    this.log.append(more);
    while (this.log.childElementCount > MOST_LINES) this.log.firstElementChild.remove();
    if (atEnd) this.log.scrollTop = this.log.scrollHeight;
  }

  ask(prompt) {
    const busy = prompt.mode === 'busy';
    this.prompt.textContent = busy ? 'Running …' : prompt.text || 'Input:';
    document.getElementById('stop').hidden = !busy;
    const words = prompt.keywords.split(/[\s,]+/).filter((word) => word && !word.startsWith('_'));
    if (this.shownWords === words.join()) return;
    this.shownWords = words.join();
    this.keywords.replaceChildren(...words.map((word) => {
      const button = Object.assign(document.createElement('button'), {type: 'button', textContent: word});
      button.addEventListener('click', () => this.act.line(word));
      return button;
    }));
  }

  focus(text = '') {
    this.entry.focus();
    this.entry.value += text;
  }

  // ---- what is typed

  enter() {
    const text = this.entry.value;
    this.entry.value = '';
    this.hideCompletions();
    if (text.trim() !== '' && this.history.at(-1) !== text) this.history.push(text);
    this.history.splice(0, this.history.length - MOST_HISTORY);
    sessionStorage.setItem(HISTORY, JSON.stringify(this.history));
    this.at = this.history.length;
    this.log.scrollTop = this.log.scrollHeight;
    this.act.line(text);
  }

  key(event) {
    const listed = !this.list.hidden;
    if (event.key === 'Tab' && !event.ctrlKey && (listed || this.word() !== '')) {
      event.preventDefault();
      if (listed) this.choose(this.chosen + (event.shiftKey ? -1 : 1));
      else this.act.complete(this.word(), ++this.asked);
    } else if (event.key === 'ArrowUp' || event.key === 'ArrowDown') {
      event.preventDefault();
      const way = event.key === 'ArrowUp' ? -1 : 1;
      if (listed) this.choose(this.chosen + way);
      else this.recall(way);
    } else if (event.key === 'Enter' && listed && this.chosen >= 0) {
      event.preventDefault();
      this.take(this.list.children[this.chosen].dataset.name);
    } else if (event.key === 'Escape') {
      event.preventDefault();
      event.stopPropagation();
      if (listed) {
        this.hideCompletions();
      } else {
        this.entry.value = '';
        this.act.escape();
      }
    }
  }

  recall(way) {
    if (this.at === this.history.length) this.draft = this.entry.value;
    this.at = Math.min(Math.max(this.at + way, 0), this.history.length);
    this.entry.value = this.at === this.history.length ? this.draft ?? '' : this.history[this.at];
  }

  // ---- completion

  word() { return /[^\s()'"]*$/.exec(this.entry.value.slice(0, this.entry.selectionStart))[0]; }

  completed({n, names, commands}) {
    if (n !== this.asked) return;
    const before = this.entry.value.slice(0, this.entry.selectionStart - this.word().length);
    const found = before.trim() === '' ? [...commands, ...names.filter((name) => !commands.includes(name.toUpperCase()))] : names;
    if (found.length === 0) return;
    if (found.length === 1) return this.take(found[0]);
    let common = found[0].length;
    for (const name of found) {
      let same = 0;
      while (same < common && name[same].toLowerCase() === found[0][same].toLowerCase()) ++same;
      common = same;
    }
    if (common > this.word().length) this.take(found[0].slice(0, common));
    this.list.replaceChildren(...found.map((name, i) => {
      const item = Object.assign(document.createElement('li'), {textContent: name, role: 'option', id: `completion-${i}`});
      item.dataset.name = name;
      item.setAttribute('aria-selected', 'false');
      return item;
    }));
    this.list.hidden = false;
    this.entry.setAttribute('aria-expanded', 'true');
    this.chosen = -1;
  }

  choose(index) {
    const items = this.list.children;
    items[this.chosen]?.setAttribute('aria-selected', 'false');
    this.chosen = (index + items.length) % items.length;
    items[this.chosen].setAttribute('aria-selected', 'true');
    items[this.chosen].scrollIntoView({block: 'nearest'});
    this.entry.setAttribute('aria-activedescendant', items[this.chosen].id);
  }

  take(name) {
    const end = this.entry.selectionStart, begin = end - this.word().length;
    this.entry.setRangeText(name, begin, end, 'end');
    this.hideCompletions();
  }

  hideCompletions() {
    this.list.hidden = true;
    this.chosen = -1;
    this.entry.setAttribute('aria-expanded', 'false');
    this.entry.removeAttribute('aria-activedescendant');
  }
}
