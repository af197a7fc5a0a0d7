#!/usr/bin/env bash
# Measures the library beside its peers on one thread and prints their ratios:
#   ./bench.sh [--level v2|v3|v4] [name pattern] [--markdown FILE --section NAME]
#   ./bench.sh [--level v2|v3|v4] --growth [--all] [name]
#   ./bench.sh --clang [name pattern]
#   ./bench.sh --web [--markdown FILE]
# A ratio above 1 means that the library is the faster one. Rows without a peer show only their time.
# --level builds the library for that x86-64 level alone, so that a new processor measures the code that an older one
# runs.
# --clang measures the library built by clang beside that built by g++, both for x86-64-v3. The two alternate at each
# row. A ratio above 1 means that the build by clang is the slower one.
# --web measures ten functions as WebAssembly under Node.js beside those built for x86-64-v2 and x86-64-v3, and beside the
# same WebAssembly in Chromium.
# --growth lists the exports whose time grows faster than their pixels or their windows; --all lists the times of all
# exports.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source tools/setup.sh
need_packages "${build_packages[@]}" "${bench_packages[@]}"
if [ "${1:-}" = --web ]; then
  need_packages "${wasm_packages[@]}" chromium
  need_site_modules
  for preset in bench-wasm bench-v2 bench-v3; do build "$preset" nuv_web_bench; done
  build wasm-simd nuvimgsdk_web
  program=bench/web/nuv_web_bench
  exec tools/web_report "WebAssembly=node --no-warnings cmake/run_wasm.mjs build/bench-wasm/$program.wasm" \
    "x86-64-v2=build/bench-v2/$program" "x86-64-v3=build/bench-v3/$program" \
    "Chromium=node bench/web/browser_bench.mjs build/wasm-simd/bindings/web/nuvimgsdk.wasm" "${@:2}"
fi
if [ "${1:-}" = --clang ]; then
  need_packages clang
  for preset in bench-v3 bench-clang; do build "$preset" nuv_bench; done
  exec tools/bench_report build/bench-v3/bench/nuv_bench "${@:2}" --beside build/bench-clang/bench/nuv_bench
fi
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
