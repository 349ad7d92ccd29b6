// Mouse, pen, fingers and keys over the drawing.

const CLICK = 4;         // pixels; what moves farther is dragged
const STEP = 80;         // pixels an arrow key moves the view
const ZOOM = 1.25;       // of a key or button
const WHEEL = 0.0016;    // per pixel of the wheel
const SELECT_REACH = 5;  // pixels

export class Pointer {
  // `page`: {mode(), view, moveBy(dx, dy), zoomAt(factor, x, y), fit(), send(message), toScene(x, y), type(text),
  //          escape(), enter()}
  constructor(canvas, overlay, page) {
    Object.assign(this, {canvas, overlay, page});
    this.pressed = null;
    this.fingers = new Map();
    this.space = false;
    canvas.addEventListener('pointerdown', (event) => this.down(event));
    canvas.addEventListener('pointermove', (event) => this.move(event));
    canvas.addEventListener('pointerup', (event) => this.up(event));
    canvas.addEventListener('pointercancel', (event) => this.drop(event));
    canvas.addEventListener('pointerleave', () => {
      overlay.cursor = null;
      overlay.ask();
      document.getElementById('place').textContent = '';
    });
    canvas.addEventListener('wheel', (event) => this.wheel(event), {passive: false});
    canvas.addEventListener('contextmenu', (event) => event.preventDefault());
    canvas.addEventListener('keydown', (event) => this.key(event));
    canvas.addEventListener('keyup', (event) => {
      if (event.key === ' ') this.space = false;
    });
  }

  place(event) {
    const box = this.canvas.getBoundingClientRect();
    return {x: event.clientX - box.left, y: event.clientY - box.top};
  }

  down(event) {
    this.canvas.focus({preventScroll: true});
    const at = this.place(event);
    if (event.pointerType === 'touch') this.fingers.set(event.pointerId, at);
    if (event.button === 2) {
      if (this.page.mode() !== 'idle') this.page.enter();
      return;
    }
    this.canvas.setPointerCapture(event.pointerId);
    const pans = event.button === 1 || this.space || this.fingers.size > 1;
    this.pressed = {...at, last: at, button: event.button, pans, moved: false};
    if (event.button === 1) event.preventDefault();
  }

  move(event) {
    const at = this.place(event), {overlay, page, pressed} = this;
    if (this.fingers.has(event.pointerId) && this.pinch(event.pointerId, at)) return;
    overlay.cursor = at;
    overlay.ask();
    const [x, y] = page.toScene(at.x, at.y);
    document.getElementById('place').textContent = `${format(x, page.view.u)}, ${format(y, page.view.u)}`;
    if (pressed && Math.hypot(at.x - pressed.x, at.y - pressed.y) > CLICK) pressed.moved = true;
    if (pressed?.pans) {
      page.moveBy(at.x - pressed.last.x, at.y - pressed.last.y);
      pressed.last = at;
    } else if (pressed?.moved && this.opensBoxes()) {
      overlay.box = {x: pressed.x, y: pressed.y, x2: at.x, y2: at.y};
    }
    if (page.mode() === 'drag' && !pressed?.pans) page.send({t: 'move', x, y});
  }

  opensBoxes() { return this.page.mode() === 'idle' || this.page.mode() === 'objects'; }

  up(event) {
    const {pressed, page, overlay} = this;
    this.fingers.delete(event.pointerId);
    this.pressed = null;
    if (!pressed) return;
    const at = this.place(event);
    const [x, y] = page.toScene(pressed.x, pressed.y), [x2, y2] = page.toScene(at.x, at.y);
    const box = overlay.box;
    overlay.box = null;
    overlay.ask();
    if (pressed.pans || pressed.button !== 0) return;
    if (box) page.send({t: 'box', x, y, x2, y2, on: event.shiftKey || event.ctrlKey});
    else if (page.mode() !== 'busy')
      page.send({t: 'pick', x: x2, y: y2, reach: SELECT_REACH * page.view.u, on: event.shiftKey || event.ctrlKey});
  }

  drop(event) {
    this.fingers.delete(event.pointerId);
    this.pressed = null;
    this.overlay.box = null;
    this.overlay.ask();
  }

  // Two fingers move and zoom.
  pinch(id, at) {
    const before = this.fingers.get(id);
    this.fingers.set(id, at);
    if (this.fingers.size !== 2) return false;
    const other = [...this.fingers.entries()].find(([key]) => key !== id)[1];
    const old = Math.hypot(before.x - other.x, before.y - other.y), now = Math.hypot(at.x - other.x, at.y - other.y);
    this.page.moveBy((at.x - before.x) / 2, (at.y - before.y) / 2);
    if (old > 0 && now > 0) this.page.zoomAt(now / old, (at.x + other.x) / 2, (at.y + other.y) / 2);
    if (this.pressed) this.pressed.pans = true;
    return true;
  }

  wheel(event) {
    event.preventDefault();
    const at = this.place(event);
    if (event.shiftKey) return this.page.moveBy(-event.deltaX - event.deltaY, 0);
    const pixels = event.deltaMode === 1 ? event.deltaY * 33 : event.deltaY;
    this.page.zoomAt(Math.exp(-Math.max(-400, Math.min(400, pixels)) * WHEEL), at.x, at.y);
  }

  key(event) {
    if (event.ctrlKey || event.metaKey || event.altKey) return;
    const {page} = this;
    const step = event.shiftKey ? STEP * 4 : STEP;
    const act = {
      ArrowLeft: () => page.moveBy(step, 0),
      ArrowRight: () => page.moveBy(-step, 0),
      ArrowUp: () => page.moveBy(0, step),
      ArrowDown: () => page.moveBy(0, -step),
      '+': () => page.zoomAt(ZOOM),
      '=': () => page.zoomAt(ZOOM),
      '-': () => page.zoomAt(1 / ZOOM),
      Home: () => page.fit(),
      Escape: () => page.escape(),
      Enter: () => page.enter(),
      ' ': () => { this.space = true; },
    }[event.key];
    if (act) act();
    else if (event.key.length === 1) page.type(event.key);
    else return;
    event.preventDefault();
  }
}

// As many decimals as a pixel can tell apart.
function format(value, unit) {
  return value.toFixed(Math.min(8, Math.max(0, Math.ceil(-Math.log10(unit)))));
}
