// Pictures of the library, {width, height, channels, data} with bytes in the order B, G, R, and those of the browser.

// Pictures with more pixels are reduced when they are opened.
const MOST_PIXELS = 4e6;

// Decodes an image file. The result is gray if red, green and blue are equal everywhere.
export async function decodePicture(blob) {
  let bitmap;
  try {
    bitmap = await createImageBitmap(blob, {colorSpaceConversion: 'none'});
  } catch {
    throw new Error('The browser cannot decode this file as a picture. PNG, JPEG, BMP and WebP files are understood.');
  }
  return pictureOf(bitmap, bitmap.width, bitmap.height);
}

// A picture of anything that a canvas can draw; transparent parts become white.
export function pictureOf(source, sourceWidth, sourceHeight) {
  const scale = Math.min(1, Math.sqrt(MOST_PIXELS / (sourceWidth * sourceHeight)));
  const width = Math.max(1, Math.floor(sourceWidth * scale));
  const height = Math.max(1, Math.floor(sourceHeight * scale));
  const canvas = new OffscreenCanvas(width, height);
  const context = canvas.getContext('2d', {willReadFrequently: true});
  context.imageSmoothingQuality = 'high';
  context.fillStyle = 'white';
  context.fillRect(0, 0, width, height);
  context.drawImage(source, 0, 0, width, height);
  const {data: rgba} = context.getImageData(0, 0, width, height);
  const picture = fromRgba(rgba, width, height);
  if (scale < 1) picture.reducedFrom = {width: sourceWidth, height: sourceHeight};
  return picture;
}

function fromRgba(rgba, width, height) {
  const pixels = width * height;
  let gray = true;
  for (let i = 0; i < rgba.length && gray; i += 4) gray = rgba[i] === rgba[i + 1] && rgba[i] === rgba[i + 2];
  const channels = gray ? 1 : 3;
  const data = new Uint8Array(pixels * channels);
  for (let i = 0; i < pixels; ++i) {
    if (gray) {
      data[i] = rgba[4 * i];
    } else {
      data[3 * i] = rgba[4 * i + 2];
      data[3 * i + 1] = rgba[4 * i + 1];
      data[3 * i + 2] = rgba[4 * i];
    }
  }
  return {width, height, channels, data};
}

function toImageData({width, height, channels, data}) {
  const image = new ImageData(width, height);
  const rgba = new Uint32Array(image.data.buffer);
  if (channels === 1) {
    for (let i = 0; i < rgba.length; ++i) rgba[i] = 0xff000000 | (data[i] * 0x010101);
  } else {
    for (let i = 0, k = 0; i < rgba.length; ++i, k += 3) {
      rgba[i] = 0xff000000 | (data[k] << 16) | (data[k + 1] << 8) | data[k + 2];
    }
  }
  return image;
}

const drawn = new WeakMap();

// The picture as a canvas of its size. It is made once.
export function canvasOf(picture) {
  let canvas = drawn.get(picture);
  if (!canvas) {
    canvas = new OffscreenCanvas(picture.width, picture.height);
    canvas.getContext('2d').putImageData(toImageData(picture), 0, 0);
    drawn.set(picture, canvas);
  }
  return canvas;
}

// The values of a pixel in the order red, green, blue, or its gray value alone.
export function pixelValues({width, channels, data}, x, y) {
  const at = (y * width + x) * channels;
  return channels === 1 ? [data[at]] : [data[at + 2], data[at + 1], data[at]];
}

// Counts of the 256 values of each channel, in the order of pixelValues.
export function histograms({channels, data}) {
  const counts = Array.from({length: channels}, () => new Uint32Array(256));
  for (let c = 0; c < channels; ++c) {
    const bins = counts[channels - 1 - c];
    for (let i = c; i < data.length; i += channels) ++bins[data[i]];
  }
  return counts;
}

// The least, the greatest and the mean of the values that a histogram counts.
export function summary(bins) {
  let count = 0, sum = 0, least = 0, most = 0;
  bins.forEach((n, value) => {
    if (n === 0) return;
    if (count === 0) least = value;
    most = value;
    count += n;
    sum += n * value;
  });
  return {least, most, mean: count ? sum / count : 0};
}
