"""Formulas of the description, in C syntax, as Python expressions."""


def python_expression(formula):
    """C's conditional operator and division, in Python's words. Fields of records keep their names."""
    return _conditional(formula.replace("/", "//").strip())


def _conditional(formula):
    parts = _split(formula, "?")
    if len(parts) == 1:
        return _inside_brackets(formula.strip())
    condition, rest = parts[0], formula[len(parts[0]) + 1:]
    yes = _split(rest, ":")[0]
    no = rest[len(yes) + 1:]
    return f"({_conditional(yes)} if {_conditional(condition)} else {_conditional(no)})"


def _split(formula, mark):
    """The parts between marks that stand outside brackets."""
    parts, depth, start = [], 0, 0
    for place, letter in enumerate(formula):
        depth += (letter == "(") - (letter == ")")
        if letter == mark and depth == 0:
            parts.append(formula[start:place])
            start = place + 1
    return parts + [formula[start:]]


def _inside_brackets(formula):
    result, place = "", 0
    while place < len(formula):
        if formula[place] != "(":
            result += formula[place]
            place += 1
            continue
        depth, end = 1, place + 1
        while depth:
            depth += (formula[end] == "(") - (formula[end] == ")")
            end += 1
        result += "(" + _conditional(formula[place + 1:end - 1]) + ")"
        place = end
    return result
