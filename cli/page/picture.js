// The drawing itself on its canvas. A picture is drawn in slices, so that a large drawing never holds up the page; until
// the new one is whole, the old one is shown moved and scaled to the view.

import {DOT, FRAME, FILL, GRADIENT, trace} from './scene.js';

const SLICE_MS = 9;
const RUN = 3000;         // shapes of lines whose order among themselves does not matter
const STEPS = 400;        // of one path: longer ones are slow to stroke
const FINEST_DASH = 4;    // pixels of a period; finer ones are drawn solid
const PIXELS_PER_MM = 96 / 25.4;

export class Picture {
  // `view`: {x, y, u}, the centre and the units per pixel.
  constructor(canvas, scene, view, colors) {
    this.canvas = canvas;
    this.context = canvas.getContext('2d', {alpha: false});
    this.scene = scene;
    this.view = view;
    this.colors = colors;
    this.front = document.createElement('canvas');  // the last whole picture
    this.back = document.createElement('canvas');   // the one being drawn
    this.frontView = null;
    this.job = null;
    this.stale = true;
    this.weights = false;
    this.document = null;
    this.width = this.height = 1;
    this.finished = 0;  // pictures
    this.asked = false;
  }

  resize(width, height, ratio) {
    Object.assign(this, {width, height, ratio});
    this.canvas.width = this.back.width = Math.round(width * ratio);
    this.canvas.height = this.back.height = Math.round(height * ratio);
    this.change();
  }

  // Something is to be drawn anew.
  change() {
    this.stale = true;
    this.ask();
  }

  // The view has moved.
  ask() {
    if (this.asked) return;
    this.asked = true;
    requestAnimationFrame(() => {
      this.asked = false;
      this.turn();
    });
  }

  turn() {
    const seen = this.frontView;
    if (!seen || seen.x !== this.view.x || seen.y !== this.view.y || seen.u !== this.view.u) this.stale = true;
    if (!this.job && this.stale) {
      this.stale = false;
      this.jobView = {...this.view, width: this.width, height: this.height};
      this.job = this.draw(this.back, this.jobView);
    }
    const end = performance.now() + SLICE_MS;
    while (this.job && performance.now() < end) {
      if (!this.job.next().done) continue;
      this.job = null;
      [this.front, this.back] = [this.back, this.front];
      this.back.width = this.canvas.width;
      this.back.height = this.canvas.height;
      this.frontView = this.jobView;
      ++this.finished;
    }
    this.show();
    if (this.job || this.stale) this.ask();
  }

  show() {
    const {context, canvas, frontView: from, view: to, ratio} = this;
    context.setTransform(1, 0, 0, 1, 0, 0);
    context.fillStyle = this.colors.back;
    context.fillRect(0, 0, canvas.width, canvas.height);
    if (!from) return;
    const scale = from.u / to.u;
    const x = this.width / 2 + (from.x - to.x) / to.u - from.width / 2 * scale;
    const y = this.height / 2 - (from.y - to.y) / to.u - from.height / 2 * scale;
    context.imageSmoothingEnabled = scale !== 1;
    context.drawImage(this.front, x * ratio, y * ratio, this.front.width * scale, this.front.height * scale);
  }

  * draw(canvas, view) {
    const context = canvas.getContext('2d', {alpha: false});
    context.setTransform(this.ratio, 0, 0, this.ratio, 0, 0);
    context.fillStyle = this.colors.back;
    context.fillRect(0, 0, view.width, view.height);
    context.lineCap = 'round';
    context.lineJoin = 'round';
    const pen = new Pen(context, view, this.colors, this.weights);
    this.drawPaper(context, pen);
    let window = 0, seen = 0;
    for (const shape of this.scene.inOrder()) {
      if ((++seen & 1023) === 0) yield;
      if (!pen.shows(shape)) continue;
      if (shape.window !== window) {
        yield* pen.flush();
        if (window !== 0) context.restore();
        window = shape.window;
        if (window !== 0) this.clipTo(context, pen, window);
      }
      yield* pen.add(shape);
    }
    yield* pen.flush();
    if (window !== 0) context.restore();
  }

  drawPaper(context, pen) {
    const paper = this.document?.paper;
    if (!paper) return;
    const [x, y] = pen.at(paper[0], paper[3]), [x2, y2] = pen.at(paper[2], paper[1]);
    context.fillStyle = this.colors.paper;
    context.fillRect(x, y, x2 - x, y2 - y);
    context.strokeStyle = this.colors.line;
    context.lineWidth = 1;
    context.strokeRect(x, y, x2 - x, y2 - y);
  }

  clipTo(context, pen, window) {
    context.save();
    const points = this.document?.clips?.[window] ?? [];
    context.beginPath();
    for (const [x, y] of points) context.lineTo(...pen.at(x, y));
    context.closePath();
    context.clip();
  }
}

// Collects lines of the same look into few paths.
class Pen {
  constructor(context, view, colors, weights) {
    Object.assign(this, {context, view, colors, weights});
    this.scale = 1 / view.u;
    this.left = view.x - view.width / 2 * view.u;
    this.top = view.y + view.height / 2 * view.u;
    this.bottom = view.y - view.height / 2 * view.u;
    this.right = view.x + view.width / 2 * view.u;
    this.looks = new Map();
    this.count = 0;
  }

  at(x, y) { return [(x - this.left) * this.scale, (this.top - y) * this.scale]; }

  shows(shape) {
    return shape.x + shape.maxX >= this.left && shape.x + shape.minX <= this.right &&
        shape.y + shape.maxY >= this.bottom && shape.y + shape.minY <= this.top;
  }

  * add(shape) {
    const size = Math.max(shape.maxX - shape.minX, shape.maxY - shape.minY) * this.scale;
    if (shape.detail === DOT || size < 0.75) {
      const [x, y] = this.at(shape.x + shape.minX, shape.y + shape.minY);
      this.stroke(shape.rgb, 1, null).rect(Math.floor(x), Math.floor(y), 0.5, 0.5);
    } else if (shape.detail === FRAME) {
      yield* this.flush();
      const [x, y] = this.at(shape.x + shape.minX, shape.y + shape.maxY);
      this.context.globalAlpha = 0.35;
      this.context.fillStyle = this.colors.of(shape.rgb);
      this.context.fillRect(x, y, Math.max(1, (shape.maxX - shape.minX) * this.scale),
                            Math.max(1, (shape.maxY - shape.minY) * this.scale));
      this.context.globalAlpha = 1;
    } else {
      for (const part of shape.parts) yield* this.addPart(shape, part);
    }
    if (++this.count >= RUN) yield* this.flush();
  }

  * addPart(shape, part) {
    const [x, y] = this.at(shape.x, shape.y);
    if (part.kind === FILL || part.kind === GRADIENT) {
      yield* this.flush();
      this.context.beginPath();
      trace(this.context, part, this.scale, -this.scale, x, y);
      this.context.fillStyle = part.kind === FILL ? this.colors.of(part.rgb) : this.gradient(part, x, y);
      this.context.fill('evenodd');
      return;
    }
    const width = this.weights ? Math.max(1, part.width * PIXELS_PER_MM) : 1;
    trace(this.stroke(part.rgb, width, part.dashes, part.ops.length), part, this.scale, -this.scale, x, y);
  }

  gradient(part, x, y) {
    const e = part.gradient.ends, s = this.scale;
    const fill = this.context.createLinearGradient(x + e[0] * s, y - e[1] * s, x + e[2] * s, y - e[3] * s);
    const from = this.colors.of(part.rgb), to = this.colors.of(part.gradient.rgb);
    fill.addColorStop(0, from);
    fill.addColorStop(part.gradient.mirrored ? 0.5 : 1, to);
    if (part.gradient.mirrored) fill.addColorStop(1, from);
    return fill;
  }

  // The path for lines of the look.
  stroke(rgb, width, dashes, steps = 4) {
    let pattern = '';
    if (dashes) {
      const pixels = Array.from(dashes, (each) => each * this.scale);
      if (pixels.reduce((sum, each) => sum + each, 0) >= FINEST_DASH)
        pattern = pixels.map((each) => Math.max(each, 1).toFixed(2)).join();
    }
    const key = `${rgb}/${width}/${pattern}`;
    let look = this.looks.get(key);
    if (!look) this.looks.set(key, look = {rgb, width, pattern, paths: [new Path2D()], steps: 0});
    if (look.steps > STEPS) {
      look.paths.push(new Path2D());
      look.steps = 0;
    }
    look.steps += steps;
    return look.paths.at(-1);
  }

  * flush() {
    const {context} = this;
    for (const look of this.looks.values()) {
      context.strokeStyle = this.colors.of(look.rgb);
      context.lineWidth = look.width;
      context.lineCap = look.pattern ? 'butt' : 'round';
      context.setLineDash(look.pattern ? look.pattern.split(',').map(Number) : []);
      for (const path of look.paths) {
        context.stroke(path);
        yield;
      }
    }
    context.setLineDash([]);
    this.looks.clear();
    this.count = 0;
  }
}
