// The page: one view of the drawing, its command line and panels, kept up with what the program tells.

import {Colors} from './colors.js';
import {CommandLine} from './commandline.js';
import {Overlay} from './overlay.js';
import {Panels} from './panels.js';
import {Picture} from './picture.js';
import {Pointer} from './pointer.js';
import {Scene} from './scene.js';
import {Stream} from './stream.js';

const FIT = 1.08;       // room around everything
const TELL_MS = 40;     // between views that are told
const NOTICE_MS = 6000;

const sheet = document.getElementById('sheet');
const view = {x: 0, y: 0, u: 1};
const colors = new Colors();
const scene = new Scene();
const picture = new Picture(document.getElementById('picture'), scene, view, colors);
const overlay = new Overlay(document.getElementById('overlay'), scene, view, colors);
let prompt = {mode: 'busy', text: '', keywords: '', base: null, pickbox: 3};
let extents = null, paper = null;
let wanted = null;   // a view that waits for the sheet's size
let stream = null;
let told = 0, telling = null;
let noticeTimer = null;

function send(message) { stream?.send(message); }

function setMode(mode) { document.body.dataset.mode = mode; }

function notice(text, stays = false) {
  clearTimeout(noticeTimer);
  document.getElementById('notice').textContent = text;
  if (!stays) noticeTimer = setTimeout(() => notice('', true), NOTICE_MS);
}

// ---- the view

function tellView() {
  clearTimeout(telling);
  const wait = told + TELL_MS - performance.now();
  if (wait > 0) {
    telling = setTimeout(tellView, wait);
    return;
  }
  told = performance.now();
  send({t: 'view', x: view.x, y: view.y, u: view.u, w: Math.round(picture.width), h: Math.round(picture.height)});
}

function viewChanged() {
  picture.ask();
  overlay.ask();
  tellView();
}

function moveBy(dx, dy) {
  view.x -= dx * view.u;
  view.y += dy * view.u;
  viewChanged();
}

// Keeps the place under the cursor where it is; without one, the middle.
function zoomAt(factor, x = picture.width / 2, y = picture.height / 2) {
  const u = Math.min(1e12, Math.max(1e-12, view.u / factor));
  const [sceneX, sceneY] = toScene(x, y);
  view.x = sceneX - (x - picture.width / 2) * u;
  view.y = sceneY + (y - picture.height / 2) * u;
  view.u = u;
  viewChanged();
}

function show(x, y, height) {
  Object.assign(view, {x, y, u: height / picture.height});
  viewChanged();
}

function fit() {
  const boxes = [extents, paper].filter(Boolean);
  if (boxes.length === 0) return;
  const [minX, minY] = [0, 1].map((i) => Math.min(...boxes.map((box) => box[i])));
  const [maxX, maxY] = [2, 3].map((i) => Math.max(...boxes.map((box) => box[i])));
  const width = maxX - minX || 1, height = maxY - minY || 1;
  show((minX + maxX) / 2, (minY + maxY) / 2,
       FIT * Math.max(height, width * picture.height / picture.width));
}

function toScene(x, y) {
  return [view.x + (x - picture.width / 2) * view.u, view.y - (y - picture.height / 2) * view.u];
}

// ---- what the program tells

const listeners = {
  text: ({text, skipped}) => line.add(text, skipped),
  prompt: (message) => {
    prompt = message;
    setMode(prompt.mode);
    line.ask(prompt);
    const points = prompt.mode === 'point' || prompt.mode === 'drag';
    overlay.band = prompt.mode === 'point' ? prompt.base : null;
    overlay.pickbox = points ? 0 : Math.max(2, prompt.pickbox);
    overlay.ask();
  },
  document: (message) => {
    panels.show(message);
    ({extents, paper} = message);
    picture.document = message;
    document.getElementById('empty').hidden = extents !== null || paper !== null;
    picture.change();
  },
  view: ({x, y, h}) => {
    wanted = {x, y, h};
    takeView();
  },
  selection: ({ids, properties}) => {
    overlay.selected = ids;
    overlay.selectedPath = null;
    overlay.ask();
    panels.select(properties);
  },
  lines: ({lines}) => {
    overlay.lines = lines;
    overlay.ask();
  },
  drag: ({m}) => {
    overlay.drag = m;
    overlay.ask();
  },
  dragged: () => {
    overlay.drag = overlay.dragPath = null;
    overlay.ask();
  },
  completed: (message) => line.completed(message),
  notice: ({text}) => notice(text),
};

function takeView() {
  if (!wanted || picture.height < 2) return;
  show(wanted.x, wanted.y, wanted.h);
  wanted = null;
}

function sceneRead(bytes) {
  const read = scene.read(bytes);
  if (read.dragSet || read.shapes) {
    overlay.selectedPath = null;
    overlay.sceneChanged();
  }
  if (read.shapes && !scene.coming) picture.change();
}

// ---- what the person does

const act = {
  line: (text) => send({t: 'line', text}),
  escape: () => send({t: prompt.mode === 'busy' ? 'stop' : 'esc'}),
  stop: () => send({t: 'stop'}),
  complete: (text, n) => send({t: 'complete', text, n}),
  layer: (text, n, on) => send({t: 'layer', text, n, on}),
  layout: (text) => send({t: 'layout', text}),
};
const line = new CommandLine(act);
const panels = new Panels(act, colors);
new Pointer(overlay.canvas, overlay, {
  view, moveBy, zoomAt, fit, send, toScene,
  mode: () => prompt.mode,
  type: (text) => line.focus(text),
  escape: act.escape,
  enter: () => line.enter(),
});

document.getElementById('zoom-in').addEventListener('click', () => zoomAt(1.5));
document.getElementById('zoom-out').addEventListener('click', () => zoomAt(1 / 1.5));
document.getElementById('zoom-all').addEventListener('click', fit);
document.getElementById('weights').addEventListener('click', ({target}) => {
  picture.weights = !picture.weights;
  target.setAttribute('aria-pressed', String(picture.weights));
  picture.change();
});
document.getElementById('side-toggle').addEventListener('click', ({target}) => {
  const side = document.getElementById('side');
  side.hidden = !side.hidden;
  target.setAttribute('aria-pressed', String(!side.hidden));
});
colors.onChange(() => {
  panels.repaint();
  picture.change();
  overlay.ask();
});

new ResizeObserver(() => {
  const {clientWidth: width, clientHeight: height} = sheet;
  if (width < 2 || height < 2) return;
  picture.resize(width, height, devicePixelRatio);
  overlay.resize(width, height, devicePixelRatio);
  takeView();
  viewChanged();
}).observe(sheet);

stream = new Stream({
  json: (message) => listeners[message.t]?.(message),
  bytes: sceneRead,
  state: (state) => {
    if (state === 'open') {
      line.clear();
      notice('', true);
      tellView();
    } else {
      setMode('closed');
      notice(state === 'refused' ? 'The program has ended the connection.'
                                 : 'The connection is lost. Trying again …', true);
    }
  },
});
line.focus();

// For the console and for tests.
globalThis.gcad = {
  view, scene, picture, overlay,
  toPage: (x, y) => {
    const box = overlay.canvas.getBoundingClientRect(), [left, top] = overlay.at(x, y);
    return [box.left + left, box.top + top];
  },
};
