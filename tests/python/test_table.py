"""Every function, called from Python, does what the tables of checksums state.

The scenes are those of the C++ tests. Where such a test calls the export, Python is asked: it calls the wrapper with
`out` for all memory, and the scene adds up the same bytes.
"""

import ctypes
import pathlib

import numpy
import pytest

import conftest
from nuvimgsdk import _by_name, _library, _lists, _machine, _values

BOUNDARY = pathlib.Path(__file__).resolve().parents[1] / "boundary"
TYPICAL, HOSTILE, SPECIAL = range(3)
TINY = 8  # special scenes of hardly any pixels come first; Python refuses some of their arguments


class PlainArgument(ctypes.Structure):
    _fields_ = [("is_pointer", ctypes.c_int32), ("size", ctypes.c_int32), ("numbers", ctypes.POINTER(ctypes.c_double)),
                ("address", ctypes.c_void_p), ("memory", ctypes.c_void_p), ("bytes", ctypes.c_uint64)]


MAKER = ctypes.CFUNCTYPE(ctypes.c_int32, ctypes.POINTER(PlainArgument), ctypes.c_int32, ctypes.c_void_p)

scenes = ctypes.CDLL(str(conftest.BUILD / "tests" / "libnuv_played_calls.so"))
scenes.played_name.restype = ctypes.c_char_p
scenes.play.restype = ctypes.c_bool
scenes.play.argtypes = [ctypes.c_int32, ctypes.c_int32, ctypes.c_uint32, MAKER, ctypes.POINTER(ctypes.c_uint64),
                        ctypes.POINTER(ctypes.c_bool)]
scenes.memory_by_new.restype = ctypes.c_void_p
scenes.memory_by_new.argtypes = [ctypes.c_uint64]

ROWS = {scenes.played_name(i).decode(): i for i in range(scenes.played_calls())}
BY_SIGNATURE = {f["signature"]: f["plain_name"] for f in _library.functions.values()}


def rows(file):
    return {line.split("\t")[0]: line.split("\t")[1:] for line in (BOUNDARY / file).read_text().splitlines()}


TYPICAL_ROWS, SPECIAL_ROWS = rows("digests.tsv"), rows("special_digests.tsv")


def number(a, p):
    """The value of an argument that is no pointer."""
    if a.base == "tagRECT":
        return [int(n) for n in p.numbers[:4]]
    return {"double": float, "bool": bool}.get(a.base, int)(p.numbers[0])


class Player:
    """Makes the calls of one function, and keeps what went wrong in them."""

    def __init__(self, name):
        self.name = name
        self.plan = _by_name.single(name).plan
        self.fault = None
        self.refusals = 0
        self.calls = 0
        self.maker = MAKER(self.make)

    def make(self, arguments, size, result):
        try:
            self.call(arguments[:size], result)
            self.calls += 1
            return 1
        except (ValueError, ZeroDivisionError):
            self.refusals += 1
            return int(self.kind == HOSTILE)
        except BaseException as fault:  # which must not leave a callback
            self.fault = fault
            return 0

    def call(self, plain, result):
        plan = self.plan
        values = {a.cname: number(a, p) for a, p in zip(plan.arguments, plain) if not p.is_pointer}
        by_hand = getattr(self, "by_hand_" + self.name, None)
        if by_hand is not None:
            by_hand(plain, values, result)
            return
        parameters, out, texts = {}, {}, {}
        for a, p in zip(plan.arguments, plain):
            if a.role == "number":
                parameters[a.name] = values[a.cname]
            elif a.role == "text":
                parameters[a.name] = ctypes.string_at(p.address)
            elif a.role == "in" and a.default == "None" and p.address is None:
                parameters[a.name] = None
            elif a.role == "written":
                texts[a.name] = (numpy.zeros(p.bytes + 2048, "u1"), p)
                ctypes.memmove(texts[a.name][0].ctypes.data, p.address, p.bytes)
                out[a.name] = texts[a.name][0]
            elif a.role != "known":
                data = self.memory(a, p, values)
                if a.role in ("in", "changed", "moved"):
                    parameters[a.name] = data.copy()[0].item() if a.role == "moved" else data
                if a.role != "in":
                    out[a.name] = data
                if a.tail is not None:
                    pixels = values["width"] * values["height"]
                    parameters["tail"] = data[pixels:]
                    parameters[a.name] = data[:pixels].reshape(values["height"], values["width"])
        if plan.outputs:
            parameters["out"] = out
        for a in plan.arguments:
            if a.role == "known" and eval(a.source, {}, parameters) != values[a.cname]:
                raise ValueError("the arrays of Python cannot have this size")
        returned = _by_name.single(self.name)(**parameters)
        for data, p in texts.values():
            ctypes.memmove(p.address, data.ctypes.data, p.bytes)
        if plan.result != "void":
            value = returned[0] if len(plan.fields) > 1 else returned
            self.store(value, result)

    def store(self, value, result):
        if self.plan.function.get("result_memory"):
            address = None
            if value is not None:
                address = scenes.memory_by_new(value.nbytes)
                ctypes.memmove(address, value.ctypes.data, value.nbytes)
            ctypes.c_void_p.from_address(result).value = address
        else:
            _library.result_type(self.plan.function).from_address(result).value = value

    def memory(self, a, p, values):
        """The memory of a scene as an array of the shape that Python demands."""
        dtype = numpy.dtype("V16") if a.base == "tagRECT" else _values.DTYPES.get(a.base, _values.U1)
        data = numpy.frombuffer((ctypes.c_char * p.bytes).from_address(p.memory), dtype) if p.bytes else \
            numpy.zeros(0, dtype)
        if self.name == "NuvImgChainLines_Debug":
            _library.services.image = numpy.zeros((1, p.bytes // 6), "u1")  # the scene made the detection
            return data.reshape((6, 1, p.bytes // 6))
        if a.tail is not None:
            return data
        if a.shape is None:
            names = dict(values, rows=data.size)
            if "< height ?" in a.count:  # the rest is not read
                return numpy.append(data, numpy.zeros(max(values["N"] - data.size, 0), dtype))
            return data[:max(eval(_machine.expression(a.count), {}, names), 0)]
        if a.role not in ("in", "changed"):
            return data.reshape(self.result_shape(a, values, data))
        width = max(values[a.shape[1]], 0)
        channels = [3] if a.shape[2:] == ["(bRGB ? 3 : 1)"] and values["bRGB"] else \
            [n for n in a.shape[2:] if isinstance(n, int)]
        per_row = width * (channels or [1])[0]
        height = max(values[a.shape[0]], 0) if a.shape[0] in values else data.size // per_row if per_row else 0
        return data.reshape((height, width, *channels))

    def result_shape(self, a, values, data):
        rows = data.size // values["width"] if values.get("width", 0) > 0 else 0
        shape = [max(eval(_machine.expression(size), {}, {**values, "rows": rows}), 0) for size in a.shape]
        if a.shape[2:] == ["(bRGB ? 3 : 1)"] and not values["bRGB"]:
            del shape[2]
        if a.shape[0] == "y2+1":
            shape[0] = data.size // shape[1] if shape[1] else 0
        return shape

    def image(self, p, values):
        return self.memory(self.plan.arguments[0], p, values)

    def made_list(self, plain, values, result, numbers):
        image = self.image(plain[0], values)
        work = numpy.frombuffer((ctypes.c_char * plain[1].bytes).from_address(plain[1].memory), "u1") \
            if plain[1].bytes else numpy.zeros(0, "u1")
        names = [a.name for a in self.plan.arguments[:2]]
        made = _by_name.single(self.name)(image, *numbers, out=dict(zip(names, (image, work)))).result
        ctypes.c_void_p.from_address(result).value = made.give_up()

    def by_hand_NuvGetContours(self, plain, values, result):
        self.made_list(plain, values, result, [values[n] for n in ("minPerimeter", "minArea", "mode")])

    def by_hand_NuvMergeSplit(self, plain, values, result):
        self.made_list(plain, values, result, [values[n] for n in ("minArea", "minGry", "ratio")])

    def by_hand_NuvFreeContours(self, plain, values, result):
        _by_name.single(self.name)(_lists.ContourList(plain[0].address))

    def by_hand_NuvFreeRegionStruct(self, plain, values, result):
        _by_name.single(self.name)(_lists.RegionList(plain[0].address))

    def by_hand_NuvImgChainLines_GetNxtCodeLine(self, plain, values, result):
        line = _by_name.single(self.name)()
        self.line = line  # its points outlive the call
        ctypes.c_bool.from_address(result).value = line.result
        if line.result:
            for p, points in zip(plain, (line.X, line.Y)):
                ctypes.c_void_p.from_address(p.address).value = points.ctypes.data
            ctypes.c_int32.from_address(plain[2].address).value = line.X.size

    def by_hand_NuvImgChainLines_GetLines(self, plain, values, result):
        # The scene made the detection, so only the scene knows the number of segments.
        _library.services.lines = 0
        address = _library.c_function(self.name)()
        assert (_by_name.single(self.name)() is None) == (address is None)
        ctypes.c_void_p.from_address(result).value = address

    def play_all(self, kind, seed):
        """The same, where Python must make every call."""
        refusals = self.refusals
        checksum = self.play(kind, seed)
        assert self.refusals == refusals, f"refused in scene {kind}/{seed}"
        return checksum

    def play(self, kind, seed):
        """The checksum of a scene; None if the contract forbids it."""
        self.kind = kind
        checksum, guards = ctypes.c_uint64(), ctypes.c_bool()
        played = scenes.play(ROWS[self.plan.function["signature"]], kind, seed, self.maker, ctypes.byref(checksum),
                             ctypes.byref(guards))
        if self.fault is not None:
            raise AssertionError(f"scene {kind}/{seed}") from self.fault
        assert not played or guards.value
        return checksum.value if played else None


def digest(checksums):
    total = 0xCBF29CE484222325
    for checksum in checksums:
        for byte in b"" if checksum is None else checksum.to_bytes(8, "little"):
            total = (total ^ byte) * 0x100000001B3 & 2**64 - 1
    return f"{total:016x}"


@pytest.mark.parametrize("name", sorted(_library.functions))
def test_results(name, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    player = Player(name)
    signature = player.plan.function["signature"]
    typical = digest([player.play(TYPICAL, seed) for seed in range(1, 33)])
    assert player.refusals == 0 and player.calls > 0
    special = digest([player.play(SPECIAL, seed) for seed in range(1, TINY + 1)] +
                     [player.play_all(SPECIAL, seed) for seed in range(TINY + 1, 25)])
    assert typical == TYPICAL_ROWS[signature][0]
    assert special == SPECIAL_ROWS[signature][0]


@pytest.mark.parametrize("name", sorted(_library.functions))
def test_hostile_arguments_do_no_harm(name, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    player = Player(name)
    for seed in range(1, 65):
        player.play(HOSTILE, seed)
