#!/usr/bin/env bash
# Builds the library and runs its tests: ./test.sh [preset]. The presets:
#   release      all tests of the optimised library; the default
#   sanitize     the tests under AddressSanitizer and UndefinedBehaviorSanitizer
#   threads      only the test of exports on several threads, under ThreadSanitizer
#   v2, v3, v4   the library built for that x86-64 level alone; under qemu if the processor lacks the level. If qemu lacks
#                it, too, nothing is run: the script prints NOT RUN and ends with 77
#   clang        built by clang
#   unoptimized  built with -O0 and without the vector extension
#   linux32, aarch64, windows, windows64  on these platforms
#   wasm, wasm-simd  WebAssembly without and with vector instructions, under Node.js
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source tools/setup.sh
preset=${1:-release}
targets=()
need_packages "${build_packages[@]}" "${test_packages[@]}"
case $preset in
  clang) need_packages clang ;;
  threads) targets=(nuv_export_tests) ;;
  v2 | v3 | v4)
    emulator=
    if ! has_level "$preset"; then
      need_packages qemu-user
      if ! has_level "$preset" qemu-x86_64 -cpu max; then
        echo "NOT RUN: the tests for x86-64-$preset. Neither this processor nor qemu-x86_64 has its instructions." >&2
        exit 77
      fi
      emulator="qemu-x86_64;-cpu;max"
      echo "This processor lacks instructions of x86-64-$preset: the tests run under qemu-x86_64" >&2
    fi
    configure_options=(-D "CMAKE_CROSSCOMPILING_EMULATOR=$emulator")
    ;;
  linux32) need_packages "${linux32_packages[@]}" ;;
  aarch64) need_packages "${aarch64_packages[@]}" ;;
  windows)
    need_packages "${windows_packages[@]}"
    need_32_bit_wine
    ;;
  windows64) need_packages "${windows64_packages[@]}" ;;
  wasm | wasm-simd) need_packages "${wasm_packages[@]}" ;;
esac
export WINEDEBUG=-all WINEPREFIX="$PWD/build/$preset/wine"
build "$preset" "${targets[@]}"
# Two programs that start Wine for the first time at once get in each other's way.
[[ $preset != windows* ]] || wine cmd /c exit
ctest --preset "$preset" -j "$(nproc)"
