#!/bin/sh
# Builds the library and its tests for a big-endian host, s390x, and runs under emulation those
# that hold on every host: the tests of support/ and of the tables, and the table of cases that says
# what conversions do there. The other tests say what a little-endian host does.
#
#   scripts/cross-s390x.sh [CTEST-PATTERN]
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh test cross
pattern=${1:-'^(BigEndianHost|DataBuffer|StringBuffer|ContentCoding|HashConvert|NorvaneBzip2|Utf|Charset|Japanese|Korean|Hz|Gsm|Psdk)'}
build=$(pwd)/build/s390x
root=$build/root
mkdir -p "$root"

# The library is not among the cross compiler's packages, and Debian's own for s390x cannot always
# be installed beside the native one: only its files are wanted.
if [ ! -f "$root/usr/include/bzlib.h" ]; then
  as_root=""
  [ "$(id -u)" -eq 0 ] || as_root=sudo
  $as_root dpkg --add-architecture s390x
  $as_root apt-get update -q
  (cd "$build" && apt-get download -q libbz2-dev:s390x)
  dpkg -x "$build"/libbz2-dev_*_s390x.deb "$root"
fi

cat >"$build/toolchain.cmake" <<TOOLCHAIN
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(CMAKE_C_COMPILER s390x-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER s390x-linux-gnu-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-s390x -L /usr/s390x-linux-gnu)
set(CMAKE_FIND_ROOT_PATH $root/usr)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_LIBRARY_ARCHITECTURE s390x-linux-gnu)
TOOLCHAIN
set -- -G Ninja -DCMAKE_TOOLCHAIN_FILE="$build/toolchain.cmake" -DCMAKE_BUILD_TYPE=Release

if [ ! -d "$root/usr/lib/cmake/GTest" ]; then
  cmake -S /usr/src/googletest -B "$build/googletest" "$@" -DBUILD_GMOCK=OFF \
    -DCMAKE_INSTALL_PREFIX="$root/usr" -DCMAKE_INSTALL_LIBDIR=lib
  cmake --build "$build/googletest" --target install
fi
cmake -S . -B "$build/encconv" "$@" -DENCCONV_BUILD_CLI=OFF \
  -DBZIP2_INCLUDE_DIR="$root/usr/include" \
  -DBZIP2_LIBRARY_RELEASE="$root/usr/lib/s390x-linux-gnu/libbz2.a"
cmake --build "$build/encconv"
ctest --test-dir "$build/encconv" --output-on-failure -R "$pattern"
