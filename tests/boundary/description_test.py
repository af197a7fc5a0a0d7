#!/usr/bin/python3
"""Faults of headers that tools/describe_boundary must find, with invented functions and measured calls."""

import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))
from description import contracts, headers, measured  # noqa: E402

HEADER = """#include <cstdint>
#define NUV_API
/// @defgroup invented Invented functions
///
/// Functions on bytes.
/// @{{

/// Changes bytes.
///
/// @param pData  {words}
/// @param a, b   numbers
NUV_API void Change(uint8_t* pData, int32_t a, int32_t b);

/// @}}
"""
SIGNATURE = "Change(uint8_t*, int32_t, int32_t)"


class Faults(unittest.TestCase):
    def described(self, words, size, changed=True, read=True, by_hand=None):
        """The argument pData, if calls give it this size for a and b."""
        numbers = ((3, 4), (5, 9), (7, 2), (8, 8), (1, 6), (9, 5))
        lines = [f"function\t{SIGNATURE}\t0"]
        lines += [f"call\ttypical\t#{size(a, b)}\t{a}\t{b}" for a, b in numbers]
        lines += [f"pointer\t0\ttypical\t6\t{6 * changed}\t{6 * read}\t0"]
        lines += ["reach\t0" + "".join(f"\t{size(a, b)}" for a, b in numbers)]
        with tempfile.TemporaryDirectory() as directory:
            root = pathlib.Path(directory)
            (root / "include/nuv").mkdir(parents=True)
            (root / "include/nuv/invented.h").write_text(HEADER.format(words=words), encoding="utf-8")
            program = root / "program"
            program.write_text("#!/bin/sh\ncat <<'END'\n" + "\n".join(lines) + "\nEND\n", encoding="utf-8")
            program.chmod(0o755)
            boundary = headers.read(root)
            for function in boundary["functions"]:
                function["plain_name"] = function["name"]
            measured.add(boundary["functions"], boundary["groups"], program, by_hand or {})
        return boundary["functions"][0]["arguments"][0]

    def expect_fault(self, message, *arguments, **named):
        with self.assertRaises((headers.HeaderError, measured.MeasureError)) as caught:
            self.described(*arguments, **named)
        for words in (SIGNATURE, message):
            self.assertIn(words, str(caught.exception))

    def test_direction_and_count_follow_from_calls(self):
        argument = self.described("b bytes, changed", lambda a, b: b)
        self.assertEqual((argument["direction"], argument["count"]), ("inout", "b"))
        argument = self.described("receives the bytes", lambda a, b: a + 1, read=False)
        self.assertEqual((argument["direction"], argument["count"]), ("out", "a + 1"))

    def test_a_size_without_formula_is_named(self):
        self.expect_fault("pData: no formula", "bytes", lambda a, b: a * 7 + b % 3)

    def test_a_count_by_hand_that_is_too_small_is_named(self):
        self.expect_fault("pData has a*7 elements by hand, but calls use more", "bytes", lambda a, b: a * 7 + b % 3,
                          by_hand={"counts": {"Change.pData": "a*7"}})

    def test_memory_that_the_header_says_is_read_only_must_not_change(self):
        self.expect_fault("pData is 'bytes, read only' in the header, but calls change it", "bytes, read only", lambda a, b: a)

    def test_results_must_change(self):
        self.expect_fault("pData is 'receives the bytes' in the header, but no call changes it", "receives the bytes", lambda a, b: a, changed=False, read=False)

    def test_a_count_other_than_the_header_says_is_named(self):
        self.expect_fault("pData is 'a*b bytes' in the header, but calls use a elements", "a*b bytes", lambda a, b: a)

    def test_an_entry_by_hand_that_contradicts_calls_is_named(self):
        self.expect_fault("pData is 'in' by hand, but calls show 'inout'", "bytes", lambda a, b: a, by_hand={"directions": {"Change.pData": "in"}})

    def test_a_described_argument_must_exist(self):
        self.expect_fault("no argument other", "bytes pData\n/// @param other  nothing", lambda a, b: a)

    def test_a_statement_about_callers_must_name_something(self):
        functions = [{"plain_name": "Change", "arguments": [{"name": "a"}]}]
        empty = {"regions_inside": {"functions": []}, "lists": {}, "ranges": {}, "roles": {}, "tails": {}}
        contracts.add(functions, {**empty, "ranges": {"Change.a": ["0", "9", "a digit"]}})
        self.assertEqual(functions[0]["arguments"][0]["range"], {"least": "0", "most": "9", "demand": "a digit"})
        for section, statement in (("ranges", {"Change.b": ["", "", ""]}), ("lists", {"Other": ["", "pX"]}),
                                   ("roles", {"scratch": ["Change.b"]}), ("regions_inside", {"functions": ["Other"]})):
            with self.assertRaisesRegex(contracts.ContractError, "there is no (Change.b|Other)"):
                contracts.add(functions, {**empty, section: statement})


if __name__ == "__main__":
    unittest.main()
