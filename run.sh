#!/usr/bin/env bash
# Builds a host and runs it: ./run.sh [host] [options] [picture...]. ./run.sh --help lists the hosts.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
hosts=$(sed -n 's/^nuv_add_example(\(.*\))$/\1/p' "$root/examples/CMakeLists.txt")

usage() {
  cat <<'END'
Builds a host and runs it.

Usage: ./run.sh [HOST] [OPTION]... [PICTURE]...

END
  for name in $hosts; do
    # The first line of the source says what the host does.
    printf '  %-15s %s\n' "$name" "$(sed -n '1s|^// ||p' "$root/examples/$name.cpp")"
  done
  cat <<'END'

The default HOST is find_lines. ./run.sh HOST --help lists its options. Without a picture, a host takes a photograph of
the project, and writes its results into the folder build. The script first installs the packages that the host needs
and that are missing.
END
}

host=find_lines
case ${1:-} in
  -h | --help)
    usage
    exit
    ;;
  *)
    if grep -qxF -- "${1:-}" <<<"$hosts"; then
      host=$1
      shift
    fi
    ;;
esac

# Whether an argument is a picture: it exists, is standard input, or is named like a picture.
has_picture=
for argument in "$@"; do
  case $argument in
    - | *.[pP][nN][gG] | *.[jJ][pP][gG] | *.[jJ][pP][eE][gG] | *.[bB][mM][pP] | *.[pP][gGpP][mM]) has_picture=yes ;;
    -h | --help | --version) has_picture=none ;;
    -*) ;;
    *) [ ! -e "$argument" ] || has_picture=yes ;;
  esac
done

source "$root/tools/setup.sh"
(cd "$root" && build_host "$host")
data=$root/examples/data
given="$*"
case ${has_picture:-$host} in
  find_lines | segment | threshold) set -- "$@" "$data/camera.bmp" ;;
  count_parts)
    set -- "$@" "$data/coins.bmp"
    [[ $given == *-b* ]] || set -- "$@" --background 40
    ;;
  gauge)
    set -- "$@" "$data/coins.bmp"
    [[ $given == *--[fwec]* || $given == *-f* ]] || set -- "$@" --width 172,262,90,12,30 --circle 336,125,20,8
    ;;
esac
[ "$has_picture" ] || [[ $given == *-o* ]] || set -- "$@" -o "$root/build/"
exec "$root/build/release/examples/$host" "$@"
