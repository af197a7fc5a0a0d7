"""The functions of the library by their names in Python."""

import difflib
import threading

from . import _contracts as contracts
from . import _lists
from . import _machine as machine
from . import _overloads
from ._library import functions
from ._plan import plan

names = sorted({*functions, *(f["name"] for f in functions.values())})
_made = {}
_lock = threading.RLock()


def single(name):
    """The wrapper of the function with this plain name."""
    with _lock:
        if name not in _made:
            if name in contracts.BY_HAND:
                _made[name] = getattr(_lists, name)
                _made[name].plan = plan(functions[name])
                _made[name].__doc__ = machine.document(_made[name].plan)
                _made[name].__module__ = "nuvimgsdk"
            else:
                _made[name] = machine.make(name)
        return _made[name]


def results(name):
    """The class of the named tuples that a function returns, by its own name. pickle looks for it. None without one."""
    plain = name.removesuffix("Results")
    if plain == name or plain not in functions:
        return None
    return getattr(_lists, name, None) or single(plain).__globals__.get("Results")


def similar(name):
    """Names of functions that a misspelt name may mean."""
    part = name.removeprefix("Nuv").lower()
    containing = [known for known in names if part in known.lower()]
    return (containing or difflib.get_close_matches(name, names))[:3]


def function(name):
    """The function of this name: one overload, or one that chooses between several. None if there is none."""
    chosen = _overloads.choices(name)
    if len(chosen) > 1:
        return _overloads.dispatcher(name, single)
    if name in functions:
        return single(name)
    return single(chosen[0].name) if chosen else None
