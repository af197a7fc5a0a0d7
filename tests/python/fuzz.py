#!/usr/bin/env python3
"""Calls every function with random arguments, right and wrong ones. Usage: fuzz.py SEED ROUNDS [LOG]

Each call is named before it is made, on standard output or in the file LOG, which keeps only the newest one. So the
last line names the call in which the process ended, if it did.
"""

import os
import sys
import tempfile

import numpy

import conftest  # sets the path of the package
import nuvimgsdk as nuv
from nuvimgsdk import _by_name, _library, _machine, _values

INTEGERS = [-2**31, -65536, -2, -1, 0, 1, 2, 3, 5, 8, 47, 63, 64, 255, 256, 65536, 2**31 - 1]
REALS = [-1e300, -1.0, -0.0, 0.0, 0.3, 1.0, 45.0, 1e300, numpy.inf, -numpy.inf, numpy.nan]
LENGTHS = [0, 1, 2, 9, 60, 5000]
SHAPES = [(0, 0), (0, 5), (5, 0), (1, 1), (1, 9), (9, 1), (3, 3), (17, 33), (48, 64)]


def fitting(rng, shape):
    """Numbers that fit an image of the shape, by the names of arguments, and the length of lists."""
    height, width = shape
    x1, x2, x, cx = (int(n) for n in rng.integers(0, max(width, 1), 4))
    y1, y2, y, cy = (int(n) for n in rng.integers(0, max(height, 1), 4))
    return {"width": width, "height": height, "channel": int(rng.integers(3)), "x1": min(x1, x2), "x2": max(x1, x2),
            "y1": min(y1, y2), "y2": max(y1, y2), "x": x, "y": y, "cx": cx, "cy": cy, "rx": min(cx, width - 1 - cx),
            "ry": min(cy, height - 1 - cy), "rows": height, "columns": width, "N": int(rng.choice(LENGTHS)),
            "bRGB": bool(rng.integers(2))}


def number(rng, a, shape, fits):
    if a.cname in fits and rng.random() < 0.95:
        return fits[a.cname]
    if a.base == "bool":
        return bool(rng.integers(2))
    if a.base == "double":
        return float(rng.choice(REALS))
    if a.base == "tagRECT":
        return [int(rng.integers(-1, 50)) for _ in range(4)]
    if a.base == "uint8_t":
        return int(rng.integers(0, 256))
    if rng.random() < 0.7 or a.cname in ("N", "maxN", "maxLength", "perimeter", "size"):
        return int(rng.integers(-2, max(shape) + 3))
    return int(rng.choice(INTEGERS))


def pixels(rng, size):
    style = rng.random()
    image = rng.integers(0, 256, size, "u1")
    return image if style < 0.5 else (image > 128).astype("u1") * 255 if style < 0.9 else image * 0


def disguised(rng, data):
    """The same numbers in other memory: with gaps, backwards, by columns, read only."""
    style = rng.integers(8)
    if style == 0:
        return numpy.repeat(data, 2, axis=0)[::2]
    if style == 1:
        return data[::-1].copy()[::-1]
    if style == 2:
        return numpy.asfortranarray(data)
    if style == 3:
        data.flags.writeable = False
    return data


def value(rng, a, shape, fits):
    if rng.random() < 0.01:
        return rng.choice([None, "text", 3.5, -1])
    if a.role in ("number", "moved"):
        return number(rng, a, shape, fits)
    if a.role == "text":
        return bytes(rng.integers(1, 256, rng.integers(0, 20), "u1"))
    if rng.random() < 0.03:
        shape = SHAPES[rng.integers(len(SHAPES))]
    if a.shape is not None:
        colour = len(a.shape) == 3 and (a.shape[2] in (3, 4) or fits.get("bRGB", rng.integers(2)))
        channels = a.shape[2] if colour and a.shape[2] in (3, 4) else 3
        return disguised(rng, pixels(rng, (*shape, channels) if colour else shape))
    if a.base not in _values.DTYPES:
        return None
    count = int(rng.choice(LENGTHS))
    if rng.random() < 0.95:
        try:
            count = max(eval(_machine.expression(a.count), {}, fits), 0)
        except NameError:  # a number that another list knows
            count = fits["N"]
    if a.name == "ChainCode":
        return rng.integers(0, 9 if rng.random() < 0.1 else 8, count, "u1")
    if a.base == "double":
        return disguised(rng, rng.normal(0, 1e3, count))
    if a.base in ("RLX", "RLY"):
        record = _values.DTYPES[a.base]
        return rng.integers(-5, 70, count * record.itemsize // 4, "i4").view(record)
    if a.base == "bool":
        return rng.integers(0, 2, count).astype(bool)
    if a.base == "uint8_t":
        return disguised(rng, rng.integers(0, 256, count, "u1"))
    limit = int(rng.choice([3, 64, 1000, 2**31 - 1]))
    return disguised(rng, rng.integers(-limit, limit, count))


def room(rng, a, arguments, shape):
    """An array for `out`, in most cases one that the wrapper can take."""
    draw = rng.random()
    if draw < 0.1:
        return rng.choice([None, "text", 3.5])
    if draw < 0.2:
        return arguments.get(a.name)
    dtype = _values.DTYPES.get(a.base, _values.U1)
    if a.role == "written":
        return numpy.zeros(int(rng.choice([0, 1, 40, 3000])), _values.U1)
    if a.role in ("scalar", "moved"):
        return numpy.zeros(int(rng.choice([0, 1, 1, 1, 2])), dtype)
    if a.shape is not None:
        return disguised(rng, numpy.zeros((*shape, 3) if len(a.shape) == 3 and rng.integers(2) else shape, dtype))
    return numpy.zeros(int(a.count) if a.count.isdigit() else int(rng.choice([0, 1, 9, 60, max(shape), 5000])), dtype)


def play(rng, function):
    """Calls a function by its own name or by that of its overloads."""
    shape = SHAPES[rng.integers(len(SHAPES))] if rng.random() < 0.3 else (48, 64)
    plan = function.plan
    fits = fitting(rng, shape) if rng.random() < 0.9 else {"N": 9}
    arguments = {a.name: value(rng, a, shape, fits) for a in plan.parameters}
    if plan.outputs and rng.random() < 0.3:
        out = {a.name: room(rng, a, arguments, shape) for a in plan.outputs if rng.random() < 0.8}
        return function(**arguments, out=list(out.values()) if rng.random() < 0.2 else out)
    if rng.random() < 0.2:
        return getattr(nuv, plan.function["name"])(*arguments.values())
    return function(**arguments)


def settings(rng, most):
    """Random numbers for a detector or a job."""
    numbers = [int(rng.choice(INTEGERS)), int(rng.integers(0, 70)), float(rng.choice(REALS))]
    return [numbers[rng.integers(3)] for _ in range(rng.integers(0, most + 1))]


def play_objects(rng):
    """Uses detectors and jobs."""
    image = pixels(rng, SHAPES[rng.integers(len(SHAPES))] if rng.random() < 0.3 else (48, 64))
    # Sizes stay small, because the detectors allocate memory for them.
    sizes = [int(rng.integers(-1, 99)) for _ in range(2)]
    style = rng.integers(5)
    if style == 0:
        detector = nuv.ChainLines(*sizes, *settings(rng, 5))
        return detector.panels(image) if rng.integers(2) else detector.detect(image, bool(rng.integers(2)))
    if style == 1:
        x, y = rng.integers(-5, 105, (2, rng.integers(0, 99)))
        return nuv.HoughLines(*sizes).detect(x, y, int(rng.integers(-1, 9)), sorted(settings(rng, 2)) or (0, 180))
    job = (nuv.find_lines, nuv.find_contours, nuv.segment, nuv.measure_parts)[rng.integers(4)]
    found = job(image, *settings(rng, 3))
    repr(found), found.array(), found.to_dicts()
    return found.draw(image if rng.integers(2) else image[:20, :20])


def main():
    seed, rounds = int(sys.argv[1]), int(sys.argv[2])
    log = open(sys.argv[3], "w", encoding="ascii") if len(sys.argv) > 3 else None
    os.chdir(tempfile.mkdtemp())
    _values._available = lambda: 0  # refuses results of more than 64 MiB, which take long
    made = refused = 0
    for name in [*sorted(_library.functions), "objects"]:
        function = None if name == "objects" else _by_name.single(name)
        for k in range(rounds):
            line = f"{name} {seed} {k}"
            if log:
                log.seek(0)
                log.truncate()
            print(line, file=log or sys.stdout, flush=True)
            rng = numpy.random.default_rng([seed, sum(name.encode()), k])
            try:
                play(rng, function) if function else play_objects(rng)
                made += 1
            except (TypeError, ValueError, MemoryError):
                refused += 1
            except BaseException:
                print(f"{line} raised:", file=sys.stderr)
                raise
    print(f"{made} calls made, {refused} refused")


if __name__ == "__main__":
    main()
