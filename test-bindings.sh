#!/usr/bin/env bash
# Builds the C library, and runs a host of each language against it: C, C#, Pascal and Rust.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source tools/setup.sh
need_packages "${build_packages[@]}" "${test_packages[@]}" "${bindings_packages[@]}"
build release nuvimgsdk_c find_lines
log=build/release/bindings.log
ctest --preset release -R '^bindings\.' | tee "$log"
for language in c cs pas rs; do
  grep -q " bindings\.host\.$language \.* *Passed" "$log" || {
    echo "The host bindings/hosts/find_lines.$language did not run" >&2
    exit 1
  }
done
