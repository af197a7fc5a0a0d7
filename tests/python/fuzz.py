#!/usr/bin/env python3
"""Calls every function with random arguments, right and wrong ones. Usage: fuzz.py SEED ROUNDS

The last line printed names the call in which the process ended, if it did.
"""

import os
import sys
import tempfile

import numpy

import conftest  # sets the path of the package
from nuvimgsdk import _by_name, _machine

INTEGERS = [-2**31, -65536, -2, -1, 0, 1, 2, 3, 5, 8, 47, 63, 64, 255, 256, 65536, 2**31 - 1]
SHAPES = [(0, 0), (0, 5), (5, 0), (1, 1), (1, 9), (9, 1), (3, 3), (17, 33), (48, 64)]


def number(rng, a, shape):
    if a.base == "bool":
        return bool(rng.integers(2))
    if a.base == "double":
        return float(rng.choice([-1e300, -1.0, -0.0, 0.0, 0.3, 1.0, 45.0, 1e300, numpy.inf, -numpy.inf, numpy.nan]))
    draw = rng.random()
    if a.base == "tagRECT":
        return [int(rng.integers(-1, 50)) for _ in range(4)]
    if a.base == "uint8_t":
        return int(rng.integers(0, 256))
    if draw < 0.7 or a.cname in ("N", "maxN", "maxLength", "perimeter", "size"):
        return int(rng.integers(-2, max(shape) + 3))
    return int(rng.choice(INTEGERS))


def value(rng, a, shape):
    if rng.random() < 0.01:
        return rng.choice([None, "text", 3.5, -1])
    if a.role in ("number", "moved"):
        return number(rng, a, shape)
    if a.role == "text":
        return bytes(rng.integers(1, 256, rng.integers(0, 20), "u1"))
    if rng.random() < 0.1:
        shape = SHAPES[rng.integers(len(SHAPES))]
    if a.shape is not None:
        colour = len(a.shape) == 3 and (a.shape[2] in (3, 4) or rng.integers(2))
        size = (*shape, a.shape[2] if a.shape[2] in (3, 4) else 3) if colour else shape
        style = rng.random()
        image = rng.integers(0, 256, size, "u1")
        return image if style < 0.5 else (image > 128).astype("u1") * 255 if style < 0.9 else image * 0
    count = 256 if a.count == "256" else 181 if a.count == "181" else int(rng.choice([0, 1, 2, 9, 60, 5000]))
    if "*" in a.count:
        count = shape[0] * shape[1] * (3 if "3/2" in a.count else 4) // 2
    if "ChainCode" == a.name:
        return rng.integers(0, 9 if rng.random() < 0.1 else 8, count, "u1")
    if a.base == "double":
        return rng.normal(0, 1e3, count)
    if a.base in ("RLX", "RLY"):
        return numpy.frombuffer(rng.integers(-5, 70, 4 * count, "i4").tobytes()[:count * (16 if a.base == "RLX" else 12)],
                                _machine.values.DTYPES[a.base])
    if a.base == "bool":
        return rng.integers(0, 2, count).astype(bool)
    if a.base == "uint8_t":
        return rng.integers(0, 256, count, "u1")
    limit = int(rng.choice([3, 64, 1000, 2**31 - 1]))
    return rng.integers(-limit, limit, count)


def main():
    seed, rounds = int(sys.argv[1]), int(sys.argv[2])
    os.chdir(tempfile.mkdtemp())
    log = open(os.path.join(os.getcwd(), "last"), "w") if len(sys.argv) > 3 else sys.stdout
    made = refused = 0
    for name in sorted(_machine.functions):
        function = _by_name.single(name)
        for k in range(rounds):
            rng = numpy.random.default_rng([seed, sum(name.encode()), k])
            shape = SHAPES[rng.integers(len(SHAPES))] if rng.random() < 0.3 else (48, 64)
            print(f"{name} {seed} {k}", file=log, flush=True)
            try:
                function(**{a.name: value(rng, a, shape) for a in function.plan.parameters})
                made += 1
            except (TypeError, ValueError, MemoryError):
                refused += 1
    print(f"{made} calls made, {refused} refused")


if __name__ == "__main__":
    main()
