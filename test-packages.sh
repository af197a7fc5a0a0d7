#!/usr/bin/env bash
# Installs the Debian packages of dist/ in a bare Debian 12, and tries there what README.md promises: its host compiles
# and runs by pkg-config and by CMake, the C host does, the command-line programs run, and Python has the package: that of
# Debian, and in a fresh environment that of the wheel. It needs root.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source tools/setup.sh
need_packages debootstrap
[ "$(id -u)" -eq 0 ] || exec sudo "$0" "$@"
compgen -G 'dist/*.deb' >/dev/null || ./package.sh debian
compgen -G 'dist/*.whl' >/dev/null || ./package.sh wheel

system=$PWD/build/package/system
trap 'umount "$system/proc" 2>/dev/null || true' EXIT
mkdir -p "${system%/*}"
rm -rf --one-file-system "$system"
# The sources of packages are those of this machine.
mirror=$(apt-get indextargets --format '$(SITE)' 'Created-By: Packages' | head -n 1)
debootstrap --variant=minbase bookworm "$system" "$mirror" >build/package/debootstrap.log
cp /etc/resolv.conf "$system/etc"
mount -t proc proc "$system/proc"

mkdir "$system/try"
cp dist/*.{deb,whl} examples/data/coins.bmp examples/data/camera.bmp bindings/hosts/find_lines.c "$system/try"
mv "$system/try/coins.bmp" "$system/try/part.bmp"
# first_block LANGUAGE: the first block of README.md in that language. In C++ it is the host, and in CMake what a project
# writes.
first_block() {
  awk -v begin="\`\`\`$1" '$0 == begin { inside = 1; next } inside && /^```$/ { exit } inside' README.md
}
first_block cpp >"$system/try/host.cpp"
{
  echo 'cmake_minimum_required(VERSION 3.25)'
  echo 'project(host LANGUAGES CXX)'
  echo 'add_executable(your_host host.cpp)'
  first_block cmake
} >"$system/try/CMakeLists.txt"

# The wheel and the Debian package must give the same output, each with its own libraries.
cat >"$system/try/host.py" <<'END'
import sys
import nuvimgsdk as nuv

home = nuv.__file__.rpartition('/')[0]
assert home.startswith(sys.argv[1]), home
assert all(callable(getattr(nuv, name)) for name in nuv.__all__ if name.startswith('Nuv'))
with open('/proc/self/maps') as maps:
    loaded = {line.split()[-1] for line in maps if 'libnuvimgsdk_c' in line or 'libNuvImgSDK' in line}
assert len(loaded) == 2 and all(path.startswith(sys.argv[2]) for path in loaded), loaded
print(nuv.measure_parts(nuv.imread('part.bmp')))
END

cat >"$system/try/run" <<'END'
set -eux
cd /try
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq
apt-get install -y -qq --no-install-recommends ./*.deb
dpkg --audit
nuv-find-lines --csv camera.bmp >lines.csv
apt-get install -y -qq --no-install-recommends g++ pkgconf cmake make

g++ host.cpp $(pkg-config --cflags --libs NuvImgSDK2014DLL) -o host
./host | tee by_pkg_config
cmake -B build
cmake --build build
./build/your_host | cmp - by_pkg_config
grep -q 'object at' by_pkg_config

gcc -std=c99 -pedantic -Wall -Wextra -Werror find_lines.c $(pkg-config --cflags --libs nuvimgsdk_c) -o find_lines
./find_lines camera.bmp >segments
test "$(wc -l <segments)" -gt 10
test "$(wc -l <segments)" -eq "$(($(wc -l <lines.csv) - 1))"
ls /usr/share/man/man1/nuv-*.1.gz

python3 host.py /usr/lib/python3/dist-packages/ /usr/lib/ | tee by_debian
test "$(wc -l <by_debian)" -gt 10
apt-get install -y -qq --no-install-recommends python3-venv
apt-get purge -y -qq python3-nuvimgsdk libnuvimgsdk-c0.1 libnuvimgsdk2014dll0.1
python3 -m venv --system-site-packages fresh
fresh/bin/pip install --no-index ./*.whl
fresh/bin/python host.py /try/fresh/ /try/fresh/ | cmp - by_debian
END
env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root TERM=dumb chroot "$system" bash /try/run \
  >build/package/system.log 2>&1 || {
  tail -n 40 build/package/system.log >&2
  echo "The packages do not work in a bare system; the log is build/package/system.log" >&2
  exit 1
}
echo "The packages work in a bare system"
