#!/bin/sh
# Builds everything for another kind of processor, and runs its tests here: i386 as it is where the
# kernel can, the others under emulation by qemu.
#
#   scripts/cross.sh aarch64|armhf|i386|s390x [core|none|CTEST-PATTERN]
#
# Without a pattern everything is built and all tests run, which takes an hour and more under emulation;
# "core" builds and runs the test programs that show in a few minutes that the processor makes no
# difference; "none" builds and runs none. The libraries that are needed are Debian's for that processor: their packages
# are unpacked below build/, the machine itself gets the compiler and qemu only.
set -eu
cd "$(dirname "$0")/.."

core="kernels_test big_endian_test buffers_test utf_helpers_test tables_test codecs_test
      stream_reading_test stream_writing_test interface_test c_interface_test samples_test"

usage() {
  sed -n '5s/^# *//p' "$0" >&2
  exit 2
}
[ $# -ge 1 ] && [ $# -le 2 ] || usage
case $1 in
  aarch64) debian=arm64 tuple=aarch64-linux-gnu compiler=$tuple emulator=qemu-aarch64 ;;
  armhf) debian=armhf tuple=arm-linux-gnueabihf compiler=$tuple emulator=qemu-arm ;;
  i386) debian=i386 tuple=i386-linux-gnu compiler=i686-linux-gnu emulator=qemu-i386 ;;
  # Of the C library's iconv, which tests compare with, qemu 7.2 gets an instruction wrong.
  s390x) debian=s390x tuple=s390x-linux-gnu compiler=$tuple emulator="qemu-s390x -cpu max,etf3eh=off" ;;
  *) usage ;;
esac

scripts/setup.sh "cross-$1"
build=$(pwd)/build/$1
root=$build/root
mkdir -p "$build"
scripts/debian-root.sh $debian "$root" libc6 libc-bin libgcc-s1 libstdc++6 \
  libbz2-dev libuchardet-dev libcli11-dev libgtest-dev

run="$emulator -L $root"
# The option by which a program is given a name, which is otherwise its path.
name=-0
loader=$root/lib/ld-linux.so.2
if [ "$1" = i386 ] && "$loader" --version >/dev/null 2>&1; then
  run="env GCONV_PATH=$root/usr/lib/$tuple/gconv"
  run="$run $loader --library-path $root/lib/$tuple:$root/usr/lib/$tuple"
  name=--argv0
fi
# The command of that processor's C library, which ours is compared with.
printf '#!/bin/sh\nexec %s %s "$@"\n' "$run $name iconv" "$root/usr/bin/iconv" >"$build/iconv"
chmod +x "$build/iconv"
cat >"$build/toolchain.cmake" <<TOOLCHAIN
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR $1)
set(CMAKE_C_COMPILER $compiler-gcc)
set(CMAKE_CXX_COMPILER $compiler-g++)
set(CMAKE_LIBRARY_ARCHITECTURE $tuple)
set(CMAKE_CROSSCOMPILING_EMULATOR $run)
set(CMAKE_FIND_ROOT_PATH $root)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
TOOLCHAIN
# Static libraries, so that programs need nothing but what the root has of the compiler's.
cmake -S . -B "$build/encconv" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$build/toolchain.cmake" \
  -DCMAKE_BUILD_TYPE=Release -DENCCONV_WERROR=ON -DENCCONV_UCHARDET_STATIC=ON \
  -DBZIP2_LIBRARY_RELEASE="$root/usr/lib/$tuple/libbz2.a" \
  -DENCCONV_PEER_ICONV="$build/iconv" -DENCCONV_EMULATOR_NAMES="$name"

set_of() { echo "^($(echo "$@" | tr -s ' ' '|'))\$"; }
if [ "${2:-}" = core ]; then
  # Word splitting is meant: one argument a program.
  # shellcheck disable=SC2086
  cmake --build "$build/encconv" --target $core
  # shellcheck disable=SC2086
  set -- -L "$(set_of $core)"
else
  cmake --build "$build/encconv"
  [ "${2:-}" != none ] || exit 0
  set -- -R "${2:-.}"
fi
ctest --test-dir "$build/encconv" --output-on-failure -j "$(nproc)" "$@"
