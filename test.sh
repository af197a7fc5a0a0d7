#!/usr/bin/env bash
# Builds the library and runs all its tests: ./test.sh [preset]; the presets are release, sanitize and clang.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source tools/setup.sh
preset=${1:-release}
need_packages "${build_packages[@]}" "${test_packages[@]}"
[ "$preset" = clang ] && need_packages clang
build "$preset"
ctest --preset "$preset" -j "$(nproc)"
