#!/usr/bin/env bash
# Checks the formatting with clang-format, the headers' documentation with Doxygen, the dependencies between the rooms,
# and the library and its examples with clang-tidy.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source tools/setup.sh
need_packages "${build_packages[@]}" "${test_packages[@]}" "${style_packages[@]}"
git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run -Werror
echo "formatting is as configured"
mkdir -p build
doxygen docs/Doxyfile
echo "doxygen found nothing"
tools/check_rooms
cmake --preset clang >/dev/null
git ls-files 'src/*.cpp' 'examples/*.cpp' |
  xargs -P "$(nproc)" -n 4 clang-tidy -p build/clang --quiet 2>&1 |
  { grep -vE '^[0-9]+ warnings? generated|^Suppressed|^Use -header-filter' || true; }
echo "clang-tidy found nothing"
