// Colours of the drawing on the page's background: what would vanish there is turned round.

function luminance(rgb) {
  return (0.299 * ((rgb >> 16) & 255) + 0.587 * ((rgb >> 8) & 255) + 0.114 * (rgb & 255)) / 255;
}

function mixed(rgb, other, part) {
  let result = 0;
  for (const shift of [16, 8, 0]) {
    const a = (rgb >> shift) & 255, b = (other >> shift) & 255;
    result |= Math.round(a + (b - a) * part) << shift;
  }
  return result;
}

export class Colors {
  constructor() {
    this.query = matchMedia('(prefers-color-scheme: light)');
    this.cache = new Map();
    this.read();
  }

  onChange(call) {
    this.query.addEventListener('change', () => {
      this.read();
      call();
    });
  }

  read() {
    const style = getComputedStyle(document.documentElement);
    for (const name of ['back', 'paper', 'line', 'faint', 'accent', 'preview', 'selected'])
      this[name] = style.getPropertyValue(`--${name}`).trim();
    this.cache.clear();
  }

  // As a CSS colour.
  of(rgb) {
    let text = this.cache.get(rgb);
    if (text === undefined) {
      text = `#${this.adapted(rgb).toString(16).padStart(6, '0')}`;
      this.cache.set(rgb, text);
    }
    return text;
  }

  adapted(rgb) {
    if (this.query.matches) {
      if (rgb === 0xffffff) return 0x1d2126;
      const bright = luminance(rgb);
      return bright > 0.62 ? mixed(rgb, 0, Math.min(0.5, (bright - 0.62) * 1.4 + 0.1)) : rgb;
    }
    if (rgb === 0xffffff) return 0xe8ecf1;
    const bright = luminance(rgb);
    return bright < 0.25 ? mixed(rgb, 0xffffff, 0.42 - bright) : rgb;
  }
}
