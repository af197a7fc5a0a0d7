"""Docstrings of the wrappers, made from the documentation of the headers."""

import itertools
import re
import textwrap

_WIDTH = 100
_ELEMENTS = {"uint8_t": "uint8", "int32_t": "int32", "uint32_t": "uint32", "double": "float64", "bool": "bool",
             "RLX": "RLX records", "RLY": "RLY records", "tagRECT": "Rect"}
_NUMBERS = {"double": "float", "bool": "bool", "tagRECT": "Rect"}
_LISTS = {"NUV_CONTOUR_STRUCT": "ContourList", "RegionStruct": "RegionList"}


def _shape(a):
    if a.shape is None:
        return f"({python_words(a.count)},)"
    sizes = [python_words(str(size)) for size in a.shape]
    if sizes[2:] == ["(bRGB ? 3 : 1)"]:
        return f"({sizes[0]}, {sizes[1]}) or ({sizes[0]}, {sizes[1]}, 3)"
    return f"({', '.join(sizes)})"


def kind(a, returned=False):
    """What an argument or an output is, in a few words."""
    if a.role in ("text", "written"):
        return "bytes" if returned else "str or bytes"
    if a.role in ("number", "moved", "scalar"):
        name = _NUMBERS.get(a.base, "int")
    elif a.base in _ELEMENTS:
        name = f"array of {_ELEMENTS[a.base]} {_shape(a)}"
    else:
        return f"{_LISTS[a.base]} or None"
    return name if returned or a.default is None else f"{name} or None"


def _result(plan):
    """What the result of the C++ function is in Python, in words."""
    base, words = plan.result.rstrip("*"), plan.function["doc"]["returns"]
    if base in _LISTS:
        return _described(_LISTS[base], words.replace("null", "empty"))
    if plan.result.endswith("*"):
        return _described("array or None", words)
    return _described(_NUMBERS.get(base, "int"), words)


def python_words(text):
    """A text of the headers with the names and values of Python."""
    text = re.sub(r"(?<!\w)\*?p+(?=[A-Z])", "", text)
    text = re.sub(r",? to be released with (?:Nuv\w+|delete\[\])| from new\[\]", "", text)
    return re.sub(r"\bnull\b", "None", text)


def _items(described):
    """Paragraphs for names and their descriptions. Neighbours with the same description share one."""
    lines = []
    for words, group in itertools.groupby(described, key=lambda item: item[1]):
        names = ", ".join(name for name, _ in group)
        lines.append(textwrap.fill(f"{names}: {' '.join(words.split())}", _WIDTH, initial_indent="    ",
                                   subsequent_indent="        ", break_on_hyphens=False))
    return lines


def _described(what, words):
    return f"{what}. {python_words(words)}" if words else what


def _arguments(plan, docs):
    items = [(a.name, _described(kind(a), docs[a.cname])) for a in plan.parameters]
    if any(a.tail for a in plan.arguments):
        items.append(("tail", "bytes that follow the image in memory, where the function reads them; 0 by default"))
    if len(plan.outputs) == 1:
        items.append(("out", f"array that receives {plan.outputs[0].name}, in place of a new one"))
    elif plan.outputs:
        items.append(("out", "arrays that receive outputs, in place of new ones: a sequence, or a dict by name"))
    return items


def _returned(plan, docs):
    items = [("result", _result(plan))] if plan.result != "void" else []
    for a in plan.outputs:
        items.append((a.name, _described(kind(a, True), "a changed copy" if a.role == "changed" else
                                         re.sub("^receives? ", "", docs[a.cname]))))
    return items


def head(plan, signature):
    """The call and what it returns."""
    fields = ", ".join(plan.fields) or "None"
    return f"{plan.name}({signature}) -> {fields if len(plan.fields) < 2 else f'({fields})'}"


def document(plan, signature):
    """The docstring of a wrapper, without the sections of the headers around it."""
    doc = plan.function["doc"]
    text = python_words(doc["text"].strip())
    brief = python_words(doc["brief"])
    if not " ".join(text.split()).startswith(brief.rstrip(".")):
        text = f"{brief}\n\n{text}"
    docs = {a["name"]: a.get("doc", "") for a in plan.function["arguments"]}
    lines = textwrap.wrap(head(plan, signature), _WIDTH, subsequent_indent="    ") + ["", text.strip()]
    arguments, returned = _arguments(plan, docs), _returned(plan, docs)
    if arguments:
        lines += ["", "Arguments:", *_items(arguments)]
    if returned:
        lines += ["", "Returns:" if len(returned) == 1 else "Returns a named tuple:", *_items(returned)]
    lines += ["", "Raises TypeError or ValueError for arguments that are not of these kinds, shapes and ranges."]
    notes = [note for note in doc["notes"] if "nuv_free" not in note]  # numpy owns the memory of results
    for word, texts in (("Note", notes), ("See", doc["references"])):
        for words in texts:
            lines += ["", textwrap.fill(f"{word}: {python_words(words)}", _WIDTH, subsequent_indent="    ")]
    return "\n".join(lines)


def sections(titles, texts):
    """The sections of the headers around a function, the innermost first. `texts` has their texts by all titles."""
    lines = []
    for depth in range(len(titles), 0, -1):
        text = python_words(texts[tuple(titles[:depth])])
        lines += ["", f"{titles[depth - 1]}, from the C++ reference:", "", textwrap.indent(text, "    ")]
    return "\n".join(lines)
