// The large picture: zoom, pan, before and after under one divider, values of pixels, results drawn over it, and
// regions and points that the mouse sets.

import {h} from './elements.js';
import {canvasOf, pixelValues} from './picture.js';
import {drawResults, stroke} from './drawings.js';

const MOST_ZOOM = 64;
const VALUES_FROM = 32;  // screen pixels per pixel from which values are written into pixels
const GRID_FROM = 12;
const REACH = 9;  // a handle is taken this near, in screen pixels; with a finger from twice as far
const MARK_COLOUR = '#3db8ff';

const limit = (value, least, most) => Math.min(Math.max(value, least), most);

export class View {
  // Calls when something has changed: read(text, byKeyboard), zoomed(scale), marked(name, value, isFinal).
  constructor(host, calls) {
    this.calls = calls;
    this.canvas = h('canvas');
    this.divider = h('div', {
      class: 'divider', role: 'slider', tabindex: 0, 'aria-label': 'Divider between before and after',
      'aria-valuemin': 0, 'aria-valuemax': 100,
    }, h('span'));
    this.labels = [h('span', {class: 'side before'}), h('span', {class: 'side after'})];
    this.host = host;
    host.append(this.canvas, ...this.labels, this.divider);
    this.context = this.canvas.getContext('2d');
    this.scale = 1;
    this.left = 0;
    this.top = 0;
    this.fitted = true;
    this.share = 0.5;  // how much of the view's width shows the picture before
    this.content = {picture: null, before: null, results: [], marks: [], emphasised: null, armed: null};
    this.cursor = null;
    this.fingers = new Map();
    new ResizeObserver(() => this.resize()).observe(host);
    this.listen();
  }

  // Takes any of: picture, before, beforeLabel, afterLabel, results, marks, emphasised, armed.
  show(changes) {
    const old = this.content.picture;
    Object.assign(this.content, changes);
    const {picture, before} = this.content;
    if (picture && (picture.width !== old?.width || picture.height !== old?.height)) {
      if (this.fitted || !old) this.fit();
      this.cursor = null;
    }
    const split = Boolean(before);
    this.divider.hidden = !split;
    this.labels.forEach((label, i) => {
      label.hidden = !split;
      label.textContent = [this.content.beforeLabel, this.content.afterLabel][i];
    });
    this.host.classList.toggle('armed', Boolean(this.content.armed));
    this.moveDivider(this.share);
    this.redraw();
  }

  resize() {
    const ratio = window.devicePixelRatio || 1;
    this.width = this.host.clientWidth;
    this.height = this.host.clientHeight;
    this.canvas.width = Math.round(this.width * ratio);
    this.canvas.height = Math.round(this.height * ratio);
    this.ratio = ratio;
    if (this.fitted) this.fit();
    this.moveDivider(this.share);
    this.redraw();
  }

  fit() {
    const {picture} = this.content;
    if (!picture || !this.width) return;
    const margin = Math.min(16, this.width / 20);
    const scale = Math.min((this.width - 2 * margin) / picture.width, (this.height - 2 * margin) / picture.height);
    this.scale = limit(scale, 0.01, MOST_ZOOM);
    this.left = (this.width - picture.width * this.scale) / 2;
    this.top = (this.height - picture.height * this.scale) / 2;
    this.fitted = true;
    this.calls.zoomed(this.scale);
    this.redraw();
  }

  // Sets the scale; the point (x, y) of the view stays where it is.
  zoomTo(scale, x = this.width / 2, y = this.height / 2) {
    const wanted = limit(scale, 0.05, MOST_ZOOM);
    this.left = x - (x - this.left) * wanted / this.scale;
    this.top = y - (y - this.top) * wanted / this.scale;
    this.scale = wanted;
    this.fitted = false;
    this.calls.zoomed(wanted);
    this.redraw();
  }

  moveDivider(share) {
    this.share = limit(share, 0, 1);
    const percent = Math.round(this.share * 100);
    this.divider.style.left = `${this.share * 100}%`;
    this.labels[0].style.right = `${(1 - this.share) * 100}%`;
    this.labels[1].style.left = `${this.share * 100}%`;
    this.divider.setAttribute('aria-valuenow', percent);
    this.divider.setAttribute('aria-valuetext', `${percent} percent before, ${100 - percent} percent after`);
    this.redraw();
  }

  redraw() {
    this.frame ??= requestAnimationFrame(() => {
      this.frame = null;
      if (this.content.picture && this.width) this.draw();
    });
  }

  draw() {
    const {context, content, scale} = this;
    const {picture, before, results, emphasised, marks} = content;
    context.setTransform(1, 0, 0, 1, 0, 0);
    context.clearRect(0, 0, this.canvas.width, this.canvas.height);
    // The corner of the picture lies on a pixel of the screen, so that 1:1 shows each pixel as it is.
    const align = (place) => Math.round(this.ratio * place);
    const pixels = () => context.setTransform(
      this.ratio * scale, 0, 0, this.ratio * scale, align(this.left), align(this.top));
    pixels();
    context.imageSmoothingEnabled = scale * this.ratio < 1;
    context.imageSmoothingQuality = 'high';
    context.drawImage(canvasOf(picture), 0, 0);
    if (before) {
      const [width, height] = this.beforeSize();
      this.clipped(0, this.share, () => {
        context.clearRect(0, 0, Math.max(width, picture.width), Math.max(height, picture.height));
        context.drawImage(canvasOf(before), 0, 0, width, height);
      }, pixels);
    }
    if (scale >= GRID_FROM) this.drawPixels(pixels);
    drawResults(context, results, scale, emphasised);
    for (const mark of marks) this.drawMark(mark);
    if (this.cursor) this.drawCursor();
  }

  // The picture before is stretched over the one after if both have the same proportions.
  beforeSize() {
    const {picture, before} = this.content;
    const same = Math.abs(picture.width / before.width / (picture.height / before.height) - 1) < 0.02;
    return same ? [picture.width, picture.height] : [before.width, before.height];
  }

  // Draws within a part of the view's width, from one share of it to another.
  clipped(from, to, draw, transform) {
    const {context} = this;
    context.save();
    context.setTransform(1, 0, 0, 1, 0, 0);
    context.beginPath();
    context.rect(this.canvas.width * from, 0, this.canvas.width * (to - from), this.canvas.height);
    context.clip();
    transform();
    draw();
    context.restore();
  }

  // Lines between pixels and, when there is room, the values of each.
  drawPixels(transform) {
    const {context, scale, content: {picture, before}} = this;
    const x0 = Math.max(0, Math.floor(-this.left / scale));
    const y0 = Math.max(0, Math.floor(-this.top / scale));
    const x1 = Math.min(picture.width, Math.ceil((this.width - this.left) / scale));
    const y1 = Math.min(picture.height, Math.ceil((this.height - this.top) / scale));
    context.beginPath();
    for (let x = x0; x <= x1; ++x) context.rect(x, y0, 0, y1 - y0);
    for (let y = y0; y <= y1; ++y) context.rect(x0, y, x1 - x0, 0);
    context.strokeStyle = 'rgb(128 128 128 / 45%)';
    context.lineWidth = 1 / scale;
    context.stroke();
    if (scale < VALUES_FROM) return;
    const values = (shown) => {
      const size = Math.min(11, scale / 3.4);
      context.font = `${size / scale}px ui-monospace, monospace`;
      context.textAlign = 'center';
      context.textBaseline = 'middle';
      for (let y = y0; y < Math.min(y1, shown.height); ++y) {
        for (let x = x0; x < Math.min(x1, shown.width); ++x) {
          const channels = pixelValues(shown, x, y);
          const [red, green, blue] = channels.length === 3 ? channels : [channels[0], channels[0], channels[0]];
          context.fillStyle = 0.3 * red + 0.59 * green + 0.11 * blue > 127 ? 'black' : 'white';
          channels.forEach((value, line) => {
            context.fillText(value, x + 0.5, y + 0.5 + (line - (channels.length - 1) / 2) * 1.1 * size / scale);
          });
        }
      }
    };
    const split = before && before.width === picture.width && before.height === picture.height ? this.share : 0;
    this.clipped(split, 1, () => values(picture), transform);
    if (split) this.clipped(0, split, () => values(before), transform);
  }

  drawMark({kind, value, label}) {
    const {context, scale} = this;
    const path = new Path2D();
    const handle = 3.5 / scale;
    if (kind === 'region') {
      const {left, top, right, bottom} = value;
      path.rect(left, top, right - left + 1, bottom - top + 1);
    }
    for (const [x, y] of handles(kind, value)) path.rect(x - handle, y - handle, 2 * handle, 2 * handle);
    stroke(context, path, scale, MARK_COLOUR, 1.5);
    const [x, y] = kind === 'region' ? [value.left, value.top] : [value.x + 0.5 + handle * 2, value.y];
    context.font = `${12 / scale}px system-ui, sans-serif`;
    context.textAlign = 'left';
    context.textBaseline = 'bottom';
    context.lineWidth = 3 / scale;
    context.strokeStyle = 'rgb(0 0 0 / 70%)';
    context.strokeText(label, x, y - 4 / scale);
    context.fillStyle = 'white';
    context.fillText(label, x, y - 4 / scale);
  }

  drawCursor() {
    const path = new Path2D();
    path.rect(this.cursor.x, this.cursor.y, 1, 1);
    stroke(this.context, path, this.scale, 'white', this.scale < 4 ? 3 : 1.5);
  }

  // The pixel at a place of the view; it may lie outside the picture.
  pixelAt(x, y) {
    return {x: Math.floor((x - this.left) / this.scale), y: Math.floor((y - this.top) / this.scale)};
  }

  inside({x, y}) {
    const {picture} = this.content;
    return picture && x >= 0 && y >= 0 && x < picture.width && y < picture.height;
  }

  report(place, byKeyboard) {
    const {picture, before} = this.content;
    if (!place || !this.inside(place)) return this.calls.read('', byKeyboard);
    const values = [picture];
    if (before && place.x < before.width && place.y < before.height &&
        before.width === picture.width && before.height === picture.height) {
      values.unshift(before);
    }
    const texts = values.map((shown) => pixelValues(shown, place.x, place.y).join(', '));
    this.calls.read(`x ${place.x}  y ${place.y}   ${texts.join(' → ')}`, byKeyboard);
  }

  listen() {
    const {host} = this;
    const place = (event) => {
      const box = host.getBoundingClientRect();
      return {x: event.clientX - box.left, y: event.clientY - box.top};
    };
    host.addEventListener('wheel', (event) => {
      event.preventDefault();
      const {x, y} = place(event);
      this.zoomTo(this.scale * Math.exp(-event.deltaY * (event.deltaMode ? 0.05 : 0.0016)), x, y);
    }, {passive: false});
    host.addEventListener('dblclick', () => this.fit());
    host.addEventListener('pointerdown', (event) => {
      if (event.button !== 0 || event.target.closest('.divider')) return;
      host.setPointerCapture(event.pointerId);
      this.press(event, place(event));
    });
    host.addEventListener('pointermove', (event) => this.move(event, place(event)));
    for (const end of ['pointerup', 'pointercancel']) {
      host.addEventListener(end, (event) => this.release(event));
    }
    host.addEventListener('pointerleave', () => this.report(this.cursor));
    host.addEventListener('keydown', (event) => {
      if (event.target === host && this.key(event)) event.preventDefault();
    });
    host.addEventListener('blur', () => {
      this.cursor = null;
      this.redraw();
    });
    this.divider.addEventListener('pointerdown', (event) => {
      this.divider.setPointerCapture(event.pointerId);
      event.preventDefault();
      this.divider.focus();
    });
    this.divider.addEventListener('pointermove', (event) => {
      if (this.divider.hasPointerCapture(event.pointerId)) this.moveDivider(place(event).x / this.width);
    });
    this.divider.addEventListener('keydown', (event) => {
      const step = event.shiftKey ? 0.1 : 0.01;
      const to = {
        ArrowLeft: this.share - step, ArrowDown: this.share - step, ArrowRight: this.share + step,
        ArrowUp: this.share + step, PageDown: this.share - 0.1, PageUp: this.share + 0.1, Home: 0, End: 1,
      }[event.key];
      if (to === undefined) return;
      event.preventDefault();
      this.moveDivider(to);
    });
  }

  press(event, {x, y}) {
    this.fingers.set(event.pointerId, {x, y});
    if (this.fingers.size > 1) {
      this.drag = null;
      return;
    }
    const {armed} = this.content;
    const pixel = this.pixelAt(x, y);
    if (armed) {
      this.drag = {mark: armed, from: pixel, draws: true};
      this.dragMark(pixel);
      return;
    }
    const reach = (event.pointerType === 'touch' ? 2 : 1) * REACH;
    const taken = this.handleAt(x, y, reach);
    this.drag = taken ? {...taken, from: pixel} : {pan: true, x, y, left: this.left, top: this.top};
  }

  move(event, {x, y}) {
    const finger = this.fingers.get(event.pointerId);
    if (!finger) {
      this.host.classList.toggle('grips', Boolean(this.handleAt(x, y, REACH)));
      this.report(this.pixelAt(x, y));
      return;
    }
    if (this.fingers.size === 2) {
      this.pinch(event.pointerId, {x, y});
    } else if (this.drag?.pan) {
      this.left = this.drag.left + x - this.drag.x;
      this.top = this.drag.top + y - this.drag.y;
      this.fitted = false;
      this.redraw();
    } else if (this.drag) {
      this.dragMark(this.pixelAt(x, y));
    }
    this.fingers.set(event.pointerId, {x, y});
  }

  release(event) {
    if (!this.fingers.delete(event.pointerId)) return;
    if (this.drag?.mark) this.calls.marked(this.drag.mark.name, this.drag.mark.value, true);
    this.drag = null;
  }

  // Two fingers: the points of the picture under them stay under them.
  pinch(id, now) {
    const [other] = [...this.fingers].filter(([key]) => key !== id).map(([, finger]) => finger);
    const old = this.fingers.get(id);
    const apart = (a) => Math.max(20, Math.hypot(a.x - other.x, a.y - other.y));
    this.left += (now.x - old.x) / 2;
    this.top += (now.y - old.y) / 2;
    this.zoomTo(this.scale * apart(now) / apart(old), (now.x + other.x) / 2, (now.y + other.y) / 2);
  }

  // The handle of a mark that lies nearest to a place of the view, within reach.
  handleAt(x, y, reach) {
    let best = null;
    for (const mark of this.content.marks) {
      handles(mark.kind, mark.value).forEach(([hx, hy, sides]) => {
        const distance = Math.hypot(this.left + hx * this.scale - x, this.top + hy * this.scale - y);
        if (distance <= reach && distance < (best?.distance ?? Infinity)) {
          best = {mark, sides, distance, start: {...mark.value}};
        }
      });
    }
    return best;
  }

  // Moves the sides that the pressed handle holds, or draws the armed mark from where the press began.
  dragMark(pixel) {
    const {mark, sides, start, from, draws} = this.drag;
    const {width, height} = this.content.picture;
    const inX = (x) => limit(x, 0, width - 1);
    const inY = (y) => limit(y, 0, height - 1);
    if (mark.kind === 'point') {
      mark.value = {x: inX(pixel.x), y: inY(pixel.y)};
    } else {
      const region = draws ? {left: from.x, top: from.y, right: pixel.x, bottom: pixel.y} : {...start};
      if (!draws) {
        const whole = sides.length === 4;  // keeps its size at the border
        const dx = whole ? limit(pixel.x - from.x, -start.left, width - 1 - start.right) : pixel.x - from.x;
        const dy = whole ? limit(pixel.y - from.y, -start.top, height - 1 - start.bottom) : pixel.y - from.y;
        for (const side of sides) region[side] += side === 'left' || side === 'right' ? dx : dy;
      }
      mark.value = {
        left: inX(Math.min(region.left, region.right)), top: inY(Math.min(region.top, region.bottom)),
        right: inX(Math.max(region.left, region.right)), bottom: inY(Math.max(region.top, region.bottom)),
      };
    }
    this.calls.marked(mark.name, mark.value, false);
    this.redraw();
  }

  // Keys of the focused view. True if the key means something here.
  key(event) {
    const {picture} = this.content;
    if (!picture || event.ctrlKey || event.metaKey || event.altKey) return false;
    const step = event.shiftKey ? 10 : 1;
    const move = {ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1]}[event.key];
    if (move) {
      const [dx, dy] = move.map((by) => by * step);
      const from = this.cursor ?? this.pixelAt(this.width / 2, this.height / 2);
      this.cursor = {x: limit(from.x + dx, 0, picture.width - 1), y: limit(from.y + dy, 0, picture.height - 1)};
      this.keepInView(this.cursor);
      this.report(this.cursor, true);
      this.redraw();
      return true;
    }
    const at = this.cursor
      ? [this.left + (this.cursor.x + 0.5) * this.scale, this.top + (this.cursor.y + 0.5) * this.scale] : [];
    if (event.key === '+' || event.key === '=') this.zoomTo(this.scale * 1.5, ...at);
    else if (event.key === '-') this.zoomTo(this.scale / 1.5, ...at);
    else if (event.key === '0') this.fit();
    else if (event.key === '1') this.zoomTo(1, ...at);
    else return false;
    return true;
  }

  keepInView({x, y}) {
    const margin = 20;
    const screenX = this.left + (x + 0.5) * this.scale;
    const screenY = this.top + (y + 0.5) * this.scale;
    this.left += limit(screenX, margin, this.width - margin) - screenX;
    this.top += limit(screenY, margin, this.height - margin) - screenY;
  }
}

// Handles of a mark: place in the picture, and the sides that move with it.
function handles(kind, value) {
  if (kind === 'point') return [[value.x + 0.5, value.y + 0.5, []]];
  const {left, top, right, bottom} = value;
  const columns = [[left, ['left']], [(left + right + 1) / 2, []], [right + 1, ['right']]];
  const rows = [[top, ['top']], [(top + bottom + 1) / 2, []], [bottom + 1, ['bottom']]];
  return columns.flatMap(([x, sidesX]) => rows.map(([y, sidesY]) => {
    const sides = [...sidesX, ...sidesY];
    return [x, y, sides.length ? sides : ['left', 'top', 'right', 'bottom']];
  }));
}
