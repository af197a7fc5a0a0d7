"""What the library hands over as linked lists and as memory of its detectors."""

import collections
import ctypes
import weakref

import numpy

from . import _values as values
from ._library import c_function, services


class CContour(ctypes.Structure):
    pass


CContour._fields_ = [
    ("isOuter", ctypes.c_bool), ("area", ctypes.c_int32), ("perimeter", ctypes.c_int32), ("x", ctypes.c_int32),
    ("y", ctypes.c_int32), ("N", ctypes.c_int32), ("pChainCode", ctypes.c_void_p),
    *((f"reserved{i}", ctypes.c_int32) for i in range(1, 7)), ("pNext", ctypes.POINTER(CContour))]


class CRegion(ctypes.Structure):
    pass


CRegion._fields_ = [
    ("x0", ctypes.c_int32), ("y0", ctypes.c_int32), ("N", ctypes.c_int32), ("pChainCode", ctypes.c_void_p),
    *((name, ctypes.c_int32) for name in ("area", "perimeter", "gry", "sameLevelParentID", "ID", "parentID",
                                          "curArea")), ("next", ctypes.POINTER(CRegion))]

Contour = collections.namedtuple("Contour", "isOuter area perimeter x y ChainCode")
Contour.__repr__ = values.record_repr
Contour.__doc__ = "A contour: its measures, its start, and its chain as an array of codes."
Region = collections.namedtuple("Region", "x0 y0 ChainCode area perimeter gry ID parentID curArea")
Region.__repr__ = values.record_repr
Region.__doc__ = "A region of a segmentation: the start and the chain of its contour, its measures and its parent."


def _codes(record):
    if not record.N:
        return numpy.zeros(0, values.U1)
    return numpy.frombuffer(ctypes.string_at(record.pChainCode, record.N), values.U1)


def _release(name, address):
    c_function(name)(address)


class RecordList(collections.abc.Sequence):
    """Records that the library made. The memory of the library is freed with the list."""

    def __init__(self, address):
        self.address = address or 0
        self._end = weakref.finalize(self, _release, self._free, self.address)
        self._records = []
        record = ctypes.cast(self.address, ctypes.POINTER(self._c))
        while record:
            self._records.append(self._read(record.contents))
            record = getattr(record.contents, self._next)

    def __len__(self):
        return len(self._records)

    def __getitem__(self, index):
        return self._records[index]

    def __repr__(self):
        return f"<{type(self).__name__} of {len(self)}>"

    def release(self):
        """Frees the memory of the library now. The records stay."""
        self._end()

    def give_up(self):
        """The address of the list, which the caller then owns."""
        if not self._end.detach():
            raise ValueError(f"{type(self).__name__}: the list must hold memory, but it was released")
        return self.address


class ContourList(RecordList):
    """The contours that NuvGetContours found."""

    _c, _next, _free = CContour, "pNext", "NuvFreeContours"

    @staticmethod
    def _read(c):
        return Contour(c.isOuter, c.area, c.perimeter, c.x, c.y, _codes(c))


class RegionList(RecordList):
    """The regions that NuvMergeSplit found."""

    _c, _next, _free = CRegion, "next", "NuvFreeRegionStruct"

    @staticmethod
    def _read(r):
        return Region(r.x0, r.y0, _codes(r), r.area, r.perimeter, r.gry, r.ID, r.parentID, r.curArea)


Contours = collections.namedtuple("NuvGetContoursResults", "result BinImg")
Regions = collections.namedtuple("NuvMergeSplitResults", "result GryImg")
CodeLine = collections.namedtuple("NuvImgChainLines_GetNxtCodeLineResults", "result X Y")


def _made(name, kind, results, img, img_name, numbers, work_name, work_size, out):
    pixels = values.image(name, img_name, img, 2)
    out = None if out is None else values.given(name, out, (img_name,), {img_name: pixels})
    given = {} if out is None else out
    result = values.given_array(name, given, img_name, pixels.shape, values.U1)
    if result is not pixels:
        result[...] = pixels
    work = values.given_array(name, given, work_name, (work_size * pixels.size,), values.U1)
    height, width = pixels.shape
    address = c_function(name)(result.ctypes.data, work.ctypes.data, width, height, *numbers)
    return results(kind(address), result)


def _integer(name, field, value):
    return values.integer(name, field, value, -2**31, 2**31 - 1)


def NuvGetContours(BinImg, minPerimeter, minArea, mode, *, out=None):
    name = "NuvGetContours"
    numbers = [_integer(name, "minPerimeter", minPerimeter), _integer(name, "minArea", minArea),
               _integer(name, "mode", mode)]
    return _made(name, ContourList, Contours, BinImg, "BinImg", numbers, "ChainCode", 1, out)


def NuvMergeSplit(GryImg, minArea, minGry, ratio, *, out=None):
    name = "NuvMergeSplit"
    numbers = [_integer(name, "minArea", minArea), _integer(name, "minGry", minGry), values.real(name, "ratio", ratio)]
    return _made(name, RegionList, Regions, GryImg, "GryImg", numbers, "TmpImg", 2, out)


def _freed(name, field, value, kind):
    if value is None:
        return
    if not isinstance(value, kind):
        raise values.refused(name, field, f"None or a {kind.__name__}", value, TypeError)
    value.release()


def NuvFreeContours(Contours):
    _freed("NuvFreeContours", "Contours", Contours, ContourList)


def NuvFreeRegionStruct(Region):
    _freed("NuvFreeRegionStruct", "Region", Region, RegionList)


def NuvImgChainLines_GetNxtCodeLine():
    x, y, n = ctypes.POINTER(ctypes.c_int32)(), ctypes.POINTER(ctypes.c_int32)(), ctypes.c_int32()
    with services.lock:
        result = c_function("NuvImgChainLines_GetNxtCodeLine")(
            ctypes.byref(x), ctypes.byref(y), ctypes.byref(n))
        points = [numpy.frombuffer(ctypes.string_at(p, 4 * n.value), "i4") if result and n.value > 0 else
                  numpy.zeros(0, "i4") for p in (x, y)]
    return CodeLine(result, *points)


def NuvImgChainLines_GetLines():
    with services.lock:
        address = c_function("NuvImgChainLines_GetLines")()
        if not address:
            return None
        size = services.lines * values.SEGMENT.itemsize
        return numpy.frombuffer(ctypes.string_at(address, size), values.SEGMENT)
