#!/usr/bin/env bash
# Measures the library beside its peers on one thread and prints their ratios:
#   ./bench.sh [--level v2|v3|v4] [name pattern]
# With --level the library is built for that x86-64 level alone, so that a new processor measures what an older
# one would run.
# A ratio above 1 means that the library is the faster one. Rows without a peer show their time alone.
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
# Repetitions of all rows take turns, so that a slow moment of the machine does not fall on one side.
"build/$preset/bench/nuv_bench" --benchmark_filter="${1:-.}" --benchmark_repetitions=9 --benchmark_min_time=0.05 \
  --benchmark_enable_random_interleaving=true --benchmark_report_aggregates_only=true 2>/dev/null |
  awk '
    match($0, /_median +[0-9]+ ns/) {
      row = side = substr($0, 1, RSTART - 1)
      sub(/.*\//, "", side); sub(/\/[^\/]*$/, "", row)
      median = substr($0, RSTART, RLENGTH)
      gsub(/_median +| ns/, "", median)
      if (!(row in peers)) { order[++rows] = row; peers[row] = "" }
      time[row, side] = median
      if (side != "nuv") peers[row] = peers[row] (peers[row] == "" ? "" : ";") side
    }
    END {
      printf "%-40s %12s   %s\n", "row", "time", "times as fast as"
      for (i = 1; i <= rows; ++i) {
        row = order[i]; line = ""
        n = split(peers[row], list, ";")
        for (p = 1; p <= n; ++p) line = line sprintf("%s %.2f  ", list[p], time[row, list[p]] / time[row, "nuv"])
        printf "%-40s %9.0f us   %s\n", row, time[row, "nuv"] / 1000, line
      }
    }'
