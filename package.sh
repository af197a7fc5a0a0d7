#!/usr/bin/env bash
# Makes the packages in dist/: Debian packages of this machine's architecture, a wheel for Python, and a zip file for
# Windows. ./package.sh [debian|wheel|windows]: only these. ./test-packages.sh tries the Debian packages and the wheel in
# a bare system.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source tools/setup.sh
version=$(sed -n 's/^  VERSION \([0-9.]*\)$/\1/p' CMakeLists.txt)

# fail SENTENCE: ends the script.
fail() {
  echo "package.sh: $1" >&2
  exit 1
}

# The packages are built from a copy of the files that git lists, as they are now, and with Debian's Python. Their tests
# are those of ./test.sh, so they are not repeated.
make_debian() {
  need_packages "${build_packages[@]}" "${debian_packages[@]}"
  local work=build/package/debian copy=build/package/debian/nuvimgsdk2014dll-$version
  rm -rf "$work" dist/*nuvimgsdk*.{deb,dsc,tar.*,buildinfo,changes}
  mkdir -p "$copy"
  git ls-files -z | xargs -0 cp --parents -t "$copy"
  echo "Building the Debian packages; the log is $work/build.log" >&2
  (cd "$copy" && PATH=/usr/bin:$PATH DEB_BUILD_OPTIONS='nocheck noautodbgsym' DEB_BUILD_PROFILES=nocheck \
    dpkg-buildpackage -us -uc) >"$work/build.log" 2>&1 || {
    tail -n 50 "$work/build.log" >&2
    fail "building the Debian packages failed; the log is $work/build.log"
  }
  lintian --fail-on error,warning "$work"/*.changes || fail "lintian refuses the Debian packages"
  cp "$work"/*.deb "$work"/*.dsc "$work"/*.tar.* "$work"/*.buildinfo "$work"/*.changes dist
}

# The wheel is pure Python with both libraries beside it, so that one file serves every Python 3 of this platform. The
# installed C library looks for the other one in its own directory.
make_wheel() {
  need_packages "${build_packages[@]}" "${wheel_packages[@]}"
  local work=$PWD/build/package/wheel configure_options=()
  [ -e build/release/CMakeCache.txt ] || configure_options=(-D NUV_BUILD_TESTS=OFF -D NUV_BUILD_EXAMPLES=OFF)
  build release NuvImgSDK2014DLL nuvimgsdk_c
  rm -rf "$work" dist/nuvimgsdk-*.whl
  mkdir -p "$work"
  cp -rL bindings/python "$work/source"
  cp LICENSE "$work/source"
  cmake --install build/release --strip --prefix "$work/installed" >"$work/build.log"
  find "$work/installed" -name 'lib*.so.*' -type l -exec cp -L -t "$work/source/nuvimgsdk" {} +
  (cd "$work/source" && /usr/bin/python3 setup.py bdist_wheel -d "$work") >>"$work/build.log" 2>&1 || {
    tail -n 50 "$work/build.log" >&2
    fail "building the wheel failed; the log is $work/build.log"
  }
  cp "$work"/nuvimgsdk-*.whl dist
}

# One directory for each width, which find_package reads, with the libraries for MSVC (.lib) and MinGW (.dll.a).
make_windows() {
  need_packages "${build_packages[@]}" "${windows_packages[@]}" "${windows64_packages[@]}"
  local name=NuvImgSDK2014DLL-$version-windows preset width file
  local root=$PWD/build/package/windows/$name
  rm -rf "$root" dist/*-windows.zip
  mkdir -p "$root"
  for preset in windows windows64; do
    width=x86
    [ "$preset" = windows ] || width=x64
    build "$preset" NuvImgSDK2014DLL nuvimgsdk_c nuv_import_library
    cmake --install "build/$preset" --strip --prefix "$root/$width" >/dev/null
    for file in bin/NuvImgSDK2014DLL.dll bin/nuvimgsdk_c.dll include/NuvImgSDK2014DLL.h include/nuvimgsdk_c.h \
      lib/{NuvImgSDK2014DLL,nuvimgsdk_c}.lib lib/lib{NuvImgSDK2014DLL,nuvimgsdk_c}.dll.a; do
      [ -s "$root/$width/$file" ] || fail "$width/$file is missing from the package for Windows"
    done
  done
  cp README.md CHANGELOG.md LICENSE "$root"
  cp docs/windows.md "$root/WINDOWS.md"
  (cd "$root/.." && cmake -E tar cf "$name.zip" --format=zip "$name")
  cp "$root/../$name.zip" dist
}

mkdir -p dist
case ${1-} in
  '')
    make_debian
    make_wheel
    make_windows
    ;;
  debian) make_debian ;;
  wheel) make_wheel ;;
  windows) make_windows ;;
  *) fail "unknown package $1: debian, wheel or windows" ;;
esac
ls -l dist
