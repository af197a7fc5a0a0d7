"""Puts the package of the source tree and the built C library in the path of the tests."""

import os
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ.get("NUV_BUILD_DIR", ROOT / "build" / "release"))
os.environ.setdefault("NUVIMGSDK_LIBRARY", str(BUILD / "bindings" / "libnuvimgsdk_c.so"))
sys.path.insert(0, str(ROOT / "bindings" / "python"))
