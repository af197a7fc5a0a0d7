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
# Tests for other platforms build GoogleTest for them.
linux32_packages=(g++-12-multilib googletest)
aarch64_packages=(g++-aarch64-linux-gnu qemu-user googletest)
windows_packages=(g++-mingw-w64-i686-posix googletest wine)
fuzz_packages=(clang libclang-rt-dev)

# need_32_bit_wine: Debian's wine runs 32-bit programs once the libraries of its 32-bit package lie beside its own.
need_32_bit_wine() {
  local wine=/usr/lib/x86_64-linux-gnu/wine as_root=() work
  [ -e "$wine/i386-windows/zlib1.dll" ] && return
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  "${as_root[@]}" dpkg --add-architecture i386
  "${as_root[@]}" apt-get update -qq >&2 || true  # the download tells whether the index that it needs is there
  work=$(mktemp -d)
  (cd "$work" && apt-get download -qq libwine:i386 && dpkg -x libwine_*.deb .) >&2
  "${as_root[@]}" cp -rn "$work/usr/lib/i386-linux-gnu/wine/i386-windows" "$wine"
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive dpkg-reconfigure libwine:amd64 >&2  # adds zlib1.dll
  rm -rf "$work"
}

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
