"""Docstrings of the wrappers, made from the documentation of the headers."""

import textwrap

_ELEMENTS = {"uint8_t": "uint8", "int32_t": "int32", "uint32_t": "uint32", "double": "float64", "bool": "bool",
             "RLX": "RLX", "RLY": "RLY", "tagRECT": "Rect"}


def _shape(a):
    if a.shape is not None:
        sizes = [str(size) for size in a.shape]
        if sizes[2:] == ["(bRGB ? 3 : 1)"]:
            return f"({sizes[0]}, {sizes[1]}) or ({sizes[0]}, {sizes[1]}, 3)"
        return f"({', '.join(sizes)})"
    return f"({a.count},)"


def kind(a, returned=False):
    """What an argument or an output is, in a few words."""
    if a.role in ("text", "written"):
        return "bytes" if returned else "str or bytes"
    if a.role in ("number", "moved", "scalar"):
        return {"double": "float", "bool": "bool", "tagRECT": "Rect"}.get(a.base, "int")
    if a.base not in _ELEMENTS:
        return "a list that the library made, or None"
    return f"array of {_ELEMENTS[a.base]}, {_shape(a)}"


def _paragraph(head, text):
    return textwrap.fill(" ".join(text.split()), 100, initial_indent=head, subsequent_indent="        ")


def document(plan):
    from ._machine import signature
    doc = plan.function["doc"]
    text = doc["text"].strip()
    if not text.startswith(doc["brief"]):
        text = f"{doc['brief']}\n\n{text}"
    docs = {a["name"]: a.get("doc", "") for a in plan.function["arguments"]}
    lines = [f"{plan.name}({signature(plan)})", "", text.strip(), ""]
    if plan.parameters:
        lines.append("Arguments:")
        for a in plan.parameters:
            lines.append(_paragraph(f"    {a.name}: ", f"{kind(a)}. {docs[a.cname]}"))
        lines.append("")
    if plan.fields:
        lines.append("Returns:")
        if plan.result != "void":
            result = {"bool": "bool", "double": "float", "int32_t": "int"}.get(plan.result, "object")
            lines.append(_paragraph("    result: ", f"{result}. {doc['returns']}"))
        for a in plan.outputs:
            changed = "a changed copy" if a.role == "changed" else ""
            lines.append(_paragraph(f"    {a.name}: ",
                                    f"{kind(a, True)}. {changed or docs[a.cname]}"))
        if plan.outputs:
            lines.append("    out= takes arrays to write into: one array, a sequence or a dict by name.")
        lines.append("")
    lines += ["Raises TypeError or ValueError for arguments that are not of these kinds, shapes and ranges."]
    for note in doc["notes"]:
        lines += ["", _paragraph("Note: ", note)]
    for reference in doc["references"]:
        lines += ["", _paragraph("See: ", reference)]
    return "\n".join(lines)
