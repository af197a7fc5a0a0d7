"""What callers must meet beyond sizes.

Most of it is stated in the description of the boundary. What only Python needs stands here. Functions are named by their plain
names, which are unique.
"""

from ._library import functions

_ARGUMENTS = {(f["plain_name"], a["name"]): a for f in functions.values() for a in f["arguments"]}


def _with_role(role):
    return frozenset(name for name, a in _ARGUMENTS.items() if a.get("role") == role)


# Regions that the functions do not clip. Empty ones, with x2 = x1-1 or y2 = y1-1, are permitted.
REGIONS_INSIDE = frozenset(f["plain_name"] for f in functions.values() if f.get("regions_inside"))

# Arguments that are limited: (least, argument, most, what it must be). Both ends are formulas, or empty.
RANGES = {}
for (_function, _name), _a in _ARGUMENTS.items():
    if "range" in _a:
        RANGES.setdefault(_function, []).append(
            (_a["range"]["least"], _name, _a["range"]["most"], _a["range"]["demand"]))

# Further conditions on one argument: (condition, argument, what it must be). A condition is an expression over the
# arguments; rows and columns are those of the image.
CONDITIONS = {
    "NuvTraceContour": (("has_clear_border(BinImg)", "BinImg", "an image whose border is below 2"),),
    "NuvMarkContour": (("has_clear_border(BinImg)", "BinImg", "an image whose border is below 2"),),
    "NuvGetHistogramByLimited": (
        ("y1 > y2 or y2 < rows", "y2", "a row of the image"),
        ("y1 > y2 or Left[y1:y2 + 1].min() >= 0", "Left", "0 or more in each row"),
        ("y1 > y2 or Right[y1:y2 + 1].max() <= columns", "Right", "at most the width in each row")),
    "NuvImgDifferenceInRect": (
        ("is_inside(rect1, columns, rows)", "rect1", "a rectangle inside Img1"),
        ("is_inside(rect2, columns, Img2.shape[0])", "rect2", "a rectangle inside Img2")),
    "NuvSequenceFiles_Initialize": (("len(FileName) < 1024", "FileName", "shorter than 1024 bytes"),),
}

# Results that the description calls read: the contents matter only between results, so they start as 0.
RESULTS = _with_role("result")

# Images that results are pasted into are arguments. Other memory of which a call writes a part only is a result.
PASTED_INTO = _with_role("pasted_into")

# Work space whose contents after a call have a meaning in C++. Python returns it only if `out` names it.
WORK = _with_role("scratch")

# Arguments that may be None.
OPTIONAL = _with_role("optional")

# Images that a function reads beyond their end: the number of bytes read there. They are 0 unless `tail` gives
# them.
TAILS = {name: a["tail"] for name, a in _ARGUMENTS.items() if "tail" in a}

# Shapes of results that depend on earlier calls, as expressions. _s is what the detectors left.
SHAPES = {("NuvImgChainLines_Debug", "pResImg"): "(0,) if _s.image is None else (6,) + _s.image.shape"}

# Lists of results: the argument with their capacity, and the outputs of which only the first `result` elements are
# returned. A capacity may be left out: there can be no more results than pixels.
LISTS = {f["plain_name"]: (f["lists"]["capacity"] or None, tuple(f["lists"]["outputs"]))
         for f in functions.values() if "lists" in f}

# Lists whose length the function does not return. Entries start as -1, and those whose y is -1 then are left out.
UNCOUNTED = frozenset({("NuvRLXRegionsWithID", "pRLX")})

# Functions that are written by hand, because they hand over memory or memory of a detector.
BY_HAND = frozenset({
    "NuvGetContours", "NuvFreeContours", "NuvMergeSplit", "NuvFreeRegionStruct", "NuvImgChainLines_GetNxtCodeLine",
    "NuvImgChainLines_GetLines"})

# The coding of texts that are passed as str.
CODINGS = {"NuvDrawChineseString": "gb2312", "NuvChar2Wide": "gb2312", "NuvSetNumberString": "ascii"}
