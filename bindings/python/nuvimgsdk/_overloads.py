"""One Python function for the overloads that their arguments tell apart."""

import functools
import inspect

import numpy

from . import _documents as documents
from . import _machine as machine
from ._library import functions
from ._plan import plan

_BY_NAME = {}
for _function in functions.values():
    _BY_NAME.setdefault(_function["name"], []).append(_function)


def _class(a):
    """What tells an argument from others: its place holds an image, a list, a text or a number."""
    if a.role == "text":
        return "text"
    if a.role in ("number", "moved"):
        return "number"
    if a.shape is not None:
        return {2: "gray", 3: "colour" if a.shape[-1] == 3 else "image"}[len(a.shape)]
    return "list"


def _classes(plan_):
    return [_class(a) for a in plan_.parameters]


def _required(plan_):
    return sum(a.default is None for a in plan_.parameters)


def _differ(a, b):
    first, second = _classes(a), _classes(b)
    if len(first) < _required(b) or len(second) < _required(a):
        return True
    return any(x != y and "image" not in (x, y) for x, y in zip(first, second))


@functools.lru_cache(maxsize=None)
def choices(name):
    """The plans of the overloads that one Python function of this name stands for, the plain one first."""
    chosen = []
    for function in sorted(_BY_NAME.get(name, ()), key=lambda f: f["plain_name"] != name):
        candidate = plan(function)
        if all(_differ(candidate, other) for other in chosen):
            chosen.append(candidate)
    return tuple(chosen)


def _is_of(value, kind):
    if kind == "text":
        return isinstance(value, (str, bytes))
    if kind == "number":
        return not isinstance(value, (str, bytes, list, numpy.ndarray))
    if kind == "list":
        return isinstance(value, (list, tuple)) or isinstance(value, numpy.ndarray) and value.ndim == 1
    return isinstance(value, numpy.ndarray) and (kind == "image" or value.ndim == {"gray": 2, "colour": 3}[kind])


def dispatcher(name, wrapper):
    """A function that calls the overload which the arguments fit."""
    plans = choices(name)
    wrappers = [wrapper(p.name) for p in plans]
    kinds = [_classes(p) for p in plans]
    signatures = [inspect.signature(w) for w in wrappers]

    def call(*arguments, **keywords):
        numbers_fit = []
        for w, kind, s in zip(wrappers, kinds, signatures):
            try:
                bound = s.bind(*arguments, **keywords).arguments
            except TypeError:
                continue
            values = [bound.get(parameter) for parameter in list(s.parameters)[:len(kind)]]
            if all(v is None or _is_of(v, k) for v, k in zip(values, kind)):
                return w(*arguments, **keywords)
            numbers_fit.append(w)
        if len(numbers_fit) == 1:
            return numbers_fit[0](*arguments, **keywords)  # which states what is wrong
        raise TypeError(f"{name}: the arguments must be those of one overload: " +
                        "; ".join(f"{p.name}({machine.signature(p)})" for p in plans))

    call.__name__ = call.__qualname__ = name
    call.__module__ = "nuvimgsdk"
    call.__doc__ = "\n".join(["One of these functions, which the arguments tell apart:", "",
                              *(f"    {documents.head(p, machine.signature(p))}" for p in plans), "",
                              machine.document(*plans)])
    call.overloads = tuple(wrappers)
    return call
