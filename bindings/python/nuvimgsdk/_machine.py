"""Wrappers of the functions, made from the description when they are first used.

The source of a wrapper is plain Python without loops, so that a call costs little. inspect.getsource shows it, as in

    def NuvBinImgCentroid(BinImg, *, out=None):
      BinImg = _v.image(_f, 'BinImg', BinImg, 2)            # the arguments are checked and converted
      width = BinImg.shape[1]                               # what arrays know
      height = BinImg.shape[0]
      rows, columns = BinImg.shape[:2]
      if out is not None:                                   # memory of the caller for results
        out = _v.given(_f, out, ('X', 'Y'), {'BinImg': BinImg})
      X_ = T_int32_t() if out is None else _v.given_scalar(_f, out, 'X', T_int32_t)
      Y_ = T_int32_t() if out is None else _v.given_scalar(_f, out, 'Y', T_int32_t)
      result = _c(BinImg.__array_interface__['data'][0], width, height, byref(X_), byref(Y_))
      return Results(result, X_.value, Y_.value)

An argument keeps its name. With a final underscore it is the C variable of a number, or the array as given where a
changed copy has the name. Names of the package begin with an underscore: the function of the C library is _c, its name
_f, the module _values _v and the state of the detectors _s. T_ and D_ precede types of C and of numpy.
"""

import collections
import ctypes
import linecache
import re

import numpy

from . import _contracts as contracts
from . import _documents as documents
from . import _values as values
from ._formulas import python_expression
from ._library import C_TYPES, c_function, functions, sections, services, taken_image
from ._plan import plan as plan_of

_LIMITS = {"int32_t": (-2**31, 2**31 - 1), "uint32_t": (0, 2**32 - 1), "uint8_t": (0, 255)}

_NAMES = {
    **{"T_" + base: kind for base, kind in C_TYPES.items()},
    **{"D_" + base: dtype for base, dtype in values.DTYPES.items()},
    "_v": values, "_s": services, "byref": ctypes.byref, "array": numpy.array, "zeros": numpy.zeros,
    "taken_image": taken_image, "has_clear_border": values.has_clear_border, "is_inside": values.is_inside}


def make(name):
    """The wrapper of a function."""
    plan = plan_of(functions[name])
    source = _source(plan)
    names = dict(_NAMES, _c=c_function(name), _f=name)
    if len(plan.fields) > 1:
        names["Results"] = collections.namedtuple(plan.tuple_name, plan.fields)
        names["Results"].__module__ = "nuvimgsdk"
        names["Results"].__doc__ = f"The result and the outputs of {name}."
    file = f"<nuvimgsdk {name}>"
    exec(compile(source, file, "exec"), names)
    linecache.cache[file] = (len(source), None, source.splitlines(True), file)
    wrapper = names[name]
    wrapper.__module__ = "nuvimgsdk"
    wrapper.__doc__ = document(plan)
    wrapper.plan = plan
    return wrapper


def document(*plans):
    """The docstring of a function, or of overloads, with the sections of the headers around it."""
    return "\n\n".join([*(documents.document(p, signature(p)) for p in plans),
                        documents.sections(plans[0].function["groups"], sections).lstrip("\n")])


def signature(plan):
    """The parameters of a wrapper. Those with a default come last in each C++ list, too."""
    parameters, optional = [], False
    for a in plan.parameters:
        optional = optional or a.default is not None
        parameters.append(a.name + (f"={a.default or 'None'}" if optional else ""))
    keywords = [a for a in ("tail=None" if any(a.tail for a in plan.arguments) else "",
                            "out=None" if plan.outputs else "") if a]
    return ", ".join(parameters + (["*"] + keywords if keywords else []))


def _source(plan):
    lines = _inputs(plan) + _sizes(plan) + _conditions(plan)
    if plan.outputs:
        fields = tuple(a.name for a in plan.outputs if a.role not in ("scalar", "moved")) or \
            tuple(a.name for a in plan.outputs)
        inputs = ", ".join(f"{a.name!r}: {a.name}" for a in plan.parameters if a.role in ("in", "changed"))
        lines += ["if out is not None:", f"  out = _v.given(_f, out, {fields!r}, {{{inputs}}})"]
    call = _outputs(plan) + _call(plan)
    if plan.function.get("keeps_state"):
        call = ["with _s.lock:"] + ["  " + line for line in call]
    lines += call + _return(plan)
    return f"def {plan.name}({signature(plan)}):\n" + "".join(f"  {line}\n" for line in lines)


def _inputs(plan):
    """Checks and conversions of the arguments, each by itself."""
    lines = []
    for a in plan.parameters:
        checks = _input(plan, a)
        if a.default == "None" and a.role != "number":
            checks = [f"if {a.name} is not None:"] + ["  " + line for line in checks]
        lines += checks
    return lines


def _input(plan, a):
    n = a.name
    if a.role in ("number", "moved"):
        if a.base in _LIMITS:
            least, most = _LIMITS[a.base]
            unless = f"{n} is not None and " if a.default == "None" else ""
            return [f"if {unless}not ({n}.__class__ is int and {least} <= {n} <= {most}): "
                    f"{n} = _v.integer(_f, {n!r}, {n}, {least}, {most})"]
        if a.base == "double":
            return [f"if {n}.__class__ is not float: {n} = _v.real(_f, {n!r}, {n})"]
        if a.base == "bool":
            return [f"if {n}.__class__ is not bool: {n} = _v.flag(_f, {n!r}, {n})"]
        return [f"{n} = _v.rectangle(_f, {n!r}, {n})"]
    if a.role == "text":
        coding = next((c for start, c in contracts.CODINGS.items() if plan.name.startswith(start)), None)
        return [f"{n} = _v.text(_f, {n!r}, {n}, {coding!r})"]
    if a.shape is not None:
        kind = 2 if len(a.shape) == 2 else 0 if a.shape[2] == "(bRGB ? 3 : 1)" else a.shape[2]
        return [f"{n} = _v.image(_f, {n!r}, {n}, {kind})"]
    any_shape = a.base == "uint8_t" and "Chain" not in n
    lines = [f"{n} = _v.array(_f, {n!r}, {n}, D_{a.base}, {any_shape})"]
    if n == "ChainCode":
        lines.append(f"_v.chain(_f, {n!r}, {n})")
    return lines


def _sizes(plan):
    """The numbers that arrays know, and whether all arrays agree with them."""
    lines = [f"{a.cname} = {a.source}" for a in plan.arguments if a.role == "known"]
    knows = {a.source for a in plan.arguments if a.role == "known"}
    images = [a for a in plan.arguments if a.shape and a.role in ("in", "changed")]
    names = {a.cname for a in plan.arguments}
    if images:
        first = images[0].name
        lines += [f"rows, columns = {first}.shape[:2]"]
    elif {"width", "height"} <= names:
        lines += ["rows, columns = height, width"]
    elif "rows" in plan.function["arguments"][-1].get("count", ""):
        lines += [f"rows = {plan.arguments[-1].name}.size"]
    for a in plan.arguments:
        if a.default == "None" and a.role == "number":
            lines += [f"if {a.name} is None: {a.name} = rows * columns"]
    for a in plan.parameters:
        if a.role not in ("in", "changed"):
            continue
        checks = _size_checks(a, knows, images)
        if a.default is not None:
            checks = [f"if {a.name} is not None:"] + ["  " + line for line in checks]
        lines += checks
    return lines


def _size_checks(a, knows, images):
    if a.tail is not None:
        return [f"{a.name} = _v.with_tail(_f, {a.name!r}, {a.name}, {a.tail}, tail)"]
    return _list_checks(a, knows) if a.shape is None else _image_checks(a, knows, images[0])


# Lists with these numbers of elements may not be longer. Other formulas state how far a function reads.
_WHOLE = re.compile(r"\w+|\(\w+ > 1 \? .*|width\*height\*(2|3/2)")


def _list_checks(a, knows):
    n = a.name
    if f"{n}.size" in knows:
        return [f"if not {n}.size: _v.fits(_f, {n!r}, {n}, 1, False)"] if "> 1 ?" in a.count else []
    if a.count == "rows":
        return []
    return [f"_v.fits(_f, {n!r}, {n}, {expression(a.count)}, {bool(_WHOLE.fullmatch(a.count))})"]


def _image_checks(a, knows, first):
    """Images have the size of the first one. One without a number of rows has at least those that are read."""
    n, lines = a.name, []
    rows, columns, *channels = (expression(size) for size in a.shape)
    if rows.isidentifier():
        if n == first.name or {f"{n}.shape[0]", f"{n}.shape[1]"} <= knows:
            return []
        shape = f"({rows}, {columns})"
        if channels:
            shape += " + (3,)" if a.shape[2] == 3 else " + ((3,) if bRGB else ())"
        return [f"if {n}.shape != {shape}: _v.shaped(_f, {n!r}, {n}, {shape}, {first.name!r})"]
    lines.append(f"if {n}.shape[0] < {rows}: _v.rows_of(_f, {n!r}, {n}, {rows})")
    if n != first.name:
        lines.append(f"if {n}.shape[1:] != {first.name}.shape[1:]: "
                     f"_v.shaped(_f, {n!r}, {n}, {n}.shape[:1] + {first.name}.shape[1:], {first.name!r})")
    return lines


def _conditions(plan):
    """What the header demands of a caller beyond sizes."""
    lines = []
    names = [a.cname for a in plan.arguments]
    if plan.name in contracts.REGIONS_INSIDE:
        lines.append("_v.region(_f, x1, x2, y1, y2, columns, rows)")
    for least, name, most, demand in contracts.RANGES.get(plan.name, ()):
        ends = [expression(end) for end in (least, most)]
        condition = " <= ".join(filter(None, (ends[0], name, ends[1])))
        lines.append(f"if not {condition}: raise _v.refused(_f, {name!r}, {demand!r}, {name})")
    if "pChainCode" in names and any(a.name == "ChainCode" and a.role == "in" for a in plan.arguments):
        x, y = ("x" if "x" in names else "None"), ("y" if "y" in names else "None")
        if any(a.shape for a in plan.arguments):
            lines.append("_v.chain_inside(_f, x, y, ChainCode, columns, rows)")
        elif "pXOfRow" in names:
            lines += [f"_v.chain_in_range(_f, {x}, None, ChainCode)",
                      "_v.chain_inside(_f, x, y, ChainCode, None, XOfRow.size)"]
        else:
            lines.append(f"_v.chain_in_range(_f, {x}, {y}, ChainCode)")
    for condition, name, demand in contracts.CONDITIONS.get(plan.name, ()):
        lines.append(f"if not ({condition}): raise _v.refused(_f, {name!r}, {demand!r}, {name})")
    return lines


def expression(formula):
    """A formula of the description as Python source."""
    return python_expression(str(formula).replace("strlen(p", "len("))


def _shape(plan, a):
    """The shape of a result, as source of a tuple."""
    if (plan.name, a.cname) in contracts.SHAPES:
        return contracts.SHAPES[plan.name, a.cname]
    if a.shape is not None:
        sizes = [expression(size) for size in a.shape]
        if a.shape[0] == "y2+1":
            sizes[0] = "rows"
        if len(sizes) == 3 and a.shape[2] == "(bRGB ? 3 : 1)":
            return f"({sizes[0]}, {sizes[1]}) + ((3,) if bRGB else ())"
        return f"({', '.join(sizes)})"
    like = next((b for b in plan.arguments if b.role in ("in", "changed") and b.shape is None and b.base == "uint8_t"
                 and b.count == a.count == "N" and "Img" in b.name), None)
    if like is not None and a.base == "uint8_t":
        return f"{like.name}.shape"
    return f"({expression(a.count)},)"


def _plain(plan, a):
    """Whether a result has the sizes of an argument, so that they need no check."""
    known = {b.cname for b in plan.arguments if b.role == "known"}
    return a.shape is not None and all(str(size) in known or str(size) in ("rows", "3") for size in a.shape) or \
        a.count.isdigit()


def _outputs(plan):
    lines = []
    for a in plan.arguments:
        n = a.name
        if a.role == "scalar":
            if a.base.endswith("*"):
                continue
            kind = "T_" + a.base
            lines.append(f"{n}_ = {kind}() if out is None else _v.given_scalar(_f, out, {n!r}, {kind})")
        elif a.role == "moved":
            lines += [f"{n}_ = T_{a.base}() if out is None else _v.given_scalar(_f, out, {n!r}, T_{a.base})",
                      f"{n}_.value = {n}"]
        elif a.role in ("result", "work"):
            shape, dtype = _shape(plan, a), "D_" + a.base
            new = f"zeros({shape}, {dtype})" if _plain(plan, a) else f"_v.results(_f, {shape}, {dtype})"
            if plan.outputs:
                new += f" if out is None else _v.given_array(_f, out, {n!r}, {shape}, {dtype})"
            lines.append(f"{n} = {new}")
            if (plan.name, a.cname) in contracts.UNCOUNTED:
                lines.append(f"if out is None: {n}[...] = -1")
        elif a.role == "changed":
            lines += [f"{n}_ = {n}",
                      f"if out is None or out.get({n!r}) is None: {n} = array({n}_)",
                      "else:",
                      f"  {n} = _v.given_array(_f, out, {n!r}, {n}_.shape, D_{a.base})",
                      f"  if {n} is not {n}_: {n}[...] = {n}_"]
        elif a.role == "written":
            lines.append(f"{n} = _v.buffer(_f, out, {n!r}, {expression(a.count)})")
    return lines


def _call(plan):
    arguments = []
    for a in plan.arguments:
        if a.role in ("number", "known"):
            arguments.append(f"_v.CRect(*{a.name})" if a.base == "tagRECT" else a.cname)
        elif a.role in ("in", "changed", "result", "work"):
            address = f"{a.name}.__array_interface__['data'][0]"
            arguments.append(f"None if {a.name} is None else {address}" if a.default else address)
        elif a.role == "text":
            arguments.append(a.name)
        else:
            arguments.append(f"byref({a.name}{'' if a.role == 'written' else '_'})")
    call = f"_c({', '.join(arguments)})"
    if plan.result != "void":
        call = "result = " + call
    lines = [call]
    if plan.name in ("NuvImgChainLines_DoBinImg", "NuvImgChainLines_DoGryImg"):
        lines.append("_s.image, _s.lines = GryImg, result if bFitLines else 0")
    if plan.name == "NuvImgChainLines_Initialize":
        lines.append("_s.lines = 0 if not result else _s.lines")
    return lines


def _return(plan):
    lines = []
    if plan.function.get("result_memory") == "delete[]":
        lines.append(f"result = taken_image(result, {_shape_of_taken(plan)})")
    counted = contracts.LISTS.get(plan.name, (None, ()))[1]
    for a in plan.outputs:
        if a.cname in counted:
            lines.append(f"if out is None: {a.name} = {a.name}[:max(result, 0)]")
        elif (plan.name, a.cname) in contracts.UNCOUNTED:
            lines.append(f"if out is None: {a.name} = {a.name}[{a.name}['y'] >= 0]")
    values_ = ["result"] if plan.result != "void" else []
    for a in plan.outputs:
        suffix = {"scalar": "_.value", "moved": "_.value", "written": ".value"}.get(a.role, "")
        values_.append(a.name + suffix)
    if not values_:
        return lines
    if len(values_) == 1:
        return lines + [f"return {values_[0]}"]
    return lines + [f"return Results({', '.join(values_)})"]


def _shape_of_taken(plan):
    """The shape of an image that a function hands over, as source of a tuple."""
    width, height = (a.name for a in plan.outputs)
    return f"({height}_.value, {width}_.value" + (", 3)" if "24Bit" in plan.name else ")")
