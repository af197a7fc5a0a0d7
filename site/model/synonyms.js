// Words that people search for, and what the library calls the same: parts of names, sections and first sentences.

const SYNONYMS = {
  binarize: ['binaris'],
  blob: ['contour', '4-connected', 'segmentation'],
  blur: ['box mean', 'smooth', 'median'],
  canny: ['edge'],
  center: ['centre', 'centroid'],
  color: ['colour'],
  crop: ['copies a region', 'copies a rectangle'],
  'dilate dilation': ['grows white', 'maxfilter'],
  'erode erosion': ['grows black', 'minfilter'],
  'grayscale greyscale': ['to gray'],
  grey: ['gray'],
  'label component': ['number of its 4-connected', 'regions'],
  negative: ['invert'],
  resize: ['shrinks '],
  skeleton: ['thin'],
  text: ['digit'],
};

/** The words that a search may have in place of those of a text, separated by blanks. */
export function synonymsFor(text) {
  const searched = text.toLowerCase();
  const isMeant = ([, meanings]) => meanings.some((meaning) => searched.includes(meaning));
  return Object.entries(SYNONYMS).filter(isMeant).map(([words]) => words).join(' ');
}
