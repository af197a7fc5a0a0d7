#!/usr/bin/env bash
# Builds the library for 32-bit and 64-bit Windows and runs the tests under Wine: ./test-windows.sh
# It also checks that the DLL needs only libraries of Windows itself, and that find_lines gives the same bytes as on Linux.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source tools/setup.sh

# check PRESET PROCESSOR: builds and tests one Windows platform.
check() {
  local bin=$PWD/build/$1/bin work=$PWD/build/$1/find_lines needed others
  ./test.sh "$1"
  needed=$("$2-w64-mingw32-objdump" -p "$bin/NuvImgSDK2014DLL.dll" | sed -n 's/.*DLL Name: //p')
  [ "$needed" ]
  if others=$(grep -ivE '^(kernel32|msvcrt)\.dll$' <<<"$needed"); then
    echo "The library needs libraries that Windows does not have:" $others >&2
    exit 1
  fi

  build_host find_lines
  mkdir -p "$work/here" "$work/there"
  cp examples/data/camera.bmp "$work"
  (cd "$work/here" && "$OLDPWD/build/release/examples/find_lines" --csv ../camera.bmp lines.bmp >lines.csv)
  (cd "$work/there" && WINEDEBUG=-all WINEPREFIX="$bin/../wine" wine "$bin/find_lines.exe" --csv ../camera.bmp lines.bmp |
    tr -d '\r' >lines.csv)
  diff -r "$work/here" "$work/there"
  echo "find_lines gives the same bytes on Windows ($1)"
}

check windows i686
check windows64 x86_64
