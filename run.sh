#!/usr/bin/env bash
# Builds the example find_lines and finds the straight edges of a photograph with it. ./run.sh --help lists the options.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

usage() {
  cat <<'END'
Finds the straight edges of a photograph, lists them, and draws them into a copy of it.

Usage: ./run.sh [options] [picture.bmp [result.bmp]]

  picture.bmp               BMP file of 8 or 24 bits per pixel (default: a photograph of the project,
                            whose result is build/camera_lines.bmp)
  result.bmp                BMP file to write (default: PICTURE_lines.bmp in the current directory)
  -t, --threshold N         least step in gray level of an edge, 1 to 255 (24); below 8 the exact edge filter is used
  -l, --min-length N        least length of a segment in pixels (1/20 of the shorter side, at least 12)
  -s, --straightness X      least ratio of the distance between a segment's ends to the length of its edge (0.9)
  -d, --deviation X         greatest mean distance of the edge from the line between its ends, in pixels (1)
  -m, --max-lines N         most segments to keep (depends on the size of the picture)
      --csv                 print the segments as comma-separated values and nothing else
  -h, --help                print this

Segments are listed from the longest to the shortest. Angles are in degrees to the x axis, from 0 up to 180, and grow
clockwise, because y grows downwards. The script first installs the packages that the example needs and that are
missing.
END
}

has_picture=
is_value=
for argument in "$@"; do
  if [ "$is_value" ]; then
    is_value=
    continue
  fi
  case $argument in
    -h | --help)
      usage
      exit
      ;;
    -[tlsdm] | --threshold | --min-length | --straightness | --deviation | --max-lines) is_value=yes ;;
    -*) ;;
    *) has_picture=yes ;;
  esac
done

source "$root/tools/setup.sh"
(cd "$root" && build_host find_lines)
if [ ! "$has_picture" ]; then
  set -- "$@" "$root/examples/data/camera.bmp" "$root/build/camera_lines.bmp"
  echo "Writing the result to $root/build/camera_lines.bmp" >&2
fi
exec "$root/build/release/examples/find_lines" "$@"
