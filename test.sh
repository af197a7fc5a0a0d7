#!/usr/bin/env bash
# Builds the library and runs all its tests: ./test.sh [preset]; release, if none is given. The others:
#   sanitize  under AddressSanitizer and UndefinedBehaviorSanitizer
#   threads   all exports on several threads under ThreadSanitizer; that test alone
#   clang, unoptimized, linux32, aarch64, windows  by that compiler, with -O0, on those platforms
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source tools/setup.sh
preset=${1:-release}
targets=()
need_packages "${build_packages[@]}" "${test_packages[@]}"
case $preset in
  clang) need_packages clang ;;
  threads) targets=(nuv_export_tests) ;;
  linux32) need_packages "${linux32_packages[@]}" ;;
  aarch64) need_packages "${aarch64_packages[@]}" ;;
  windows)
    need_packages "${windows_packages[@]}"
    need_32_bit_wine
    export WINEDEBUG=-all WINEPREFIX="$PWD/build/wine"
    ;;
esac
build "$preset" "${targets[@]}"
ctest --preset "$preset" -j "$(nproc)"
