#!/usr/bin/env bash
# Makes the wheel of the Python package in dist/, and tries it in a fresh environment. Needs no network.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
source tools/setup.sh
need_packages "${build_packages[@]}" python3-numpy python3-setuptools python3-wheel python3-pip python3-venv
[ -f build/release/CMakeCache.txt ] || configure_options=(-D NUV_BUILD_TESTS=OFF)
build release NuvImgSDK2014DLL nuvimgsdk_c
work=$PWD/build/package/python
rm -rf "$work"
mkdir -p "$work/wheel" dist
cp -rL bindings/python/{nuvimgsdk,setup.py,pyproject.toml} "$work/wheel"
rm -rf "$work/wheel/nuvimgsdk/__pycache__"
for library in build/release/libNuvImgSDK2014DLL build/release/bindings/libnuvimgsdk_c; do
  name=$(readelf -d "$library.so" | sed -n 's/.*SONAME.*\[\(.*\)\]/\1/p')
  cmake -E copy "$(readlink -f "$library.so")" "$work/wheel/nuvimgsdk/$name"
  strip "$work/wheel/nuvimgsdk/$name"
done
# The C library finds the other one beside itself, not in the build directory.
old=$(readelf -d "$work"/wheel/nuvimgsdk/libnuvimgsdk_c.so.* | sed -n 's/.*R.*PATH.*\[\(.*\)\]/\1/p')
cat >"$work/rpath.cmake" <<END
file(RPATH_CHANGE FILE "\${FILE}" OLD_RPATH "$old" NEW_RPATH "\$ORIGIN")
END
cmake -D FILE="$(echo "$work"/wheel/nuvimgsdk/libnuvimgsdk_c.so.*)" -P "$work/rpath.cmake"
(cd "$work/wheel" && /usr/bin/python3 setup.py -q bdist_wheel -d "$work" >"$work/build.log" 2>&1) || {
  cat "$work/build.log" >&2
  exit 1
}
/usr/bin/python3 -m venv --system-site-packages "$work/venv"
"$work/venv/bin/pip" install -q --no-index --no-deps "$work"/nuvimgsdk-*.whl
(cd / && "$work/venv/bin/python" -c '
import numpy, nuvimgsdk as nuv
assert "site-packages" in nuv.__file__, nuv.__file__
edges = nuv.NuvGryImgSobel(numpy.eye(9, dtype="u1") * 255)
assert edges.shape == (9, 9) and edges.any()')
cp "$work"/nuvimgsdk-*.whl dist
ls -l dist/nuvimgsdk-*.whl
