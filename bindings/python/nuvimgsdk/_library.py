"""The C library, the description of its functions, and what its detectors keep between calls."""

import ctypes
import json
import os
import pathlib
import threading

import numpy

from . import _values as values

_HERE = pathlib.Path(__file__).resolve().parent

with open(_HERE / "boundary.json", encoding="utf-8") as _file:
    _description = json.load(_file)
version = _description["version"]
functions = {f["plain_name"]: f for f in _description["functions"]}
sections = {tuple(g["titles"]): g["doc"]["text"] for g in _description["groups"]}

C_TYPES = {"int32_t": ctypes.c_int32, "uint32_t": ctypes.c_uint32, "uint8_t": ctypes.c_uint8,
           "double": ctypes.c_double, "bool": ctypes.c_bool, "tagRECT": values.CRect}


def _path():
    """The C library: the one that NUVIMGSDK_LIBRARY names, the one in the package, or that of the system."""
    given = os.environ.get("NUVIMGSDK_LIBRARY")
    if given is not None:
        return given
    inside = sorted(_HERE.glob("libnuvimgsdk_c.so*"))
    major, minor = version.split(".")[:2]
    return str(inside[0]) if inside else "libnuvimgsdk_c.so." + (f"0.{minor}" if major == "0" else major)


try:
    _library = ctypes.CDLL(_path())
except OSError as _error:
    raise ImportError(f"nuvimgsdk cannot load its library: {_error}") from None
_library.nuv_free.argtypes = [ctypes.c_void_p]
_library.nuv_free.restype = None


def _argument_type(a):
    if not a["type"].endswith("*"):
        return C_TYPES[a["type"]]
    is_text = a["type"].endswith("char*") and a["direction"] == "in"
    return ctypes.c_char_p if is_text else ctypes.c_void_p


def result_type(function):
    """The type of a result for ctypes. Pointers are addresses."""
    return None if function["result"] == "void" else C_TYPES.get(function["result"], ctypes.c_void_p)


def c_function(name):
    """The function of the C library, with the types of its arguments."""
    function = functions[name]
    c = _library[name]
    c.argtypes = [_argument_type(a) for a in function["arguments"]]
    c.restype = result_type(function)
    return c


def taken_image(address, shape):
    """An image that the library handed over, copied to memory of numpy. None without an image."""
    if not address:
        return None
    size = 1
    for side in shape:
        size *= side
    try:
        return numpy.frombuffer(ctypes.string_at(address, size), values.U1).reshape(shape).copy()
    finally:
        _library.nuv_free(address)


class _Services:
    """The library has one detector of each kind. The lock guards them all."""

    lock = threading.RLock()
    image = None  # of the last detection of chain lines; NuvImgChainLines_Debug reads it again
    lines = 0     # of that detection that have segments


services = _Services()
