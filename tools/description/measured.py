"""Concludes from measured calls which way each pointer is used, and how many elements it has.

tests/boundary/measure.cpp plays the calls, and says what the lines of its output mean.
"""

import re
import subprocess


class MeasureError(Exception):
    """Something that was measured has no explanation, or contradicts the header."""


class Measured:
    """What was measured of one function."""

    def __init__(self, keeps_state):
        self.keeps_state = keeps_state
        self.calls = []     # (kind, [argument...])
        self.counts = {}    # by the index of the argument and the kind of scenes
        self.reaches = {}   # by the index of the argument: one for each call but hostile and tiny ones


def run(program, reaches=()):
    """What the program measures: for each function, by its signature."""
    lines = "".join(f"{signature}\t{index}\n" for signature, index in reaches)
    run_program = subprocess.run([program.resolve()], input=lines, cwd=program.resolve().parent, check=False,
                                 capture_output=True, text=True)
    if run_program.returncode != 0:
        last = re.findall(r"^function\t(.*)\t", run_program.stdout, re.MULTILINE)[-1:]
        raise MeasureError(f"{program} ended with {run_program.returncode} after {last}\n{run_program.stderr}")
    functions = {}
    for line in run_program.stdout.splitlines():
        kind, *words = line.split("\t")
        if kind == "function":
            function = functions[words[0]] = Measured(words[1] == "1")
        elif kind == "call":
            function.calls.append((words[0], words[1:]))
        elif kind == "pointer":
            function.counts[int(words[0]), words[1]] = dict(
                zip(("plays", "changed", "read", "gaps"), map(int, words[2:])))
        elif kind == "reach":
            function.reaches[int(words[0])] = [int(word) for word in words[1:]]
    return functions


# ---- Formulas -----------------------------------------------------------------------------------------------

def as_python(text):
    """A formula in C as Python writes it. Choices stand in parentheses."""
    text = re.sub(r"(\w)\.(\w)", r"\1_\2", text).replace("/", "//")
    inner = []
    while True:  # from the innermost parentheses outwards
        choice = re.search(r"\(([^()]*)\)", text)
        if not choice:
            break
        words = re.fullmatch(r"([^?:]+) \? ([^?:]+) : ([^?:]+)", choice[1])
        inner.append(f"(({words[2]}) if ({words[1]}) else ({words[3]}))" if words else choice[0])
        text = f"{text[:choice.start()]}<{len(inner) - 1}>{text[choice.end():]}"
    while "<" in text and re.search(r"<\d+>", text):
        text = re.sub(r"<(\d+)>", lambda place: inner[int(place[1])], text)
    return text


class Formula:
    """A formula in C over the names of arguments, such as width*height*(bRGB ? 3 : 1)."""

    def __init__(self, text, shape=None):
        self.text = text
        self.shape = shape
        self.names = set(re.findall(r"[A-Za-z_][\w.]*", text)) - {"strlen"}
        self.code = compile(as_python(text), text, "eval")

    def value(self, numbers):
        return max(eval(self.code, {"strlen": lambda text: text - 1},
                        {name.replace(".", "_"): number for name, number in numbers.items()}), 0)


def numbers_of(arguments, words):
    """The numbers of a call by name: integers, fields of records, and the sizes of texts."""
    numbers = {}
    for argument, word in zip(arguments, words):
        if re.fullmatch(r"-?\d+", word):
            numbers[argument["name"]] = int(word)
        elif "," in word:
            for field, value in zip(("left", "top", "right", "bottom"), word.split(",")):
                numbers[f"{argument['name']}.{field}"] = int(value)
        elif "char*" in argument["type"] and re.fullmatch(r"#\d+", word):
            numbers[argument["name"]] = int(word[1:])
    return numbers


def areas(arguments, integers):
    """Pairs of factors (rows, columns), from the arguments' names."""
    found = []
    for name in integers:
        if re.search("[wW]idth$", name):
            prefix = re.sub("[wW]idth$", "", name)
            rows = [n for n in integers if n.lower() == f"{prefix}height".lower()] or \
                   [n for n in integers if re.search("[hH]eight$", n)]
            found += [(row, name) for row in rows]
    if {"x1", "x2", "y1", "y2"} <= set(integers):
        found.append(("(y2-y1+1)", "(x2-x1+1)"))
        found += [(f"(((y2-y1) >> {shift}) + 1)", f"(((x2-x1) >> {shift}) + 1)") for shift in (1, 2)]
        found.append(("(y2-y1+1)", "(((x2-x1) | 1) + 1)"))
    for rows, columns in list(found):
        if re.fullmatch(r"\w+", rows + columns):
            found += [(f"({rows}/{n})", f"({columns}/{n})") for n in (2, 4)]
            found += [(f"({rows}/N)", f"({columns}/M)")] * ({"M", "N"} <= set(integers))
            found += [(f"(({rows}+step-1)/step)", f"(({columns}+step-1)/step)")] * ("step" in integers)
    return found


def image_formulas(rows, columns, booleans):
    """The formulas of images with this many rows and columns, with their shapes."""
    bare = [re.sub(r"^\((.*)\)$", r"\1", side) if side.count("(") == 1 else side for side in (rows, columns)]
    yield Formula(f"{columns}*{rows}", bare)
    yield Formula(f"{columns}*{rows}*3", bare + [3])
    for flag in booleans:
        yield Formula(f"{columns}*{rows}*({flag} ? 3 : 1)", bare + [f"({flag} ? 3 : 1)"])
    yield Formula(f"{columns}*{rows}*4", bare + [4])


def formulas(arguments, index):
    """The formulas that may give the size of an argument, the most likely first."""
    integers = [a["name"] for a in arguments if a["type"] in ("int32_t", "uint32_t")]
    booleans = [a["name"] for a in arguments if a["type"] == "bool"]
    places = {a["name"]: i for i, a in enumerate(arguments)}
    nearest = sorted(integers, key=lambda name: (abs(places[name] - index), places[name] < index))
    yield from (Formula(text) for text in ("1", "2", "4", "181", "256"))
    yield from (Formula(name) for name in nearest)
    pairs = areas(arguments, integers)
    for rows, columns in sorted(pairs, key=lambda pair: min(
            [abs(places[name] - index) for side in pair for name in re.findall(r"\w+", side) if name in places])):
        yield from image_formulas(rows, columns, booleans)
        yield Formula(f"{columns}*{rows}*2")
        yield Formula(f"{columns}*{rows}*3/2")
        yield Formula(f"2*{columns}*{rows}")
        yield Formula(f"{columns}*{rows}*12")
    for name in nearest:
        yield from (Formula(text) for text in (f"{name} + 1", f"{name} - 1", f"({name} > 1 ? {name} : 1)"))
        yield from (Formula(f"({name} < {other} ? {name} : {other})") for other in nearest if other != name)


def parts_of_images(arguments, element_type):
    """The formulas of images without their last rows, for functions that do not take the number of rows."""
    names = {a["name"] for a in arguments}
    booleans = [a["name"] for a in arguments if a["type"] == "bool"]
    rects = [a["name"] for a in arguments if a["type"] == "tagRECT"]
    if "y2" in names and element_type != "uint8_t*":
        yield Formula("y2 + 1")
    if "width" not in names:
        return
    if "y2" in names:
        yield from image_formulas("(y2+1)", "width", booleans)
        yield from image_formulas("((y1 > y2 ? y1 : y2) + 1)", "width", booleans)
    for rect in rects:
        yield from image_formulas(f"({rect}.bottom+1)", "width", booleans)


class Argument:
    """A pointer of a function, with what was measured of it."""

    def __init__(self, function, index, measured):
        self.function, self.index, self.measured = function, index, measured
        self.facts = function["arguments"][index]
        self.name = f"{function['signature']}: {self.facts['name']}"
        # (numbers, size, whether the scene has hardly any pixels) of the scenes but hostile ones
        self.numbers = [(numbers_of(function["arguments"], words), words[index], kind == "tiny")
                        for kind, words in measured.calls if kind != "hostile"]

    def total(self, what, kinds=("typical", "special", "hostile")):
        return sum(self.measured.counts.get((self.index, kind), {}).get(what, 0) for kind in kinds)

    def is_measured(self):
        return self.total("plays") > 0

    # ---- Direction

    def direction(self):
        """The direction that was measured, and what else there is to say of it.

        It is that of the typical scenes. The others show whether memory that seems to be read only is changed,
        and whether the contents of results matter in special cases.
        """
        changed = self.total("changed")
        if changed == 0:
            return {"direction": "in"}
        is_work = "work space" in self.facts["doc"] and "receive" not in self.facts["doc"]
        if self.total("read", ("typical",)) > 0:
            return {"direction": "inout"}
        if is_work:
            direction = {"direction": "work"}
        elif self.total("changed", ("typical",)) == 0:
            direction = {"direction": "inout"}
        elif self.total("gaps", ("typical",)) > 0:
            direction = {"direction": "inout", "keeps": True}
        else:
            direction = {"direction": "out"}
        if direction["direction"] != "inout" or "keeps" in direction:
            if self.total("read") > 0:
                direction["also_read"] = True
        return direction

    # ---- Count

    def fits(self, formula, tiny_ones):
        """Whether the formula gives the size in all scenes but hostile ones."""
        sizes = 0
        for numbers, word, is_tiny in self.numbers:
            if word == "#?" or (is_tiny and not tiny_ones):
                continue
            if not formula.names <= numbers.keys():
                return False
            try:
                if formula.value(numbers) != int(word[1:]):
                    return False
            except ZeroDivisionError:
                return False
            sizes += 1
        return sizes > 5

    def holds_the_reach(self, formula, is_tight=True):
        """Whether only elements that the formula counts matter, and, if it must be tight, nearly all of them."""
        tightest = 0
        sizable = [(numbers, word) for numbers, word, is_tiny in self.numbers if not is_tiny]
        for (numbers, word), reach in zip(sizable, self.measured.reaches[self.index]):
            if word == "#?":
                continue
            if not formula.names <= numbers.keys():
                return False
            value = formula.value(numbers)
            if reach > value or (is_tight and value > int(word[1:])):
                return False
            if value > 0:
                tightest = max(tightest, reach / value)
        return not is_tight or tightest > 0.9

    def best_formula(self):
        """A formula for all sizes, or else for all but those of tiny scenes, which may have sizes to ignore."""
        candidates = list(formulas(self.function["arguments"], self.index))
        return next((f for tiny_ones in (True, False) for f in candidates if self.fits(f, tiny_ones)), None)

    def best_part(self):
        parts = parts_of_images(self.function["arguments"], self.facts["type"])
        return next((f for f in parts if self.holds_the_reach(f)), None)


# ---- The header's words -------------------------------------------------------------------------------------

STATED_COUNT = re.compile(r"(?<!rows have )((?:[\w()]|[-+*/](?=[\w( ])|(?<=[-+*/]) | (?=[-+*/] ))+) "
                          r"(?:bytes|entries|bins|sums|elements|corners|codes|double)\b")


def stated_counts(argument):
    """The formulas that the header states for the number of elements."""
    names = {a["name"] for a in argument.function["arguments"]}
    for text in STATED_COUNT.findall(argument.facts["doc"]):
        text = text if text.count("(") == text.count(")") else text.strip("()")
        try:
            formula = Formula(text.strip())
        except SyntaxError:
            continue
        if formula.names <= names:
            yield formula


def faults_of_words(argument, is_by_hand):
    """Where what was measured contradicts what the header says of the argument."""
    doc, direction = argument.facts["doc"], argument.facts.get("direction")
    says = f"{argument.name} is '{doc}' in the header, but "
    if re.search(r"\bread only\b|\bnot changed\b", doc) and direction != "in":
        yield says + "calls change it"
    elif (re.match(r"receives?\b", doc) or re.search(r"(?<!not )\bchanged\b", doc)) and direction == "in":
        yield says + "no call changes it"
    if argument.facts.get("count", "text") == "text":
        return
    count = Formula(argument.facts["count"])
    for stated in stated_counts(argument):
        for numbers, _, _ in argument.numbers:
            names = stated.names | count.names
            if names <= numbers.keys() and all(numbers[name] > 0 for name in names) and \
                    (count.value(numbers) < stated.value(numbers) or
                     (not is_by_hand and count.value(numbers) > stated.value(numbers))):
                yield says + f"calls use {count.text} elements"
                break


# ---- Conclusions --------------------------------------------------------------------------------------------

def is_image(argument):
    """Whether bytes with a shape are the pixels of an image."""
    return argument["type"] != "double*" and argument["direction"] != "work" and argument["name"] != "pChainCode"


def add_states(functions, groups, results):
    """Marks the functions that keep data between calls, as the header's text says."""
    for function in functions:
        around = [group["doc"]["text"] for group in groups
                  if group["titles"] == function["groups"][:len(group["titles"])]]
        if any("nly one thread at a time" in text for text in around + [function["doc"]["text"]]):
            function["keeps_state"] = True
            if not results[function["signature"]].keeps_state:
                raise MeasureError(f"{function['signature']} is for one thread at a time in the header, "
                                   "but not in the table of calls")


def add(functions, groups, program, by_hand):
    """Adds directions, counts and shapes to the functions' pointers. Returns how many came from where."""
    results = run(program)
    unknown = {f["signature"] for f in functions} ^ results.keys()
    if unknown:
        raise MeasureError(f"only one of the headers and the table of calls has {sorted(unknown)[0]}")
    pointers = [Argument(function, index, results[function["signature"]]) for function in functions
                for index, argument in enumerate(function["arguments"]) if "*" in argument["type"]]
    add_states(functions, groups, results)
    hands = {section: dict(by_hand.get(section, {})) for section in ("directions", "counts", "notes", "shapes")}

    def hand(section, pointer):
        key = f"{pointer.function['plain_name']}.{pointer.facts['name']}"
        return hands[section].pop(key, None)

    numbers = {"directions measured": 0, "directions by hand": 0, "counts measured": 0, "counts by hand": 0,
               "shapes derived": 0, "shapes by hand": 0}
    best, parts, faults = {}, [], []
    for pointer in pointers:
        direction = hand("directions", pointer)
        if direction is None and not pointer.is_measured():
            faults.append(f"{pointer.name} is in no memory of the scenes, and no direction is stated by hand")
        elif direction is None:
            pointer.facts.update(pointer.direction())
        else:
            pointer.facts["direction"] = direction
            faults += faults_of_direction(pointer, direction)
        numbers["directions by hand" if direction else "directions measured"] += 1
        best[pointer] = pointer.best_formula() if pointer.is_measured() else None
        # Only images and lists are measured further. Changed texts could lose their end, and changed images
        # without a stated number of rows could lead a walk out of them.
        key = f"{pointer.function['plain_name']}.{pointer.facts['name']}"
        stated = hands["counts"].get(key, "")
        if best[pointer] is None and pointer.is_measured() and "char*" not in pointer.facts["type"] and \
                "rows" not in stated and not hands["notes"].get(key):
            parts.append(pointer)
    reached = run(program, [(p.function["signature"], p.index) for p in parts]) if parts else {}
    for pointer in parts:
        pointer.measured.reaches = reached[pointer.function["signature"]].reaches
        best[pointer] = pointer.best_part()
    for pointer in pointers:
        stated, formula = hand("counts", pointer), best[pointer]
        note = hand("notes", pointer)
        if stated is not None:
            faults += faults_of_count(pointer, stated, formula)
            formula = Formula(stated, list(reversed(stated.split("*"))) if stated == "width*rows" else None)
        if formula is not None:
            pointer.facts["count"] = formula.text
        elif note is None:
            faults.append(f"{pointer.name}: no formula explains its {size_text(pointer)}")
        numbers["counts by hand" if stated is not None or formula is None else "counts measured"] += 1
        if note is not None:
            pointer.facts["count_note"] = note
        shape = hand("shapes", pointer)
        if shape is not None:
            numbers["shapes by hand"] += 1
        elif formula is not None and formula.shape and is_image(pointer.facts):
            shape = formula.shape
            numbers["shapes derived"] += 1
        if shape:
            pointer.facts["shape"] = shape
        faults += faults_of_words(pointer, stated is not None)
    faults += [f"by hand, [{section}] has {key}, which is no pointer of a function"
               for section, entries in hands.items() for key in entries]
    if faults:
        raise MeasureError("\n".join(faults))
    return numbers


def size_text(pointer):
    sizes = [f"{word[1:]} elements for {numbers}" for numbers, word, _ in pointer.numbers if word != "#?"]
    return "size: " + ("; ".join(sizes[:3]) if sizes else "it is in no memory of the scenes")


def faults_of_direction(pointer, direction):
    """A direction by hand is for what cannot be measured, for work space that the header does not call so, and for
    results whose first content matters in some of the typical scenes only."""
    if not pointer.is_measured():
        return
    measured = pointer.direction()["direction"]
    if direction == measured:
        yield f"{pointer.name} is '{direction}' without a line by hand"
    elif direction == "out" and 0 < 2*pointer.total("read", ("typical",)) < pointer.total("plays", ("typical",)):
        pointer.facts["also_read"] = True
    elif direction != "work" or measured == "in" or pointer.total("read", ("typical",)) > 0:
        yield f"{pointer.name} is '{direction}' by hand, but calls show '{measured}'"


def faults_of_count(pointer, stated, formula):
    """A count by hand must be needed, and must have room for all that matters."""
    if formula is not None and (stated == formula.text or not pointer.fits(Formula(stated), True)):
        yield f"{pointer.name} has {stated} elements by hand, but calls show {formula.text}"
    elif stated == "text":
        if "char*" not in pointer.facts["type"]:
            yield f"{pointer.name} is text by hand, but has no characters"
    elif pointer.index in pointer.measured.reaches:
        by_hand = Formula(stated)
        if not pointer.holds_the_reach(by_hand, is_tight=False):
            yield f"{pointer.name} has {stated} elements by hand, but calls use more"
