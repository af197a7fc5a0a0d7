#!/usr/bin/env bash
# Finds the straight edges of a photograph: ./run.sh [picture.bmp] [result.bmp] [options of find_lines]
# Without a picture it takes one that ships with the project.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source "$root/tools/setup.sh"
need_packages "${build_packages[@]}" "${test_packages[@]}"
(cd "$root" && build release find_lines)

[ $# -gt 0 ] || set -- "$root/examples/data/camera.bmp"
exec "$root/build/release/examples/find_lines" "$@"
