"""Whole jobs in a line: lines, contours, regions and parts of an image, and BMP files."""

import collections.abc
import os
import typing

import numpy

from . import _services as services
from . import _values as values
from ._by_name import single


class Line(typing.NamedTuple):
    """A straight edge from (x1, y1) to (x2, y2), on the line A*x + B*y + C = 0. The angle is in degrees, 0..180."""

    x1: int
    y1: int
    x2: int
    y2: int
    A: float
    B: float
    C: float
    length: float
    angle: float


class Outline(typing.NamedTuple):
    """A contour of an object or, if is_outer is False, of a hole. Its chain of codes starts at (x, y)."""

    x: int
    y: int
    area: int
    perimeter: int
    is_outer: bool
    chain: numpy.ndarray

    __repr__ = values.record_repr


class DarkRegion(typing.NamedTuple):
    """A region of the tree that segment() finds. The chain of its contour starts at (x, y); the parent is the id of
    the region around it, or -1."""

    x: int
    y: int
    area: int
    perimeter: int
    gray: int
    id: int
    parent: int
    chain: numpy.ndarray

    __repr__ = values.record_repr


class Part(typing.NamedTuple):
    """A part with its centre, its measures and its bounding box, whose ends are inclusive. The chain of its contour
    starts at (x, y)."""

    centre_x: int
    centre_y: int
    area: int
    perimeter: int
    left: int
    top: int
    right: int
    bottom: int
    x: int
    y: int
    chain: numpy.ndarray

    __repr__ = values.record_repr


_DTYPES = {int: "i4", float: "f8", bool: "?"}
_ROWS = 20  # of a printed table


class Found(collections.abc.Sequence):
    """What a job found: a sequence of records, which prints as a table.

    A slice, a list of places or an array of bools picks some of the records:
    parts[parts.array()["area"] > 500].
    """

    def __init__(self, name, kind, records):
        self._name, self._kind, self._records = name, kind, list(records)
        types = typing.get_type_hints(kind)
        self._dtype = numpy.dtype([(n, _DTYPES[types[n]]) for n in kind._fields if types[n] in _DTYPES])

    def __len__(self):
        return len(self._records)

    def __getitem__(self, index):
        if isinstance(index, (int, numpy.integer)):
            return self._records[index]
        if not isinstance(index, slice):
            index = numpy.asarray(index) if len(index) else slice(0)
        return Found(self._name, self._kind, [self._records[place] for place in numpy.arange(len(self))[index]])

    def array(self):
        """The numbers of the records as a structured array, without the chains."""
        names = self._dtype.names
        return numpy.array([tuple(getattr(r, n) for n in names) for r in self._records], self._dtype)

    def to_dicts(self):
        """The records as a list of dicts, which json takes. Chains are lists of codes."""
        return [{n: v.tolist() if isinstance(v, numpy.ndarray) else v for n, v in r._asdict().items()}
                for r in self._records]

    def __repr__(self):
        names = self._dtype.names
        rows = [[str(place), *(_cell(getattr(r, n)) for n in names)]
                for place, r in enumerate(self._records[:_ROWS])]
        head = ["", *names]
        widths = [max(map(len, column)) for column in zip(head, *rows)]
        lines = ["  ".join(cell.rjust(width) for cell, width in zip(row, widths)) for row in (head, *rows)]
        more = [f"... and {len(self) - _ROWS} more"] if len(self) > _ROWS else []
        return "\n".join([f"{len(self)} {self._name}", *(lines if rows else []), *more])

    def draw(self, image, colour=(0, 0, 255), numbers=False):
        """A colour copy of an image with the records drawn in it.

        The colour is blue, green and red. With numbers, each record gets its place in the sequence.
        """
        image = to_colour(image)
        b, g, r = values.colour("draw", "colour", colour)
        for place, record in enumerate(self._records):
            if self._kind is Line:
                single("NuvRGBLine")(image, record.x1, record.y1, record.x2, record.y2, r, g, b, out=image)
            else:
                _draw_chain(image, record, (b, g, r))
            if numbers:
                x, y = _middle(record)
                text = str(place)
                single("NuvSetNumberString2RGBImg")(image, x - 4 * len(text), y - 4, 0, b, g, r, text, out=image)
        return image


def _cell(value):
    return f"{value + 0.0:.4g}" if isinstance(value, float) else str(value)  # no -0


def _draw_chain(image, record, colour):
    points = single("NuvChain2Points")(record.x, record.y, record.chain)
    x, y = numpy.append(points.X, record.x), numpy.append(points.Y, record.y)
    inside = (x < image.shape[1]) & (y < image.shape[0])
    image[y[inside], x[inside]] = colour


def _middle(record):
    """Where the number of a record is drawn."""
    if isinstance(record, Line):
        return (record.x1 + record.x2) // 2, (record.y1 + record.y2) // 2
    if isinstance(record, Part):
        return record.centre_x, record.centre_y
    return single("NuvContourCenter")(record.x, record.y, record.chain)


def to_colour(image):
    """A colour copy of a gray or colour image."""
    image = values.image("to_colour", "image", image, 0)
    return image.copy() if image.ndim == 3 else numpy.repeat(image[:, :, None], 3, axis=2)


def to_gray(image):
    """The image itself if it is gray, else its gray values by NuvRGB2Gry."""
    return _gray("to_gray", "image", image)


def _gray(function, name, image):
    image = values.image(function, name, image, 0)
    return image if image.ndim == 2 else single("NuvRGB2Gry")(image)


def find_lines(image, min_length=12, threshold=10, straightness=0.9, deviation=1.0, most=10000):
    """Finds the straight edges of an image, by ChainLines.

    min_length is the least number of pixels of a line, threshold the least gradient of an edge, straightness the least
    ratio of a chord to its path, deviation the greatest mean distance of a path from its chord, and most the greatest
    number of lines.
    """
    image = _gray("find_lines", "image", image)
    lines = []
    if image.size:
        detector = services.ChainLines(image.shape[1], image.shape[0], straightness, deviation, min_length, threshold,
                                       most)
        degrees = single("NuvABCLineAngleDegree2AxisX")
        for x1, y1, x2, y2, a, b, c in detector.detect(image).segments.tolist():
            lines.append(Line(x1, y1, x2, y2, a, b, c, float(numpy.hypot(x2 - x1, y2 - y1)), degrees(a, b, c)))
    return Found("lines", Line, lines)


def find_contours(binary, min_perimeter=0, min_area=0, mode=0):
    """Finds the contours of a binary image by NuvGetContours: with mode 1 those of objects, with 2 those of holes, else
    both."""
    found = single("NuvGetContours")(_gray("find_contours", "binary", binary), min_perimeter, min_area, mode).result
    return Found("contours", Outline, [Outline(c.x, c.y, c.area, c.perimeter, c.isOuter, c.ChainCode) for c in found])


def segment(image, min_area=20, min_gray=0, ratio=0.5):
    """Finds the tree of dark regions of an image by NuvMergeSplit, without a threshold. The smallest come first."""
    found = single("NuvMergeSplit")(_gray("segment", "image", image), min_area, min_gray, ratio).result
    return Found("regions", DarkRegion, [
        DarkRegion(r.x0, r.y0, r.area, r.perimeter, r.gry, r.ID, r.parentID, r.ChainCode) for r in found])


def measure_parts(image, min_area=20, threshold=None, dark=False, background=0):
    """Finds and measures the parts of an image: the connected pixels of at least a threshold, or with dark=True those
    below it.

    Without a threshold, NuvGetOtsuThreshold chooses it. A background of n > 0 evens out the light first: the image
    becomes 128 plus the difference of each pixel from the mean of its (2n + 1) x (2n + 1) neighbours. Holes count as
    area. Parts of less than min_area are left out. Without a threshold, an image with a single gray value
    has no parts.
    """
    image = _gray("measure_parts", "image", image)
    background = values.integer("measure_parts", "background", background, 0, 2**15)
    if threshold is None and (not image.size or image.min() == image.max()):
        return Found("parts", Part, [])
    if background:
        mean = single("NuvGryAverageFilter")(image, background, background)
        image = numpy.clip(image.astype("i2") - mean + 128, 0, 255).astype("u1")
    if threshold is None:
        threshold = _otsu_threshold(image)
    binary = single("NuvThreshold")(image, threshold)
    if dark:
        binary = 255 - binary
    # NuvGetContours clears the border, so a border of background around the image keeps parts that touch its edge.
    found = single("NuvGetContours")(numpy.pad(binary, 1), 0, min_area, 1).result
    return Found("parts", Part, [_measured(c) for c in found if c.ChainCode.size])


def _otsu_threshold(image):
    """The least bright gray value. NuvGetOtsuThreshold needs three different values."""
    histogram = single("NuvGetHistogram")(image)
    levels = numpy.flatnonzero(histogram)
    return single("NuvGetOtsuThreshold")(histogram) + 1 if levels.size > 2 else int(levels[-1])


def _measured(contour):
    x, y, chain = contour.x - 1, contour.y - 1, contour.ChainCode
    centre = single("NuvContourCenter")(x, y, chain)
    box = single("NuvContourRect")(x, y, chain)
    return Part(centre.X, centre.Y, contour.area, contour.perimeter, box.X1, box.Y1, box.X2, box.Y2, x, y, chain)


def imread(path):
    """Reads a BMP file of 8 or 24 bits. Raises OSError if it cannot be read."""
    path = os.fsdecode(values.text("imread", "path", path, None))
    with open(path, "rb") as file:
        head = file.read(30)
    bits = int.from_bytes(head[28:30], "little") if head[:2] == b"BM" and len(head) == 30 else 0
    if bits not in (8, 24):
        raise OSError(f"{path} is not a BMP file of 8 or 24 bits")
    image = single(f"NuvRead{bits}BitBmpFile2Img")(path).result
    if image is None:
        raise OSError(f"{path} is damaged, or its image does not fit into memory")
    return image


def imwrite(path, image):
    """Writes a gray or colour image to a BMP file. Raises OSError if it cannot be written."""
    path = os.fsdecode(values.text("imwrite", "path", path, None))
    image = values.image("imwrite", "image", image, 0)
    if not path.lower().endswith((".bmp", ".dib")):
        raise values.refused("imwrite", "path", "the name of a BMP file, ending with .bmp", path)
    with open(path, "ab"):  # states why a file cannot be written
        pass
    name = "NuvWrite8BitImg2BmpFile" if image.ndim == 2 else "NuvWrite24BitImg2BmpFile"
    if not single(name)(image, path):
        raise OSError(f"{path} cannot be written")
