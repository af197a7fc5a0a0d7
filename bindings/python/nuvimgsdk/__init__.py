"""Image processing over numpy arrays, defined to the bit.

Gray images are arrays of uint8 with shape (height, width), colour images have shape (height, width, 3) with blue,
green and red. In every argument x comes before y. Functions have their C++ names, take their arguments in C++ order
without those that an array knows, and return the C++ result followed by the outputs. help() of a function says more.
"""

from . import _by_name, _library
from ._jobs import (DarkRegion, Found, Line, Outline, Part, find_contours, find_lines, imread, imwrite, measure_parts,
                    segment, to_colour, to_gray)
from ._lists import Contour, ContourList, Region, RegionList
from ._services import ChainLines, HoughLines, SequenceFiles
from ._values import RLX, RLY, Rect, SEGMENT

__version__ = _library.version
__all__ = [
    "ChainLines", "Contour", "ContourList", "DarkRegion", "Found", "HoughLines", "Line", "Outline", "Part", "RLX",
    "RLY", "Rect", "Region", "RegionList", "SEGMENT", "SequenceFiles", "find_contours", "find_lines", "imread",
    "imwrite", "measure_parts", "segment", "to_colour", "to_gray", *_by_name.names]


def __getattr__(name):
    found = _by_name.function(name) or _by_name.results(name)
    if found is None:
        similar = _by_name.similar(name) if name.startswith("Nuv") else []
        hint = f". Is {' or '.join(similar)} meant?" if similar else ""
        raise AttributeError(f"module 'nuvimgsdk' has no attribute {name!r}{hint}")
    globals()[name] = found
    return found


def __dir__():
    return sorted({*globals(), *__all__})
