#!/usr/bin/env bash
# Builds the library for every platform and compiler that gives the same results, and runs its tests there:
# ./test-platforms.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
for preset in release clang unoptimized linux32 aarch64; do ./test.sh "$preset"; done
./test-windows.sh
