# Functions that install the Debian packages that a command needs, and build presets. To be sourced.
# Only missing packages are installed, so a machine that has them all needs no network.

# has_package PACKAGE: whether the package is installed.
has_package() {
  [ "$(dpkg-query -W -f='${Status}' "$1" 2>/dev/null)" = 'install ok installed' ]
}

# need_packages PACKAGE...: installs those that are missing.
need_packages() {
  local missing=() package
  for package in "$@"; do
    has_package "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  echo "Installing: ${missing[*]}" >&2
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  "${as_root[@]}" apt-get update -qq >&2 || true  # if the index is too old, the installation fails
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" >&2
}

build_packages=(g++ cmake ninja-build libcli11-dev libstb-dev nlohmann-json3-dev)
font_packages=(python3 unifont)
test_packages=(libgtest-dev libgmock-dev binutils ffmpeg git pkgconf python3-clang-14 python3-numpy python3-pytest
  python3-scipy python3-skimage python3-distributed mypy "${font_packages[@]}")
bindings_packages=(gcc mono-mcs mono-runtime fp-compiler rustc)
wheel_packages=(binutils python3 python3-setuptools python3-wheel)
debian_packages=(git build-essential debhelper dh-python help2man lintian libstb-dev nlohmann-json3-dev
  "${wheel_packages[@]}")
style_packages=(git clang clang-format clang-tidy doxygen)
bench_packages=(python3 libbenchmark-dev libopencv-dev libyuv-dev libleptonica-dev libvips-dev)
# Tests for other platforms build GoogleTest from its sources.
linux32_packages=(g++-12-multilib googletest)
aarch64_packages=(g++-aarch64-linux-gnu qemu-user googletest)
windows_packages=(g++-mingw-w64-i686-posix llvm googletest wine)
windows64_packages=(g++-mingw-w64-x86-64-posix llvm googletest wine)
msvc_packages=(clang lld llvm)
wasm_packages=(clang lld llvm wasi-libc libc++-14-dev-wasm32 libc++abi-14-dev-wasm32 libclang-rt-14-dev-wasm32
  nodejs googletest)
site_packages=(doxygen doxygen-awesome-css)
fuzz_packages=(clang libclang-rt-dev)

# need_32_bit_wine: puts the libraries of Debian's 32-bit wine package beside those of the 64-bit one, which then runs
# 32-bit programs.
need_32_bit_wine() {
  local wine=/usr/lib/x86_64-linux-gnu/wine as_root=() architectures work
  [ -e "$wine/i386-windows/kernel32.dll" ] && return
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  architectures=$(dpkg --print-foreign-architectures)
  "${as_root[@]}" dpkg --add-architecture i386
  "${as_root[@]}" apt-get update -qq >&2 || true  # if the index is too old, the download fails
  work=$(mktemp -d)
  (cd "$work" && apt-get download -qq libwine:i386 && dpkg -x libwine_*.deb .) >&2
  [[ $architectures == *i386* ]] || "${as_root[@]}" dpkg --remove-architecture i386
  "${as_root[@]}" cp -rn "$work/usr/lib/i386-linux-gnu/wine/i386-windows" "$wine"
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive dpkg-reconfigure libwine:amd64 >&2  # adds zlib1.dll
  rm -rf "$work"
}

# need_site_modules: installs the site's development dependencies if their list is newer than they are.
need_site_modules() {
  command -v npm >/dev/null || need_packages npm  # which other distributions of Node.js include
  [ site/node_modules/.package-lock.json -nt site/package-lock.json ] ||
    npm ci --prefix site --no-audit --no-fund --ignore-scripts >&2
}

# has_level LEVEL [EMULATOR...]: whether this processor, or the emulated one, has all instructions of x86-64-LEVEL.
has_level() {
  "${@:2}" /lib64/ld-linux-x86-64.so.2 --help 2>/dev/null | grep "x86-64-$1 (supported" >/dev/null
}

# build PRESET [TARGET...]: configures with configure_options, and builds. It prints the number of steps and an estimate
# of the time, and the log if the build fails.
configure_options=()
build() {
  local preset=$1 log=$PWD/build/$1/build.log steps seconds time="less than a minute"
  shift
  mkdir -p "build/$preset"
  if cmake --preset "$preset" "${configure_options[@]}" >"$log" 2>&1; then
    steps=$(ninja -C "build/$preset" -n "$@" 2>/dev/null | grep -c '^\[') || true
    seconds=$((steps * 3 / $(nproc)))  # a step takes one core about 3 seconds
    [ "$seconds" -lt 60 ] || time="about $((seconds / 60 + 1)) minutes"
    [ "$steps" -eq 0 ] || echo "Building $preset: $steps steps, $time" >&2
    cmake --build --preset "$preset" ${1:+--target "$@"} 2>&1 | tee -a "$log" | show_progress && return
  fi
  cat "$log" >&2
  echo "Building $preset failed. The log above is in $log" >&2
  return 1
}

# show_progress: shows the newest step of the builder's output on one line, if standard error is a terminal.
show_progress() {
  local line
  if [ ! -t 2 ]; then
    cat >/dev/null
    return
  fi
  while IFS= read -r line; do
    [[ $line != \[* ]] || printf '\r\033[K%.70s' "$line" >&2
  done
  printf '\r\033[K' >&2
}

# build_host NAME: builds an example in build/release. The tests are configured only if their packages are installed.
build_host() {
  local configure_options=() package
  need_packages "${build_packages[@]}"
  for package in "${test_packages[@]}"; do
    has_package "$package" || configure_options=(-D NUV_BUILD_TESTS=OFF)
  done
  build release "$1"
}
