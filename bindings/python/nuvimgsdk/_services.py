"""The detectors and the list of files as objects.

The library has one detector of each kind. An object holds its settings, sets the detector up for each call under a
lock, and keeps what the call found. Objects therefore do not disturb each other, on whatever thread they are used.
"""

import collections.abc
import os

import numpy

from . import _values as values
from ._by_name import single
from ._library import services

HoughLine = collections.namedtuple("HoughLine", "strength A B C Thro Theta")
HoughLine.__doc__ = "A line A*x + B*y + C = 0, its Hough form, and its strength in points."

ChainLinesFound = collections.namedtuple("ChainLinesFound", "segments points")
ChainLinesFound.__doc__ = "The fitted segments as a structured array, and the points of each line as an array (n, 2)."
ChainLinesFound.__repr__ = lambda found: f"<{len(found.segments)} segments, {len(found.points)} lines of points>"


class ChainLines:
    """The chain-line detector, for images of up to width*height pixels.

    ChainLines(width, height).detect(image) returns ChainLinesFound(segments, points). NuvImgChainLines_Initialize
    documents the settings.
    """

    def __init__(self, width, height, minStraightness=0.9, maxDeviation=1.0, minLength=12, grdThreshold=10,
                 maxLines=10000):
        self._settings = (width, height, minStraightness, maxDeviation, minLength, grdThreshold, maxLines)
        for name, size in (("width", width), ("height", height)):
            values.integer("ChainLines", name, size, 1, values.MOST)
        self._pixels = width * height
        self._set_up()

    def __repr__(self):
        return f"ChainLines{self._settings}"

    def _set_up(self):
        if not single("NuvImgChainLines_Initialize")(*self._settings):
            raise MemoryError(f"ChainLines: no memory for images of {self._settings[0]}x{self._settings[1]}")

    def detect(self, image, fit=True):
        """Finds the lines of a gray image. Without a fit there are no segments."""
        image = values.image("ChainLines.detect", "image", image, 2)
        if image.size > self._pixels:
            raise values.refused("ChainLines.detect", "image", f"of at most {self._pixels} pixels", image)
        with services.lock:
            self._set_up()
            count = single("NuvImgChainLines_DoGryImg")(image, bool(fit))
            points = []
            for _ in range(count):
                line = single("NuvImgChainLines_GetNxtCodeLine")()
                points.append(numpy.stack([line.X, line.Y], axis=1))
            segments = single("NuvImgChainLines_GetLines")()
        return ChainLinesFound(numpy.zeros(0, values.SEGMENT) if segments is None else segments, points)

    def panels(self, image, fit=True):
        """The six panels in which NuvImgChainLines_Debug shows a detection, as an array (6, height, width)."""
        with services.lock:
            self.detect(image, fit)
            return single("NuvImgChainLines_Debug")().ResImg


class HoughLines:
    """The Hough detector, for points within an extent of width by height."""

    def __init__(self, width, height):
        for name, size in (("width", width), ("height", height)):
            values.integer("HoughLines", name, size, 1, 2**15)
        self._size = (width, height)

    def __repr__(self):
        return f"HoughLines{self._size}"

    def detect(self, x, y, most=1, theta=(0, 180), apart=(10, 10), least=2):
        """The strongest lines of the points, the strongest first, as a list of HoughLine.

        most is the greatest number of lines, theta the range of degrees, apart the least differences of Thro and
        of Theta between lines, and least the least strength.
        """
        found = []
        with services.lock:
            if not single("NuvHoughLines_Initialize")(*self._size):
                raise MemoryError(f"HoughLines: no memory for {self._size[0]}x{self._size[1]}")
            line = single("NuvHoughLines_HT")(x, y, *theta)
            while line.result >= max(least, 1) and len(found) < most:
                found.append(HoughLine(line.result, line.A, line.B, line.C, line.Thro, line.Theta))
                line = single("NuvHoughLines_GetNextLine")(*apart)
        return found


class SequenceFiles(collections.abc.Sequence):
    """The lines of a list of files, each ended by carriage return and line feed."""

    def __init__(self, path):
        self._lines = []
        with open(path, "rb"):  # states why a file cannot be read
            pass
        with services.lock:
            if not single("NuvSequenceFiles_Initialize")(path):
                raise OSError(f"SequenceFiles: {os.fsdecode(path)} cannot be read")
            while True:
                line = single("NuvSequenceFiles_GetFileName")(len(self._lines), 1 << 16)
                if not line.result:
                    break
                self._lines.append(line.FileName)

    def __len__(self):
        return len(self._lines)

    def __getitem__(self, index):
        return self._lines[index]

    def __repr__(self):
        return f"<SequenceFiles of {len(self)}>"
