// The shapes the program has sent, by their numbers. docs/view.md describes the bytes.

export const DOT = 1, FRAME = 2, FULL = 3;
export const STROKE = 0, FILL = 1, GRADIENT = 2;
const SHAPES = 1, DRAG_SET = 2;
const LAST = 1;

function readPart(view, at) {
  const head = view.getUint32(at, true);
  const part = {kind: head & 255, rgb: view.getUint32(at + 4, true), width: view.getFloat32(at + 8, true), dashes: null,
                gradient: null};
  at += 12;
  const dashes = head >>> 8;
  if (dashes > 0) {
    part.dashes = new Float32Array(view.buffer, view.byteOffset + at, dashes);
    at += 4 * dashes;
  }
  if (part.kind === GRADIENT) {
    part.gradient = {rgb: view.getUint32(at, true), mirrored: view.getUint32(at + 4, true) !== 0,
                     ends: new Float32Array(view.buffer, view.byteOffset + at + 8, 4)};
    at += 24;
  }
  const ops = view.getUint32(at, true), floats = view.getUint32(at + 4, true);
  at += 8;
  part.floats = new Float32Array(view.buffer, view.byteOffset + at, floats);
  at += 4 * floats;
  part.ops = new Uint8Array(view.buffer, view.byteOffset + at, ops);
  return [part, at + ((ops + 3) & ~3)];
}

function readShape(view, at) {
  const detail = view.getUint32(at + 4, true);
  const shape = {id: view.getUint32(at, true), detail: detail & 255, window: detail >>> 8,
                 order: view.getUint32(at + 8, true), rgb: view.getUint32(at + 12, true),
                 x: view.getFloat64(at + 16, true), y: view.getFloat64(at + 24, true),
                 minX: view.getFloat32(at + 32, true), minY: view.getFloat32(at + 36, true),
                 maxX: view.getFloat32(at + 40, true), maxY: view.getFloat32(at + 44, true), parts: []};
  const parts = view.getUint32(at + 48, true), length = view.getUint32(at + 52, true);
  const begin = at + 56;
  at = begin;
  for (let i = 0; i < parts; ++i) {
    let part;
    [part, at] = readPart(view, at);
    shape.parts.push(part);
  }
  return [shape, begin + length];
}

export class Scene {
  constructor() {
    this.epoch = 0;
    this.shapes = new Map();
    this.coming = null;  // a new scene, until it is whole
    this.sorted = null;
    this.dragged = [];
  }

  // What the message was: {shapes, last} or {dragSet}.
  read(view) {
    const kind = view.getUint32(0, true);
    if (kind === DRAG_SET) {
      const count = view.getUint32(8, true);
      this.dragged = Array.from({length: count}, (_, i) => view.getUint32(12 + 4 * i, true));
      return {dragSet: true};
    }
    if (kind !== SHAPES) return {};
    const epoch = view.getUint32(4, true), last = (view.getUint32(8, true) & LAST) !== 0;
    const gone = view.getUint32(12, true), count = view.getUint32(16, true);
    if (epoch !== this.epoch) {
      this.epoch = epoch;
      this.coming = new Map();
    }
    const shapes = this.coming ?? this.shapes;
    let at = 20;
    for (let i = 0; i < gone; ++i, at += 4) shapes.delete(view.getUint32(at, true));
    for (let i = 0; i < count; ++i) {
      let shape;
      [shape, at] = readShape(view, at);
      shapes.set(shape.id, shape);
    }
    if (last && this.coming) {
      this.shapes = this.coming;
      this.coming = null;
    }
    if (count > 0 || gone > 0 || last) this.sorted = null;
    return {shapes: true, last};
  }

  // In the order of drawing.
  inOrder() {
    this.sorted ??= [...this.shapes.values()].sort((a, b) => a.window - b.window || a.order - b.order);
    return this.sorted;
  }
}

// Traces a part's path; `pen` takes scene coordinates relative to (dx, dy) scaled: x' = ax x + ex, y' = ay y + ey.
export function trace(path, part, ax, ay, ex, ey) {
  const {ops, floats: f} = part;
  const flip = ax * ay < 0;
  let i = 0;
  for (let k = 0; k < ops.length; ++k) {
    switch (ops[k]) {
      case 0: path.moveTo(ax * f[i] + ex, ay * f[i + 1] + ey); i += 2; break;
      case 1: path.lineTo(ax * f[i] + ex, ay * f[i + 1] + ey); i += 2; break;
      case 2:
        path.quadraticCurveTo(ax * f[i] + ex, ay * f[i + 1] + ey, ax * f[i + 2] + ex, ay * f[i + 3] + ey);
        i += 4;
        break;
      case 3:
        path.bezierCurveTo(ax * f[i] + ex, ay * f[i + 1] + ey, ax * f[i + 2] + ex, ay * f[i + 3] + ey,
                           ax * f[i + 4] + ex, ay * f[i + 5] + ey);
        i += 6;
        break;
      case 4: {
        // Scales are equal but for their sign; an upside-down y turns angles and the way round.
        const size = Math.abs(ax), sign = flip ? -1 : 1;
        path.ellipse(ax * f[i] + ex, ay * f[i + 1] + ey, size * f[i + 2], size * f[i + 3], sign * f[i + 4],
                     sign * f[i + 5], sign * f[i + 6], (f[i + 7] < 0) !== flip);
        i += 8;
        break;
      }
      case 5: path.closePath(); break;
    }
  }
}
