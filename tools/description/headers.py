"""Reads the headers: records, groups, functions, their documentation and their symbols on each platform."""

import re

from clang import cindex

# The name of the symbol's field, the compiler's name of the platform, and its bits.
PLATFORMS = {"elf": ("x86_64-linux-gnu", 64), "elf32": ("i686-linux-gnu", 32),
             "mingw32": ("i686-w64-mingw32", 32), "mingw64": ("x86_64-w64-mingw32", 64),
             "msvc32": ("i686-pc-windows-msvc", 32), "msvc64": ("x86_64-pc-windows-msvc", 64)}

# The headers include <cstdint> alone. This one stands in for the system's, which not every platform has here.
CSTDINT = """
#pragma once
typedef unsigned char uint8_t;
typedef int int32_t;
typedef unsigned int uint32_t;
"""


class HeaderError(Exception):
    """The headers lack something that the description needs."""


def parse(root, names, target):
    """The declarations of the headers, as a compiler for the target sees them."""
    directory = root / "include"
    source = "".join(f'#include "nuv/{name}"\n' for name in names)
    files = [("boundary.cpp", source), (str(directory / "cstdint"), CSTDINT)]
    unit = cindex.Index.create().parse(
        "boundary.cpp", unsaved_files=files,
        args=["-x", "c++", "-std=c++17", "-target", target, "-nostdinc", f"-I{directory}"])
    for diagnostic in unit.diagnostics:
        if diagnostic.severity >= cindex.Diagnostic.Error:
            raise HeaderError(f"{diagnostic.location.file}:{diagnostic.location.line}: {diagnostic.spelling}")
    return [cursor for cursor in unit.cursor.get_children()
            if cursor.location.file is not None and str(cursor.location.file).endswith(".h")]


def spelled(of_type):
    """A type as the tables of calls write it: const uint8_t*."""
    return of_type.spelling.replace(" *", "*").replace("struct ", "")


def signature(cursor):
    return f"{cursor.spelling}({', '.join(spelled(a.type) for a in cursor.get_arguments())})"


# ---- Documentation ------------------------------------------------------------------------------------------

def comment_lines(comment):
    """The lines of a comment without their marks, one blank after the marks removed."""
    return [re.sub(r"^\s*///<? ?", "", line).rstrip() for line in comment.splitlines()]


def plain(text):
    """The text without the commands inside it."""
    return text.replace("@ref ", "").replace("\\\\", "\\").strip("\n")


def joined(lines):
    return plain(re.sub(r"\s+", " ", " ".join(lines)).strip())


def first_sentence(text):
    paragraph = joined(text.strip().split("\n\n")[0].splitlines())
    end = re.search(r"[.:](?= [A-Z]|$)", paragraph)
    return (paragraph[:end.start()] if end else paragraph) + "."


class Documentation:
    """A comment, divided into its text and its commands."""

    def __init__(self, comment):
        text, blocks = [], []
        for line in comment_lines(comment):
            command = re.match(r"@(\w+|[{}])\s*(.*)", line)
            if command and command[1] not in ("ref",):
                blocks.append((command[1], [command[2]]))
            elif blocks and blocks[-1][0] in ("param", "return", "note", "see") and line.strip():
                blocks[-1][1].append(line)
            else:
                if blocks and not line.strip():
                    blocks.append(("end", []))
                text.append(line)
        self.text = plain(re.sub(r"\n{3,}", "\n\n", "\n".join(text)).strip("\n"))
        self.brief = first_sentence(self.text)
        self.returns = " ".join(joined(lines) for command, lines in blocks if command == "return")
        self.notes = [joined(lines) for command, lines in blocks if command == "note"]
        self.references = [joined(lines) for command, lines in blocks if command == "see"]
        self.arguments = {}
        for command, lines in blocks:
            if command == "param":
                names, words = re.match(r"(\w+(?:, *\w+)*)\s*(.*)", joined(lines)).groups()
                for name in names.replace(" ", "").split(","):
                    self.arguments[name] = words


class Group:
    """A group of the documentation, and the groups around it."""

    def __init__(self, title, outer, comment, header):
        self.titles = (outer.titles if outer else []) + [title]
        self.header = header
        self.documentation = Documentation(
            "\n".join(line for line in comment.splitlines() if not re.search(r"@(defgroup|\{)", line)))


def groups_by_line(text, header):
    """All groups of a header, and for each line the group that is open there."""
    groups, open_groups, by_line, comment = [], [], {}, []
    for number, line in enumerate(text.splitlines(), 1):
        comment = comment + [line] if line.strip().startswith("///") else []
        if line.strip() == "/// @{":
            defined = re.search(r"@defgroup\s+\w+\s+(.+)", "\n".join(comment))
            if not defined:
                raise HeaderError(f"{header}:{number}: a group without a title")
            groups.append(Group(defined[1].strip(), open_groups[-1] if open_groups else None,
                                "\n".join(comment), header))
            open_groups.append(groups[-1])
        elif line.strip() == "/// @}":
            open_groups.pop()
        by_line[number] = open_groups[-1] if open_groups else None
    return groups, by_line


# ---- The description ----------------------------------------------------------------------------------------

def described_records(by_platform):
    """The records in the order of the header. Their sizes are those of all platforms with as many bits."""
    sizes = {}
    for field, (_, bits) in PLATFORMS.items():
        for cursor in by_platform[field]:
            if cursor.kind == cindex.CursorKind.STRUCT_DECL and cursor.is_definition():
                size = sizes.setdefault(cursor.spelling, {}).setdefault(str(bits), cursor.type.get_size())
                if size != cursor.type.get_size():
                    raise HeaderError(f"{cursor.spelling} differs between platforms of {bits} bits")
    records = []
    for cursor in by_platform["elf"]:
        if cursor.spelling in sizes and cursor.is_definition():
            fields = [{"name": field.spelling, "type": spelled(field.type),
                       "doc": joined(comment_lines(field.raw_comment or ""))}
                      for field in cursor.type.get_fields()]
            header = str(cursor.location.file).rsplit("/include/", 1)[-1]
            size = dict(sorted(sizes[cursor.spelling].items()))
            records.append({"name": cursor.spelling, "header": header,
                            "doc": Documentation(cursor.raw_comment or "").text, "size": size, "fields": fields})
    return records


def described_function(cursor, group):
    documentation = Documentation(cursor.raw_comment)
    names = [argument.spelling for argument in cursor.get_arguments()]
    for name in documentation.arguments:
        if name not in names:
            raise HeaderError(f"{signature(cursor)} has no argument {name}, which its comment describes")
    result = spelled(cursor.result_type)
    function = {"name": cursor.spelling, "signature": signature(cursor), "header": group.header,
                "groups": group.titles,
                "doc": {"brief": documentation.brief, "text": documentation.text, "notes": documentation.notes,
                        "references": documentation.references,
                        "returns": documentation.returns},
                "result": result}
    released = re.search(r"released with (Nuv\w+|delete\[\])", documentation.returns)
    if released:
        function["result_memory"] = released[1]
    function["arguments"] = [{"name": argument.spelling, "type": spelled(argument.type),
                              "doc": documentation.arguments.get(argument.spelling, "")}
                             for argument in cursor.get_arguments()]
    return function


def inherit(function, functions):
    """Fills what an overload's comment leaves out, from the overloads above it."""
    for other in functions:
        if other["name"] != function["name"]:
            continue
        if other["result"] == function["result"]:
            function["doc"]["returns"] = function["doc"]["returns"] or other["doc"]["returns"]
        docs = {(argument["name"], argument["type"]): argument["doc"] for argument in other["arguments"]}
        for argument in function["arguments"]:
            argument["doc"] = argument["doc"] or docs.get((argument["name"], argument["type"]), "")


def read(root):
    """The groups, records and functions of all headers. Functions have their symbols, but no directions."""
    names = sorted(file.name for file in (root / "include/nuv").glob("*.h"))
    by_platform = {field: parse(root, names, target) for field, (target, _) in PLATFORMS.items()}
    symbols = {}
    for field, cursors in by_platform.items():
        for cursor in cursors:
            if cursor.kind == cindex.CursorKind.FUNCTION_DECL:
                symbols.setdefault(signature(cursor), {})[field] = cursor.mangled_name
    groups, by_line = [], {}
    for name in names:
        text = (root / "include/nuv" / name).read_text(encoding="utf-8")
        of_header, by_line[f"nuv/{name}"] = groups_by_line(text, f"nuv/{name}")
        groups += of_header
    functions = []
    for cursor in by_platform["elf"]:
        if cursor.kind != cindex.CursorKind.FUNCTION_DECL:
            continue
        header = str(cursor.location.file).rsplit("/include/", 1)[-1]
        group = by_line[header][cursor.location.line]
        if group is None:
            raise HeaderError(f"{header}: {cursor.spelling} stands in no group")
        if not cursor.raw_comment:
            raise HeaderError(f"{header}: {cursor.spelling} has no comment")
        function = described_function(cursor, group)
        function["symbols"] = symbols[function["signature"]]
        inherit(function, functions)
        functions.append(function)
    described_groups = [{"titles": group.titles, "header": group.header,
                         "doc": {"text": group.documentation.text, "notes": group.documentation.notes,
                                 "references": group.documentation.references}} for group in groups]
    return {"groups": described_groups, "records": described_records(by_platform), "functions": functions}
