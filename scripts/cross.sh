#!/bin/sh
# Builds everything for another kind of processor, and runs its tests here: i386 as it is where the
# kernel can, the others under emulation by qemu.
#
#   scripts/cross.sh aarch64|armhf|i386|s390x [CTEST-PATTERN]
#
# Without a pattern all tests run, which takes an hour and more under emulation; "core" stands for
# those that show in a few minutes that the processor makes no difference: kernels, tables, codecs,
# streams and interfaces by small texts. The libraries that are needed are Debian's for that
# processor: their packages are unpacked below build/, the machine itself gets the compiler and qemu only.
set -eu
cd "$(dirname "$0")/.."

core='^(Kernels|ScalarKernels|Forms|Dispatch|BigEndianHost|DataBuffer|StringBuffer|ContentCoding|HashConvert|NorvaneBzip2|Utf|Charset|Japanese|Korean|Hz|Gsm|Psdk)'

usage() {
  sed -n '5s/^# *//p' "$0" >&2
  exit 2
}
[ $# -ge 1 ] && [ $# -le 2 ] || usage
case $1 in
  aarch64) debian=arm64 tuple=aarch64-linux-gnu compiler=$tuple emulator=qemu-aarch64 ;;
  armhf) debian=armhf tuple=arm-linux-gnueabihf compiler=$tuple emulator=qemu-arm ;;
  i386) debian=i386 tuple=i386-linux-gnu compiler=i686-linux-gnu emulator=qemu-i386 ;;
  s390x) debian=s390x tuple=s390x-linux-gnu compiler=$tuple emulator=qemu-s390x ;;
  *) usage ;;
esac
pattern=${2:-.}
[ "$pattern" != core ] || pattern=$core

scripts/setup.sh "cross-$1"
build=$(pwd)/build/$1
root=$build/root
mkdir -p "$build"

# An apt of its own, which knows that processor only: nothing is installed, and nobody need be root.
if [ ! -f "$build/root.done" ]; then
  apt=$build/apt
  rm -rf "$root" "$apt"
  mkdir -p "$root" "$apt/lists/partial" "$apt/cache" "$apt/packages"
  : >"$apt/status"
  cat >"$apt/apt.conf" <<APT
APT::Architecture "$debian";
APT::Architectures { "$debian"; };
Dir::State::lists "$apt/lists";
Dir::State::status "$apt/status";
Dir::Cache "$apt/cache";
Acquire::Languages "none";
APT
  APT_CONFIG=$apt/apt.conf
  export APT_CONFIG
  apt-get update -q
  (cd "$apt/packages" && apt-get download -q libc6 libc-bin libgcc-s1 libstdc++6 \
    libbz2-dev libuchardet-dev libcli11-dev libgtest-dev)
  unset APT_CONFIG
  for package in "$apt"/packages/*.deb; do dpkg -x "$package" "$root"; done
  rm -rf "$apt"
  touch "$build/root.done"
fi

run="$emulator -L $root"
loader=$root/lib/ld-linux.so.2
if [ "$1" = i386 ] && "$loader" --version >/dev/null 2>&1; then
  run="env GCONV_PATH=$root/usr/lib/$tuple/gconv
       $loader --library-path $root/lib/$tuple:$root/usr/lib/$tuple"
fi
# The command of that processor's C library, which ours is compared with.
printf '#!/bin/sh\nexec %s %s "$@"\n' "$(echo $run)" "$root/usr/bin/iconv" >"$build/iconv"
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
  -DENCCONV_PEER_ICONV="$build/iconv"
cmake --build "$build/encconv"
ctest --test-dir "$build/encconv" --output-on-failure -j "$(nproc)" -R "$pattern"
