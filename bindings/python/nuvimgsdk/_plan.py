"""What each function looks like in Python, planned from its description: which arguments remain, which sizes the
arrays know, and what is returned."""

import collections
import re

from . import _contracts as contracts

# An argument as Python sees it: its names in C and in Python, the type of its elements, its role, the formula for their
# number, the formulas of its shape if it is an image, for a known number where it comes from, the source of a default,
# and for an image the number of bytes that are read after it. Roles:
#
#     number     a number, a bool or a rectangle
#     known      a number that an array knows; `source` is an expression for it
#     in         an array that is read
#     changed    an array of which a changed copy is returned
#     moved      one number that is changed: a number in, and a number out
#     result     an array that is returned
#     scalar     one number that is returned
#     work       work space
#     text       a text that is read
#     written    a text that is returned
Argument = collections.namedtuple("Argument", "cname name base role count shape source default tail")

# The parameters and the outputs are those of the arguments that Python passes and gets. fields names what is returned.
Plan = collections.namedtuple("Plan", "name function arguments parameters outputs result fields tuple_name")


def python_name(cname):
    """The name without its p."""
    return re.sub(r"^p+(?=[A-Z])", "", cname)


# A number of elements from which one argument follows: N itself, or N within a limit.
_COUNTED = re.compile(r"\(?(\w+)(?: > 1 \? \1 : 1\)| < \w+ \? \1 : \w+\))?$")


def plan(function):
    """The plan of a function of the description."""
    name = function["plain_name"]
    numbers = {a["name"] for a in function["arguments"] if not a["type"].endswith("*")}
    pointers = {a["name"]: _role(name, a) for a in function["arguments"] if a["type"].endswith("*")}
    known = _known(function, numbers, pointers)
    capacity, _ = contracts.LISTS.get(name, (None, ()))

    arguments = []
    for a in function["arguments"]:
        cname, base = a["name"], a["type"].replace("const ", "").rstrip("*")
        tail = contracts.TAILS.get((name, cname))
        shape = a.get("shape")
        if tail is not None:
            shape = ["height", "width"]
        role = pointers.get(cname) or ("known" if cname in known else "number")
        default = None
        if cname == capacity:
            default = "None"
        elif cname == "size" and role == "number" and function.get("keeps_state"):
            default = "1024"
        elif (name, cname) in contracts.OPTIONAL:
            default = "None"
        arguments.append(Argument(cname, python_name(cname), base, role, a.get("count", ""), shape,
                                  known.get(cname), default, tail))

    parameters = [a for a in arguments if a.role in ("number", "in", "changed", "moved", "text")]
    outputs = [a for a in arguments if a.role in ("changed", "moved", "result", "scalar", "written")]
    result = function["result"]
    fields = ([] if result == "void" else ["result"]) + [a.name for a in outputs]
    return Plan(name, function, arguments, parameters, outputs, result, fields, name + "Results")


def _role(name, a):
    """The role of a pointer."""
    cname, direction, count = a["name"], a.get("direction"), a.get("count", "")
    if a["type"].replace("const ", "") == "char*":
        return "text" if direction == "in" else "written"
    if (name, cname) in contracts.WORK:
        return "work"
    if direction in ("in", "work"):
        return direction
    if direction == "inout":
        if count == "1":
            return "moved"
        kept = a.get("keeps") and (a["name"] == "pResImg" or not a.get("shape")) and \
            (name, cname) not in contracts.PASTED_INTO
        return "result" if kept or (name, cname) in contracts.RESULTS else "changed"
    return "scalar" if count == "1" else "result"


def _known(function, numbers, pointers):
    """The numbers that arrays know, as expressions over the arrays."""
    known = {}
    for a in function["arguments"]:
        if pointers.get(a["name"]) not in ("in", "changed"):
            continue
        name, shape = python_name(a["name"]), a.get("shape")
        if (function["plain_name"], a["name"]) in contracts.TAILS:
            shape = ["height", "width"]
        if shape is None:
            match = _COUNTED.match(a.get("count", ""))
            if match and match.group(1) in numbers:
                known.setdefault(match.group(1), f"{name}.size")
            continue
        for axis, size in enumerate(shape):
            if size in numbers:
                known.setdefault(size, f"{name}.shape[{axis}]")
            elif size == "(bRGB ? 3 : 1)":
                known.setdefault("bRGB", f"{name}.ndim == 3")
    return known
