#!/usr/bin/env bash
# Runs the fuzzers: ./fuzz.sh [seconds for each, 600] [target...], without a name all of them.
# What stops one is left in build/fuzz/found. It goes into fuzz/seeds/TARGET, which the tests play from then on.
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
  # A header of a BMP file must not get more memory than its file can fill.
  limit=$([ "$target" = bmp ] && echo 32 || echo 64)
  "build/fuzz/fuzz/${target}_fuzz" -malloc_limit_mb="$limit" -max_len=4096 -timeout=20 -max_total_time="$seconds" \
    -artifact_prefix="build/fuzz/found/$target/" "build/fuzz/corpus/$target" "fuzz/seeds/$target"
done
