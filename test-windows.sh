#!/usr/bin/env bash
# Builds the library for 32-bit Windows and runs all its tests under Wine: ./test-windows.sh
# What is built needs nothing beside it but Windows itself, and find_lines gives what it gives here, to the byte.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source tools/setup.sh
./test.sh windows

bin=$PWD/build/windows/bin
needed=$(i686-w64-mingw32-objdump -p "$bin/NuvImgSDK2014DLL.dll" | sed -n 's/.*DLL Name: //p')
if others=$(grep -ivE '^(kernel32|msvcrt)\.dll$' <<<"$needed"); then
  echo "The library needs more than Windows has:" $others >&2
  exit 1
fi

build release find_lines
export WINEDEBUG=-all WINEPREFIX="$PWD/build/wine"
mkdir -p build/windows/here build/windows/there
cp examples/data/camera.bmp build/windows
(cd build/windows/here && ../../release/examples/find_lines --csv ../camera.bmp lines.bmp >lines.csv)
(cd build/windows/there && wine "$bin/find_lines.exe" --csv ../camera.bmp lines.bmp | tr -d '\r' >lines.csv)
diff -r build/windows/here build/windows/there
echo "find_lines gives the same bytes on Windows"
