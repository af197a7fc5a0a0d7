#!/usr/bin/env bash
# Runs the fuzzers: ./fuzz.sh [seconds for each (600)] [target...]; all targets if none is named.
# An input that stops a fuzzer is written to build/fuzz/found/TARGET. Copy it to fuzz/seeds/TARGET, and the tests replay
# it from then on.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source tools/setup.sh
need_packages "${build_packages[@]}" "${fuzz_packages[@]}"
seconds=${1:-600}
shift || true
[ $# -gt 0 ] || set -- bmp chain_lines contours hough_lines segmentation sequence_files
build fuzz
for target in "$@"; do
  mkdir -p "build/fuzz/corpus/$target" "build/fuzz/found/$target"
  # A reader must not allocate more memory than the BMP file can fill, whatever its header states.
  limit=$([ "$target" = bmp ] && echo 32 || echo 64)
  "build/fuzz/fuzz/${target}_fuzz" -malloc_limit_mb="$limit" -max_len=4096 -timeout=20 -max_total_time="$seconds" \
    -artifact_prefix="build/fuzz/found/$target/" "build/fuzz/corpus/$target" "fuzz/seeds/$target"
done
