// Drives a headless Chromium through its DevTools protocol, over a pipe: no port, no packages.
import {spawn} from 'node:child_process';
import {mkdtempSync, rmSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';

const PATIENCE_MS = 20000;

export const sleep = (ms) => new Promise((resolve) => setTimeout(resolve, ms));

// The browser's helper processes may write for a moment after it has ended; a folder that cannot be removed then is left
// to the system's cleaning of temporary files.
async function removeFolder(folder) {
  for (let tries = 0; tries < 50; ++tries) {
    try {
      rmSync(folder, {recursive: true, force: true});
      return;
    } catch {
      await sleep(100);
    }
  }
}

// Asks until the answer is truthy; fails with what it waited for.
export async function until(what, ask, patience = PATIENCE_MS) {
  const end = Date.now() + patience;
  for (;;) {
    const answer = await ask();
    if (answer) return answer;
    if (Date.now() > end) throw new Error(`waited in vain for ${what}`);
    await sleep(25);
  }
}

export class Browser {
  static async start(path) {
    const browser = new Browser();
    browser.profile = mkdtempSync(join(tmpdir(), 'gcad-page-'));
    browser.process = spawn(path, ['--headless=new', '--no-sandbox', '--disable-gpu', '--disable-dev-shm-usage', '--no-first-run',
      '--mute-audio', '--hide-scrollbars', '--disable-extensions', '--disable-background-networking',
      '--force-device-scale-factor=1', '--remote-debugging-pipe', `--user-data-dir=${browser.profile}`],
      {stdio: ['ignore', 'ignore', 'ignore', 'pipe', 'pipe']});
    browser.waiting = new Map();
    browser.listeners = new Map();
    browser.number = 0;
    browser.process.on('exit', () => {
      for (const {reject} of browser.waiting.values()) reject(new Error('the browser has ended'));
      browser.waiting.clear();
    });
    let text = '';
    browser.process.stdio[4].setEncoding('utf8');
    browser.process.stdio[4].on('data', (data) => {
      const messages = (text + data).split('\0');
      text = messages.pop();
      for (const message of messages) browser.take(JSON.parse(message));
    });
    browser.process.stdio[3].on('error', () => {});
    await browser.call('Browser.getVersion');
    return browser;
  }

  take(message) {
    if (message.id === undefined) {
      this.listeners.get(message.sessionId)?.(message.method, message.params);
      return;
    }
    const {resolve, reject} = this.waiting.get(message.id) ?? {};
    this.waiting.delete(message.id);
    if (message.error) reject?.(new Error(message.error.message));
    else resolve?.(message.result);
  }

  call(method, params = {}, sessionId = undefined) {
    const id = ++this.number;
    const answer = new Promise((resolve, reject) => this.waiting.set(id, {resolve, reject}));
    this.process.stdio[3].write(JSON.stringify({id, method, params, sessionId}) + '\0');
    return answer;
  }

  async open(address, {light = false, width = 1200, height = 800} = {}) {
    const {targetId} = await this.call('Target.createTarget', {url: 'about:blank'});
    const {sessionId} = await this.call('Target.attachToTarget', {targetId, flatten: true});
    const tab = new Tab(this, targetId, sessionId);
    this.listeners.set(sessionId, (method, params) => tab.told(method, params));
    await tab.call('Runtime.enable');
    await tab.call('Page.enable');
    await tab.call('Emulation.setDeviceMetricsOverride', {width, height, deviceScaleFactor: 1, mobile: false});
    await tab.call('Emulation.setEmulatedMedia',
                   {features: [{name: 'prefers-color-scheme', value: light ? 'light' : 'dark'}]});
    await tab.call('Page.navigate', {url: address});
    return tab;
  }

  // As if the process were killed.
  kill() { this.process.kill('SIGKILL'); }

  async end() {
    if (this.process.exitCode === null && this.process.signalCode === null) {
      const gone = new Promise((resolve) => this.process.on('exit', resolve));
      this.process.kill('SIGKILL');
      await gone;
    }
    await removeFolder(this.profile);
  }
}

// One tab with the page in it.
export class Tab {
  constructor(browser, targetId, sessionId) {
    Object.assign(this, {browser, targetId, sessionId});
    this.errors = [];  // of the page's scripts
  }

  told(method, params) {
    if (method === 'Runtime.exceptionThrown') this.errors.push(params.exceptionDetails.exception?.description ?? params.exceptionDetails.text);
    if (method === 'Runtime.consoleAPICalled' && params.type === 'error') this.errors.push(JSON.stringify(params.args));
  }

  call(method, params) { return this.browser.call(method, params, this.sessionId); }

  async ask(expression) {
    const {result, exceptionDetails} = await this.call('Runtime.evaluate', {expression, returnByValue: true, awaitPromise: true});
    if (exceptionDetails) throw new Error(exceptionDetails.exception?.description ?? exceptionDetails.text);
    return result.value;
  }

  until(what, expression, patience) {
    // A page that is being loaded has no answer yet.
    return until(`${what}: ${expression}`, () => this.ask(expression).catch(() => false), patience);
  }

  mode(mode) { return this.until(`the mode ${mode}`, `document.body.dataset.mode === '${mode}'`); }

  // The place of scene coordinates on the page.
  place(x, y) { return this.ask(`gcad.toPage(${x}, ${y})`); }

  async mouse(type, x, y, {button = 'none', modifiers = 0} = {}) {
    const [left, top] = await this.place(x, y);
    await this.call('Input.dispatchMouseEvent', {type, x: left, y: top, button, buttons: button === 'left' ? 1 : 0,
                                                 clickCount: type === 'mouseMoved' ? 0 : 1, modifiers});
  }

  moveTo(x, y) { return this.mouse('mouseMoved', x, y); }

  async click(x, y, options = {}) {
    await this.mouse('mouseMoved', x, y);
    await this.mouse('mousePressed', x, y, {button: 'left', ...options});
    await this.mouse('mouseReleased', x, y, {button: 'left', ...options});
  }

  // Presses, moves and lets go.
  async dragBox(x, y, x2, y2) {
    await this.mouse('mouseMoved', x, y);
    await this.mouse('mousePressed', x, y, {button: 'left'});
    await this.mouse('mouseMoved', (x + x2) / 2, (y + y2) / 2, {button: 'left'});
    await this.mouse('mouseMoved', x2, y2, {button: 'left'});
    await this.mouse('mouseReleased', x2, y2, {button: 'left'});
  }

  async key(key, code = key) {
    const codes = {Enter: 13, Escape: 27, Tab: 9, ArrowUp: 38, ArrowDown: 40, ArrowLeft: 37, ArrowRight: 39, Home: 36};
    const text = key === 'Enter' ? '\r' : key.length === 1 ? key : undefined;
    const event = {key, code, windowsVirtualKeyCode: codes[key] ?? 0, text};
    await this.call('Input.dispatchKeyEvent', {type: text ? 'keyDown' : 'rawKeyDown', ...event});
    await this.call('Input.dispatchKeyEvent', {type: 'keyUp', ...event});
  }

  // Types a line at the command line, as a person does.
  async type(text) {
    await this.ask(`document.getElementById('entry').focus()`);
    await this.call('Input.insertText', {text});
    await this.key('Enter');
  }

  log() { return this.ask(`document.getElementById('log').innerText`); }

  // Lets the command line show the text after what it shows now.
  shown(text, patience) {
    return this.until(`"${text}"`, `document.getElementById('log').textContent.includes(${JSON.stringify(text)})`, patience);
  }

  // Until what is to be drawn is drawn.
  drawn() {
    return this.until('the picture', `(gcad.picture.frontView && !gcad.picture.job && !gcad.picture.stale &&
        !gcad.picture.asked && !gcad.overlay.asked)`);
  }

  // Whether the canvas ("picture", "overlay") shows something within `reach` pixels of the scene's point.
  inkAt(canvas, x, y, reach = 2) {
    return this.ask(`(() => {
      const [x, y] = gcad.overlay.at(${x}, ${y}).map(Math.round), size = ${2 * reach + 1};
      const c = gcad.${canvas}.canvas.getContext('2d').getImageData(x - ${reach}, y - ${reach}, size, size).data;
      const back = gcad.picture.canvas.getContext('2d').getImageData(1, 1, 1, 1).data;
      for (let i = 0; i < c.length; i += 4)
        if ('${canvas}' === 'overlay' ? c[i + 3] > 60 : Math.abs(c[i] - back[0]) + Math.abs(c[i + 1] - back[1]) + Math.abs(c[i + 2] - back[2]) > 90)
          return true;
      return false;
    })()`);
  }

  reload() { return this.call('Page.reload'); }
  close() { return this.browser.call('Target.closeTarget', {targetId: this.targetId}); }

  async picture(path) {
    const {data} = await this.call('Page.captureScreenshot', {format: 'png'});
    const {writeFileSync} = await import('node:fs');
    writeFileSync(path, Buffer.from(data, 'base64'));
  }
}
