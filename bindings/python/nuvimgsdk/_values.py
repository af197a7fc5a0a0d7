"""Values that pass the boundary: checks of numbers, arrays, rectangles and texts, and the records."""

import collections
import ctypes
import operator
import os

import numpy

Rect = collections.namedtuple("Rect", "left top right bottom")
Rect.__doc__ = "A rectangle. All ends are inclusive."

RLX = numpy.dtype([("y", "i4"), ("x1", "i4"), ("x2", "i4"), ("ID", "i4")])
RLY = numpy.dtype([("x", "i4"), ("y1", "i4"), ("y2", "i4")])
SEGMENT = numpy.dtype([("x1", "i4"), ("y1", "i4"), ("x2", "i4"), ("y2", "i4"), ("A", "f8"), ("B", "f8"), ("C", "f8")])

DTYPES = {
    "uint8_t": numpy.dtype("u1"), "int32_t": numpy.dtype("i4"), "uint32_t": numpy.dtype("u4"),
    "double": numpy.dtype("f8"), "bool": numpy.dtype("?"), "RLX": RLX, "RLY": RLY}

MOST = 2**31 - 1  # elements of an array: the library counts them by int32_t


class CRect(ctypes.Structure):
    _fields_ = [(name, ctypes.c_int32) for name in Rect._fields]

    @property
    def value(self):
        return Rect(self.left, self.top, self.right, self.bottom)


def record_repr(record):
    """A record in one line. Its chain prints as a number of codes."""
    fields = (f"{n}=<{v.size} codes>" if isinstance(v, numpy.ndarray) else f"{n}={v!r}"
              for n, v in zip(record._fields, record))
    return f"{type(record).__name__}({', '.join(fields)})"


def described(value):
    """What a value is, for messages."""
    if isinstance(value, numpy.ndarray):
        return f"an array of {value.dtype} with shape {value.shape}"
    if value is None:
        return "None"
    if hasattr(value, "_fields"):
        return f"a {type(value).__name__}, which has the fields {', '.join(value._fields)}"
    text = repr(value)
    return f"{type(value).__name__} {text if len(text) < 60 else text[:56] + '...'}"


def refused(function, name, demand, value, error=ValueError):
    return error(f"{function}: {name} must be {demand}, not {described(value)}")


def integer(function, name, value, least, most):
    try:
        number = operator.index(value)
    except TypeError:
        raise refused(function, name, "an integer", value, TypeError) from None
    if not least <= number <= most:
        raise refused(function, name, f"from {least} to {most}", value)
    return number


def real(function, name, value):
    if isinstance(value, (str, bytes, bytearray)):
        raise refused(function, name, "a number", value, TypeError)
    try:
        return float(value)
    except OverflowError:
        raise refused(function, name, "within the range of double", value) from None
    except (TypeError, ValueError):
        raise refused(function, name, "a number", value, TypeError) from None


def flag(function, name, value):
    if isinstance(value, (bool, numpy.bool_)) or value.__class__ is int and value in (0, 1):
        return bool(value)
    raise refused(function, name, "True or False", value, TypeError)


def rectangle(function, name, value):
    try:
        fields = tuple(value)
    except TypeError:
        fields = ()
    if len(fields) != 4:
        raise refused(function, name, "four integers: left, top, right, bottom", value, TypeError)
    return Rect(*(integer(function, f"{name}.{field}", number, -MOST - 1, MOST)
                  for field, number in zip(Rect._fields, fields)))


def colour(function, name, value):
    try:
        parts = tuple(value)
    except TypeError:
        parts = ()
    if len(parts) != 3:
        raise refused(function, name, "three integers: blue, green, red", value, TypeError)
    return tuple(integer(function, name, part, 0, 255) for part in parts)


def text(function, name, value, coding):
    """The bytes of a text. A str is encoded, as a path if no coding is given."""
    if isinstance(value, (str, os.PathLike)):
        try:
            value = os.fsencode(value) if coding is None else value.encode(coding)
        except (UnicodeError, AttributeError, TypeError):
            raise refused(function, name, f"a text of {coding or 'the file system'} characters", value) from None
    if not isinstance(value, bytes):
        raise refused(function, name, "str or bytes", value, TypeError)
    if b"\0" in value:
        raise refused(function, name, "a text without zero bytes", value)
    return value


U1 = DTYPES["uint8_t"]
KINDS = {2: "a gray image: an array of uint8 with shape (height, width)",
         3: "a colour image: an array of uint8 with shape (height, width, 3)",
         4: "an array of uint8 with shape (height, width, 4)",
         0: "a gray or colour image: an array of uint8 with shape (height, width) or (height, width, 3)"}


def image(function, name, value, kind):
    """A contiguous image. The kind is a key of KINDS."""
    if not isinstance(value, numpy.ndarray):
        raise refused(function, name, KINDS[kind], value, TypeError)
    if value.dtype != U1:
        demand = KINDS[kind] + (" (astype('u1') * 255 makes one)" if value.dtype == bool else "")
        raise refused(function, name, demand, value, TypeError)
    shape = value.shape
    if kind == 2:
        fits = len(shape) == 2
    elif kind == 0:
        fits = len(shape) == 2 or len(shape) == 3 and shape[2] == 3
    else:
        fits = len(shape) == 3 and shape[2] == kind
    if not fits:
        raise refused(function, name, KINDS[kind], value)
    if value.size > MOST or max(shape) > MOST:
        raise refused(function, name, f"of at most {MOST} bytes", value)
    return value if value.flags.c_contiguous and value.__class__ is numpy.ndarray else \
        numpy.array(value, order="C", subok=False)


def array(function, name, value, dtype, any_shape=False):
    """A contiguous array. Other numbers are converted if all of them fit, except bytes."""
    what = f"a list of {f'{dtype} numbers' if dtype.names is None else 'records with ' + ', '.join(dtype.names)}"
    try:
        data = numpy.asarray(value)
    except (ValueError, TypeError):
        raise refused(function, name, what, value, TypeError) from None
    if data.dtype != dtype:
        data = _converted(function, name, value, data, dtype, what)
    if data.ndim != 1 and not any_shape:
        raise refused(function, name, what + " in one dimension", value)
    if data.size > MOST:
        raise refused(function, name, f"of at most {MOST} elements", value)
    return numpy.ascontiguousarray(data) if data.ndim else data.reshape(1)


def _converted(function, name, value, data, dtype, what):
    if dtype.names is not None:
        if data.size == 0 and not isinstance(value, numpy.ndarray):
            return numpy.empty(0, dtype)
        if not isinstance(value, numpy.ndarray):
            try:
                return numpy.array([tuple(record) for record in value], dtype)
            except (ValueError, TypeError, OverflowError):
                pass
        raise refused(function, name, what, value, TypeError)
    if data.size == 0 and not isinstance(value, numpy.ndarray):
        return numpy.empty(data.shape, dtype)
    if isinstance(value, numpy.ndarray) and dtype == U1 or data.dtype.kind not in {"b": "b", "f": "iuf"}.get(
            dtype.kind, "iu"):
        raise refused(function, name, what, value, TypeError)
    if dtype.kind in "iu":
        limits = numpy.iinfo(dtype)
        if data.size and not (limits.min <= data.min() and data.max() <= limits.max):
            raise refused(function, name, f"{what} from {limits.min} to {limits.max}", value)
    return data.astype(dtype)


def chain(function, name, codes):
    """Checks codes of a chain, which are array indices in the library."""
    if codes.size and codes.max() > 7:
        raise refused(function, name, "a chain with codes from 0 to 7", codes.max().item())


_DX = numpy.array([1, 1, 0, -1, -1, -1, 0, 1], "i8")
_DY = numpy.array([0, -1, -1, -1, 0, 1, 1, 1], "i8")


def chain_inside(function, x, y, codes, columns, rows):
    """Checks that a chain stays in an image. columns or rows is None if only the other one matters."""
    for name, start, steps, size in (("x", x, _DX, columns), ("y", y, _DY, rows)):
        if size is None:
            continue
        places = numpy.cumsum(steps[codes])
        least = start + (min(0, places.min().item()) if places.size else 0)
        most = start + (max(0, places.max().item()) if places.size else 0)
        if least < 0 or most >= size:
            raise ValueError(f"{function}: the chain must stay inside the image, not reach {name} = "
                             f"{least if least < 0 else most} where the image has 0 to {size - 1}")


def chain_in_range(function, x, y, codes):
    """Checks that coordinates of a chain without an image are numbers that the library can count with."""
    for name, start in (("x", x), ("y", y)):
        if start is not None and abs(start) > 2**30 - codes.size:
            raise refused(function, name, "a coordinate within 2^30 minus the length of the chain", start)


def region(function, x1, x2, y1, y2, columns, rows):
    """Checks that a region lies in an image. It may be empty."""
    if 0 <= x1 <= x2 < columns and 0 <= y1 <= y2 < rows:
        return
    for name, first, last, size in (("x", x1, x2, columns), ("y", y1, y2, rows)):
        if not (0 <= first < max(size, 1) and first - 1 <= last < size):
            where = f"lie in 0..{size - 1}, with {name}1 first" if size > 0 else "be 0 and -1 in an empty image"
            raise ValueError(f"{function}: {name}1 and {name}2 must {where}, not be {first} and {last}")


def has_clear_border(pixels):
    return all(side.max() < 2 for side in (pixels[0], pixels[-1], pixels[:, 0], pixels[:, -1]))


def is_inside(r, columns, rows):
    return (r.left >= 0 and r.top >= 0 and r.right < columns and r.bottom < rows and r.left <= r.right + 1
            and r.top <= r.bottom + 1)


def fits(function, name, data, count, exact):
    """Checks the number of elements of an array."""
    count = max(count, 0)
    if data.size != count if exact else data.size < count:
        elements = f"{count} element{'' if count == 1 else 's'}"
        raise refused(function, name, f"an array of {elements if exact else f'at least {elements}'}", data)


def shaped(function, name, data, shape, like):
    if data.shape != shape:
        raise refused(function, name, f"of shape {shape}, as {like} demands", data)


def rows_of(function, name, data, least):
    if data.shape[0] < least:
        raise refused(function, name, f"an image of at least {least} rows", data)


def results(function, shape, dtype):
    """New memory for results, which starts as 0."""
    shape = tuple(max(size, 0) for size in shape)
    size = 1
    for side in shape:
        size *= side
    if size > MOST:
        raise ValueError(f"{function}: the result must have at most {MOST} elements, not shape {shape}")
    if size * dtype.itemsize > 2**26 and size * dtype.itemsize > _available() // 4:
        raise MemoryError(f"{function}: a result of shape {shape} takes more than a quarter of the free memory")
    return numpy.zeros(shape, dtype)


def _available():
    """The free memory in bytes. Linux promises more memory than there is, and ends processes that use it."""
    try:
        with open("/proc/meminfo", encoding="ascii") as file:
            return next(int(line.split()[1]) * 1024 for line in file if line.startswith("MemAvailable:"))
    except (OSError, StopIteration):
        return 2**40


def given(function, out, fields, inputs):
    """The arrays of `out` by name. It is an array for a single result, a sequence or a dict."""
    if isinstance(out, numpy.ndarray):
        out = (out,)
    if not isinstance(out, dict):
        try:
            values = tuple(out)
        except TypeError:
            raise refused(function, "out", "an array, a sequence or a dict of arrays", out, TypeError) from None
        if len(values) > len(fields):
            raise refused(function, "out", f"at most {len(fields)} arrays: {', '.join(fields)}", out)
        out = dict(zip(fields, values))
    for name, data in out.items():
        if data is None:
            continue
        if not isinstance(data, numpy.ndarray):
            raise refused(function, f"out[{name!r}]", "an array", data, TypeError)
        for other, source in (*inputs.items(), *out.items()):
            if other != name and isinstance(source, numpy.ndarray) and numpy.may_share_memory(data, source):
                raise ValueError(f"{function}: out[{name!r}] must not share memory with {other}")
    return out


def given_array(function, out, name, shape, dtype):
    """The array that `out` has for a result, or new memory."""
    data = out.get(name)
    shape = tuple(max(size, 0) for size in shape)
    if data is None:
        return results(function, shape, dtype)
    if data.dtype != dtype or data.shape != shape or not data.flags.c_contiguous or not data.flags.writeable:
        raise refused_out(function, name, f"a contiguous, writeable array of {dtype} with shape {shape}", data)
    return data


def refused_out(function, name, demand, data):
    """The error for an array of `out`. It states what the description of an array does not."""
    lacks = [word for word, fits in (("contiguous", data.flags.c_contiguous), ("writeable", data.flags.writeable))
             if not fits]
    end = f" that is not {' and not '.join(lacks)}" if lacks else ""
    return ValueError(f"{function}: out[{name!r}] must be {demand}, not {described(data)}{end}")


def given_scalar(function, out, name, kind):
    data = out.get(name)
    if data is None:
        return kind()
    raw = numpy.dtype((numpy.void, ctypes.sizeof(kind))) if kind is CRect else numpy.dtype(kind)
    if data.dtype.itemsize * data.size != raw.itemsize or kind is not CRect and data.dtype != raw or \
            not data.flags.c_contiguous or not data.flags.writeable:
        raise refused_out(function, name, f"a writeable array of one {raw}", data)
    return kind.from_buffer(data)


def buffer(function, out, name, size):
    """Memory for a text."""
    size = max(size, 0)
    if size > MOST:
        raise ValueError(f"{function}: {name} must have at most {MOST} bytes, not {size}")
    data = None if out is None else out.get(name)
    if data is None:
        return ctypes.create_string_buffer(size) if size else (ctypes.c_char * 0)()
    if data.dtype != U1 or data.size < size or not data.flags.c_contiguous or not data.flags.writeable:
        raise refused_out(function, name, f"a contiguous, writeable array of {size} uint8", data)
    return (ctypes.c_char * size).from_buffer(data)


def with_tail(function, name, pixels, least, tail):
    """The pixels with the bytes after them that a function reads."""
    least = min(max(least, 0), pixels.shape[1])
    data = numpy.zeros(pixels.size + least, U1)
    data[:pixels.size] = pixels.ravel()
    if tail is not None:
        tail = array(function, "tail", tail, U1)
        if tail.size < least:
            raise refused(function, "tail", f"at least {least} bytes", tail)
        data[pixels.size:] = tail[:least]
    return data
