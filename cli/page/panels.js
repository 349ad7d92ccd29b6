// Layouts, layers, properties.

const OFF = 0, FROZEN = 1, LOCKED = 2;
const MANY_LAYERS = 12;  // from so many on they can be filtered

// Drawn in a square of 16.
const SNOW = 'M8 1v14M2 4.5l12 7M14 4.5l-12 7M5.5 2L8 4.5 10.5 2M5.5 14L8 11.5 10.5 14';
const LOCK = 'M3.5 7.5h9v7h-9zM5.5 7.5V5a2.5 2.5 0 0 1 5 0v2.5';

function icon(path) {
  const svg = document.createElementNS('http://www.w3.org/2000/svg', 'svg');
  svg.setAttribute('viewBox', '0 0 16 16');
  svg.setAttribute('aria-hidden', 'true');
  const shape = document.createElementNS('http://www.w3.org/2000/svg', 'path');
  shape.setAttribute('d', path);
  svg.append(shape);
  return svg;
}

function element(name, properties = {}, ...children) {
  const made = Object.assign(document.createElement(name), properties);
  made.append(...children);
  return made;
}

export class Panels {
  // `act`: {layer(name, what, on), layout(name)}
  constructor(act, colors) {
    this.act = act;
    this.colors = colors;
    this.layouts = document.getElementById('layouts');
    this.layers = document.getElementById('layers');
    this.filter = document.getElementById('layer-filter');
    this.properties = document.getElementById('properties');
    this.shown = {};
    this.filter.addEventListener('input', () => this.applyFilter());
    this.layouts.addEventListener('keydown', (event) => {
      const way = {ArrowLeft: -1, ArrowRight: 1}[event.key];
      const tabs = [...this.layouts.children];
      if (way) tabs[(tabs.indexOf(document.activeElement) + way + tabs.length) % tabs.length].focus();
    });
  }

  // The colours have changed.
  repaint() {
    if (!this.document) return;
    this.shown.layers = null;
    this.showLayers(this.document.layers);
  }

  show(message) {
    this.document = message;
    const {name, layouts, layout, layers} = message;
    this.showTitle(name);
    this.showLayouts(layouts, layout);
    this.showLayers(layers);
  }

  showTitle(name) {
    const title = name ? name.split(/[\\/]/).at(-1) : 'New drawing';
    document.getElementById('name').textContent = title;
    document.title = `${title} – gcad`;
  }

  // Only what has changed is made anew, so that the focus stays where it is.
  isShown(what, value) {
    const text = JSON.stringify(value);
    if (this.shown[what] === text) return true;
    this.shown[what] = text;
    return false;
  }

  showLayouts(layouts, current) {
    if (this.isShown('layouts', [layouts, current])) return;
    const focused = document.activeElement?.dataset?.layout;
    this.layouts.replaceChildren(...layouts.map((name) => {
      const chosen = name.toLowerCase() === current.toLowerCase();
      const tab = element('button', {type: 'button', role: 'tab', textContent: name, tabIndex: chosen ? 0 : -1});
      tab.dataset.layout = name;
      tab.setAttribute('aria-selected', String(chosen));
      tab.addEventListener('click', () => this.act.layout(name));
      return tab;
    }));
    this.layouts.querySelector('[aria-selected="true"]')?.scrollIntoView({block: 'nearest', inline: 'nearest'});
    if (focused !== undefined) this.layouts.querySelector(`[data-layout="${CSS.escape(focused)}"]`)?.focus();
  }

  showLayers(layers) {
    if (this.isShown('layers', layers)) return;
    const focused = document.activeElement?.id;
    this.filter.hidden = layers.length < MANY_LAYERS;
    this.layers.replaceChildren(...layers.map((layer, index) => {
      const box = element('input', {type: 'checkbox', checked: !layer.off, id: `layer-${index}`});
      box.addEventListener('change', () => this.act.layer(layer.name, OFF, !box.checked));
      const swatch = element('span', {className: 'swatch'});
      swatch.style.background = this.colors.of(layer.color);
      const label = element('label', {}, box, swatch, element('span', {className: 'name', textContent: layer.name, title: layer.name}));
      const item = element('li', {className: layer.current ? 'current' : ''}, label,
                           this.toggle(layer, 'Frozen', SNOW, FROZEN, layer.frozen, `frozen-${index}`),
                           this.toggle(layer, 'Locked', LOCK, LOCKED, layer.locked, `locked-${index}`));
      item.dataset.layer = layer.name.toLowerCase();
      return item;
    }));
    this.applyFilter();
    if (focused) document.getElementById(focused)?.focus();
  }

  toggle(layer, title, path, what, on, id) {
    const button = element('button', {type: 'button', title, id}, icon(path));
    button.setAttribute('aria-label', `${title}: ${layer.name}`);
    button.setAttribute('aria-pressed', String(on));
    button.addEventListener('click', () => this.act.layer(layer.name, what, !on));
    return button;
  }

  applyFilter() {
    const wanted = this.filter.hidden ? '' : this.filter.value.toLowerCase();
    for (const item of this.layers.children) item.hidden = !item.dataset.layer.includes(wanted);
  }

  select({title, rows}) {
    document.getElementById('nothing').hidden = rows.length > 0;
    this.properties.hidden = rows.length === 0;
    this.properties.caption.textContent = title;
    this.properties.tBodies[0].replaceChildren(...rows.map(([name, value]) =>
      element('tr', {}, element('th', {scope: 'row', textContent: name}), element('td', {textContent: value}))));
  }
}
