// What lies over the drawing: the selection, temporary lines of programs, drags, the cursor's box and windows.

import {FULL, trace} from './scene.js';

const MOST_STEPS = 400000;  // of a path that follows the cursor

export class Overlay {
  constructor(canvas, scene, view, colors) {
    this.canvas = canvas;
    this.context = canvas.getContext('2d');
    Object.assign(this, {scene, view, colors});
    this.width = this.height = 1;
    this.selected = [];
    this.lines = [];
    this.drag = null;      // the matrix (a b c d e f), while there is one
    this.dragPath = null;  // what is dragged, relative to `dragAt`
    this.band = null;      // where a line to the cursor begins, scene coordinates
    this.box = null;       // a window being dragged open, pixels
    this.cursor = null;    // pixels
    this.pickbox = 0;
    this.asked = false;
  }

  resize(width, height, ratio) {
    Object.assign(this, {width, height, ratio});
    this.canvas.width = Math.round(width * ratio);
    this.canvas.height = Math.round(height * ratio);
    this.ask();
  }

  ask() {
    if (this.asked) return;
    this.asked = true;
    requestAnimationFrame(() => {
      this.asked = false;
      this.draw();
    });
  }

  at(x, y) {
    return [this.width / 2 + (x - this.view.x) / this.view.u, this.height / 2 - (y - this.view.y) / this.view.u];
  }

  // Shapes have come or gone.
  sceneChanged() {
    this.dragPath = null;
    this.ask();
  }

  // One path of several shapes, relative to the first one's place.
  pathOf(ids) {
    const path = new Path2D();
    let anchor = null, steps = 0;
    for (const id of ids) {
      const shape = this.scene.shapes.get(id);
      if (!shape || steps > MOST_STEPS) continue;
      anchor ??= {x: shape.x, y: shape.y};
      const x = shape.x - anchor.x, y = shape.y - anchor.y;
      if (shape.detail !== FULL) path.rect(x + shape.minX, y + shape.minY, shape.maxX - shape.minX, shape.maxY - shape.minY);
      for (const part of shape.parts) {
        trace(path, part, 1, 1, x, y);
        steps += part.ops.length;
      }
    }
    return anchor && {path, anchor};
  }

  // The path where the scene's transformation by `m` puts it, in pixels.
  placed({path, anchor}, m) {
    const s = 1 / this.view.u;
    const [x, y] = this.at(m[0] * anchor.x + m[2] * anchor.y + m[4], m[1] * anchor.x + m[3] * anchor.y + m[5]);
    const placed = new Path2D();
    placed.addPath(path, new DOMMatrix([s * m[0], -s * m[1], s * m[2], -s * m[3], x, y]));
    return placed;
  }

  draw() {
    const {context, colors} = this;
    context.setTransform(1, 0, 0, 1, 0, 0);
    context.clearRect(0, 0, this.canvas.width, this.canvas.height);
    context.setTransform(this.ratio, 0, 0, this.ratio, 0, 0);
    if (this.selected.length > 0) {
      this.selectedPath ??= this.pathOf(this.selected);
      if (this.selectedPath) {
        const path = this.placed(this.selectedPath, [1, 0, 0, 1, 0, 0]);
        context.globalAlpha = 0.3;
        this.stroke(path, colors.selected, 5);
        context.globalAlpha = 1;
        this.stroke(path, colors.selected, 1.5);
      }
    }
    if (this.drag) {
      this.dragPath ??= this.pathOf(this.scene.dragged);
      if (this.dragPath) this.stroke(this.placed(this.dragPath, this.drag), colors.preview, 1.5);
    }
    this.drawLines();
    this.drawCursor();
  }

  stroke(path, style, width, dash = []) {
    this.context.strokeStyle = style;
    this.context.lineWidth = width;
    this.context.setLineDash(dash);
    this.context.stroke(path);
  }

  drawLines() {
    for (const [x, y, x2, y2, rgb, highlight] of this.lines) {
      const path = new Path2D();
      path.moveTo(...this.at(x, y));
      path.lineTo(...this.at(x2, y2));
      this.stroke(path, rgb < 0 ? this.colors.accent : this.colors.of(rgb), 1, highlight || rgb < 0 ? [6, 4] : []);
    }
  }

  drawCursor() {
    const {context, cursor} = this;
    if (this.band && cursor) {
      const path = new Path2D();
      path.moveTo(...this.at(...this.band));
      path.lineTo(cursor.x, cursor.y);
      this.stroke(path, this.colors.accent, 1, [6, 4]);
    }
    if (this.box) {
      const {x, y, x2, y2} = this.box;
      const crossing = x2 < x;
      context.globalAlpha = 0.14;
      context.fillStyle = crossing ? this.colors.preview : this.colors.selected;
      context.fillRect(x, y, x2 - x, y2 - y);
      context.globalAlpha = 1;
      const path = new Path2D();
      path.rect(x, y, x2 - x, y2 - y);
      this.stroke(path, crossing ? this.colors.preview : this.colors.selected, 1, crossing ? [5, 4] : []);
    } else if (cursor && this.pickbox > 0) {
      const path = new Path2D();
      path.rect(cursor.x - this.pickbox, cursor.y - this.pickbox, 2 * this.pickbox, 2 * this.pickbox);
      this.stroke(path, this.colors.faint, 1);
    }
  }
}
