#!/usr/bin/env bash
# Measures the library beside its peers on one thread and prints their ratios:
#   ./bench.sh [--level v2|v3|v4] [name pattern] [--markdown FILE --section NAME]
#   ./bench.sh [--level v2|v3|v4] --growth [--all] [name]
# A ratio above 1 means that the library is the faster one. Rows without a peer show only their time.
# --level builds the library for that x86-64 level alone, so that a new processor measures the code that an older one
# runs.
# --growth lists the exports whose time grows faster than their pixels or their windows; --all lists the times of all
# exports.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source tools/setup.sh
need_packages "${build_packages[@]}" "${bench_packages[@]}"
preset=bench
if [ "${1:-}" = --level ]; then
  preset=bench-${2:?--level needs v2, v3 or v4}
  shift 2
fi
build "$preset"
if [ "${1:-}" = --growth ]; then
  shift
  exec "build/$preset/bench/nuv_growth" "$@"
fi
tools/bench_report "build/$preset/bench/nuv_bench" "$@"
