"""Whole jobs in a line: lines, contours, regions and parts of an image, and BMP files."""

import collections
import os

import numpy

from . import _services as services
from . import _values as values
from ._by_name import single


class Found(collections.abc.Sequence):
    """What a job found: a sequence of records that prints as a table and converts to arrays and dicts."""

    def __init__(self, kind, records, dtype):
        self._kind, self._records, self._dtype = kind, list(records), dtype

    def __len__(self):
        return len(self._records)

    def __getitem__(self, index):
        return self._records[index]

    def array(self):
        """The numbers of the records as a structured array."""
        names = self._dtype.names
        return numpy.array([tuple(getattr(r, n) for n in names) for r in self._records], self._dtype)

    def to_dicts(self):
        return [r._asdict() for r in self._records]

    def __repr__(self):
        names = self._dtype.names
        rows = [[f"{getattr(r, n):.4g}" if isinstance(getattr(r, n), float) else str(getattr(r, n)) for n in names]
                for r in self._records[:20]]
        widths = [max(map(len, column)) for column in zip(names, *rows)]
        lines = ["  ".join(cell.rjust(width) for cell, width in zip(row, widths)) for row in (names, *rows)]
        more = [f"... and {len(self) - 20} more"] if len(self) > 20 else []
        return "\n".join([f"{len(self)} {self._kind}", *lines, *more])

    def draw(self, image, colour=(0, 0, 255)):
        """A colour copy of the image with the records drawn in blue, green and red."""
        image = to_colour(image)
        for record in self._records:
            self._draw(image, record, colour)
        return image


class Lines(Found):
    def _draw(self, image, line, colour):
        b, g, r = colour
        single("NuvRGBLine")(image, line.x1, line.y1, line.x2, line.y2, r, g, b, out=image)


class Outlined(Found):
    """Records with a start x, y and a chain."""

    def _draw(self, image, record, colour):
        points = single("NuvChain2Points")(record.x, record.y, record.chain)
        image[points.Y, points.X] = colour
        image[record.y, record.x] = colour


Line = collections.namedtuple("Line", "x1 y1 x2 y2 A B C length angle")
ContourFound = collections.namedtuple("ContourFound", "x y area perimeter is_outer chain")
RegionFound = collections.namedtuple("RegionFound", "x y area perimeter gray id parent chain")
Part = collections.namedtuple("Part", "x y left top right bottom center_x center_y area perimeter chain")


def _dtype(record, reals=(), left_out=("chain",)):
    return numpy.dtype([(n, "f8" if n in reals else "i4") for n in record._fields if n not in left_out])


def to_colour(image):
    """A colour copy of a gray or colour image."""
    image = values.image("to_colour", "image", image, 0)
    return image.copy() if image.ndim == 3 else numpy.repeat(image[:, :, None], 3, axis=2)


def to_gray(image):
    """The image itself if it is gray, else its gray values by NuvRGB2Gry."""
    image = values.image("to_gray", "image", image, 0)
    return image if image.ndim == 2 else single("NuvRGB2Gry")(image)


def find_lines(image, min_length=12, threshold=10, straightness=0.9, deviation=1.0, most=10000):
    """The straight edges of an image."""
    image = to_gray(image)
    if not image.size:
        segments = numpy.zeros(0, values.SEGMENT)
    else:
        detector = services.ChainLines(image.shape[1], image.shape[0], straightness, deviation, min_length, threshold,
                                       most)
        segments = detector.detect(image).segments
    angle = single("NuvABCLineAngleDegree2AxisX")
    return Lines("lines", [
        Line(*map(int, (s["x1"], s["y1"], s["x2"], s["y2"])), *map(float, (s["A"], s["B"], s["C"])),
             float(numpy.hypot(float(s["x2"]) - s["x1"], float(s["y2"]) - s["y1"])),
             angle(float(s["A"]), float(s["B"]), float(s["C"]))) for s in segments],
        _dtype(Line, ("A", "B", "C", "length", "angle")))


def find_contours(binary, min_perimeter=0, min_area=0, mode=0):
    """The contours of a binary image; mode is that of NuvGetContours."""
    found = single("NuvGetContours")(to_gray(binary), min_perimeter, min_area, mode).result
    return Outlined("contours", [ContourFound(c.x, c.y, c.area, c.perimeter, c.isOuter, c.ChainCode) for c in found],
                    _dtype(ContourFound))


def segment(image, min_area=20, min_gray=0, ratio=0.5):
    """The tree of dark regions of an image."""
    found = single("NuvMergeSplit")(to_gray(image), min_area, min_gray, ratio).result
    return Outlined("regions", [RegionFound(r.x0, r.y0, r.area, r.perimeter, r.gry, r.ID, r.parentID, r.ChainCode)
                                for r in found], _dtype(RegionFound))


def measure_parts(image, min_area=20, threshold=None, dark=False):
    """The parts of an image that are brighter than a threshold, or darker, with their measures.

    Without a threshold, NuvGetOtsuThreshold chooses it.
    """
    image = to_gray(image)
    if threshold is None:
        threshold = single("NuvGetOtsuThreshold")(single("NuvGetHistogram")(image)) + 1
    binary = single("NuvThreshold")(image, threshold)
    if dark:
        binary = 255 - binary
    found = single("NuvGetContours")(binary, 0, min_area, 0).result
    parts = []
    for c in found:
        if not c.isOuter or not c.ChainCode.size:
            continue
        rect = single("NuvContourRect")(c.x, c.y, c.ChainCode)
        centre = single("NuvContourCenter")(c.x, c.y, c.ChainCode)
        parts.append(Part(c.x, c.y, rect.X1, rect.Y1, rect.X2, rect.Y2, centre.X, centre.Y, c.area, c.perimeter,
                          c.ChainCode))
    return Outlined("parts", parts, _dtype(Part))


def imread(path):
    """The image of a BMP file of 8 or 24 bits. Raises OSError if it cannot be read."""
    with open(path, "rb") as file:
        head = file.read(30)
    bits = int.from_bytes(head[28:30], "little") if head[:2] == b"BM" and len(head) == 30 else 0
    if bits not in (8, 24):
        raise OSError(f"{os.fspath(path)} is not a BMP file of 8 or 24 bits")
    image = single(f"NuvRead{bits}BitBmpFile2Img")(path).result
    if image is None:
        raise OSError(f"{os.fspath(path)} is damaged, or memory is missing")
    return image


def imwrite(path, image):
    """Writes a gray or colour image to a BMP file. Raises OSError if it cannot be written."""
    image = values.image("imwrite", "image", image, 0)
    name = "NuvWrite8BitImg2BmpFile" if image.ndim == 2 else "NuvWrite24BitImg2BmpFile"
    if not single(name)(image, path):
        raise OSError(f"{os.fspath(path)} cannot be written")
