#!/usr/bin/env bash
# Builds the library with every supported compiler, for every platform and x86-64 level, and runs its tests there:
# ./test-platforms.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
not_run=()
for preset in release clang unoptimized v2 v3 v4 linux32 aarch64 wasm wasm-simd; do
  status=0
  ./test.sh "$preset" || status=$?
  case $status in
    0) ;;
    77) not_run+=("$preset") ;;
    *) exit "$status" ;;
  esac
done
./test-windows.sh
[ ${#not_run[@]} -eq 0 ] || echo "NOT RUN, because neither this processor nor qemu has the instructions: ${not_run[*]}"
