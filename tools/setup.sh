# Installs what a command needs, by Debian package name, and only what is missing: a machine that has it all
# needs no network. To be sourced.

# need_packages PACKAGE...
need_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  echo "Installing: ${missing[*]}" >&2
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  "${as_root[@]}" apt-get update -qq >&2
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" >&2
}

build_packages=(g++ cmake ninja-build libcli11-dev)
test_packages=(libgtest-dev libgmock-dev binutils pkgconf)
style_packages=(clang clang-format clang-tidy)
bench_packages=(libbenchmark-dev libopencv-dev libyuv-dev)
font_packages=(unifont)

# build PRESET [TARGET...]: configures and builds, saying little unless it fails.
build() {
  local preset=$1 log
  shift
  log=$(mktemp)
  if ! { cmake --preset "$preset" && cmake --build --preset "$preset" ${1:+--target "$@"}; } >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}
