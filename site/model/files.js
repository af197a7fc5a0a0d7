// For Node.js, in tests and in the reference: the catalogue, and pictures from BMP and PNG files.

import {readFileSync} from 'node:fs';
import {inflateSync} from 'node:zlib';

import {catalogue} from './catalogue.js';

const file = (path) => readFileSync(new URL(`../../${path}`, import.meta.url));
const json = (path) => JSON.parse(file(path));

export const boundary = json('boundary/boundary.json');
export const choicesText = file('bindings/web/parameters.json').toString();
export const choices = JSON.parse(choicesText);
export const functions = catalogue(boundary, choices);
export const shipped = json('site/model/pictures.json');

/** The shipped picture of this name. */
export function shippedPicture(name) {
  return decodePicture(file(shipped.find((picture) => picture.name === name).file));
}

/** A picture from the bytes of a BMP file of 8 or 24 bits, or of a PNG file of 8 bits without interlacing. */
export function decodePicture(bytes) {
  return bytes[0] === 0x42 ? decodeBmp(bytes) : decodePng(bytes);
}

function decodeBmp(bytes) {
  const [start, width, height] = [10, 18, 22].map((place) => bytes.readInt32LE(place));
  const channels = bytes.readUInt16LE(28) / 8;
  const row = width * channels;
  const stride = Math.ceil(row / 4) * 4;
  const data = new Uint8Array(row * height);
  for (let y = 0; y < height; ++y) {
    const from = start + (height - 1 - y) * stride;
    data.set(bytes.subarray(from, from + row), y * row);
  }
  return {width, height, channels, data};
}

function decodePng(bytes) {
  const chunks = new Map();
  for (let place = 8; place < bytes.length;) {
    const length = bytes.readUInt32BE(place);
    const name = bytes.toString('latin1', place + 4, place + 8);
    chunks.set(name, [...(chunks.get(name) ?? []), bytes.subarray(place + 8, place + 8 + length)]);
    place += length + 12;
  }
  const [header] = chunks.get('IHDR');
  const [width, height] = [header.readUInt32BE(0), header.readUInt32BE(4)];
  const perPixel = {0: 1, 2: 3, 3: 1}[header[9]];
  const rows = unfiltered(inflateSync(Buffer.concat(chunks.get('IDAT'))), width * perPixel, height, perPixel);
  if (header[9] === 0) return {width, height, channels: 1, data: rows};
  const palette = chunks.get('PLTE')?.[0];
  const data = new Uint8Array(width * height * 3);
  for (let i = 0; i < width * height; ++i) {
    const [source, place] = palette ? [palette, rows[i] * 3] : [rows, i * 3];
    for (let c = 0; c < 3; ++c) data[i * 3 + c] = source[place + 2 - c];
  }
  return {width, height, channels: 3, data};
}

// Undoes the filters of PNG: each row begins with the number of the predictor that was subtracted.
function unfiltered(bytes, row, height, step) {
  const data = new Uint8Array(row * height);
  for (let y = 0; y < height; ++y) {
    const filter = bytes[y * (row + 1)];
    for (let x = 0; x < row; ++x) {
      const at = y * row + x;
      const left = x >= step ? data[at - step] : 0;
      const up = y > 0 ? data[at - row] : 0;
      const corner = x >= step && y > 0 ? data[at - row - step] : 0;
      const predictors = [0, left, up, (left + up) >> 1, paeth(left, up, corner)];
      data[at] = bytes[y * (row + 1) + 1 + x] + predictors[filter];
    }
  }
  return data;
}

function paeth(left, up, corner) {
  const [a, b, c] = [up - corner, left - corner, left + up - 2 * corner].map(Math.abs);
  return a <= b && a <= c ? left : b <= c ? up : corner;
}
