#!/usr/bin/env bash
# Builds the library for 32-bit and 64-bit Windows and runs the tests under Wine: ./test-windows.sh
# It also checks that the DLL needs only libraries of Windows itself, that find_lines gives the same bytes as on Linux,
# and that a host built for the ABI of MSVC prints the same as on Linux.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source tools/setup.sh

# run_wine PRESET PROGRAM...: runs a program, and makes the ends of its lines those of Linux.
run_wine() {
  WINEDEBUG=-all WINEPREFIX="$root/build/$1/wine" wine "${@:2}" | tr -d '\r'
}

# check PRESET PROCESSOR: builds and tests one Windows platform.
check() {
  local bin=$root/build/$1/bin work=$root/build/$1/find_lines needed others
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
  (cd "$work/here" && "$root/build/release/examples/find_lines" --csv ../camera.bmp -o lines.png >lines.csv)
  (cd "$work/there" && run_wine "$1" "$bin/find_lines.exe" --csv ../camera.bmp -o lines.png >lines.csv)
  diff -r "$work/here" "$work/there"
  echo "find_lines gives the same bytes on Windows ($1)"
}

# check_msvc_host PRESET PROCESSOR: builds a host for the ABI of MSVC and compares what it prints with what it prints on
# Linux. It is linked to the import libraries of the DLL and of kernel32, and to nothing else. It is built three times:
# without windows.h, with windows.h before the library's header, and with windows.h after it.
check_msvc_host() {
  local build=$root/build/$1 work=$root/build/$1/msvc machine=i386:x86-64 windows_h includes
  local options=(--target="$2-pc-windows-msvc" -std=c++17 -O1 -ffreestanding -fno-builtin -mno-stack-arg-probe
    -Wall -Wextra -Werror -I tests/msvc -I "$build/tests" -I include)
  # clang reads the system's headers of MinGW if it does not say that it is MSVC.
  local with_windows_h=(-isystem "/usr/$2-w64-mingw32/include" -fgnuc-version=4.2.1 -U_MSC_VER)
  [ "$2" != i686 ] || {
    machine=i386
    with_windows_h+=(-D_X86_)
  }
  mkdir -p "$work"
  g++ -std=c++17 -I "$build/tests" -I include tests/msvc/host.cpp -o "$work/here" \
    -L build/release -lNuvImgSDK2014DLL -Wl,-rpath,"$root/build/release"
  "$work/here" >"$work/here.txt"

  # The number of bytes of the arguments belongs to names of 32-bit Windows only.
  sed "$([ "$2" = i686 ] || echo 's/@.*//')" tests/msvc/kernel32.def >"$work/kernel32.def"
  llvm-dlltool -m "$machine" -k -d "$work/kernel32.def" -l "$work/kernel32.lib"
  for windows_h in without before after; do
    case $windows_h in
      without) includes=() ;;
      before) includes=("${with_windows_h[@]}" -D HOST_WINDOWS_H=1) ;;
      after) includes=("${with_windows_h[@]}" -D HOST_WINDOWS_H=2) ;;
    esac
    clang "${options[@]}" "${includes[@]}" -c tests/msvc/host.cpp -o "$work/host.obj"
    lld-link /nologo /nodefaultlib /entry:start /subsystem:console "/out:$build/bin/msvc_host.exe" \
      "$work/host.obj" "$build/NuvImgSDK2014DLL.lib" "$work/kernel32.lib"
    if ! run_wine "$1" "$build/bin/msvc_host.exe" >"$work/there.txt"; then
      cat "$work/there.txt" >&2
      echo "The host for the ABI of MSVC failed ($1, $windows_h windows.h)" >&2
      exit 1
    fi
    diff "$work/here.txt" "$work/there.txt"
  done
  echo "A host for the ABI of MSVC prints the same as on Linux ($1)"
}

root=$PWD
need_packages "${msvc_packages[@]}"
check windows i686
check_msvc_host windows i686
check windows64 x86_64
check_msvc_host windows64 x86_64
