#!/bin/sh
# Builds what MinGW-w64 lacks from Debian's sources, as static libraries, below
# build/mingw-packages/root: bzip2, uchardet and GoogleTest. CLI11 is headers alone, which are copied.
# Does nothing where that is done.
set -eu
cd "$(dirname "$0")/.."

work=$(pwd)/build/mingw-packages
toolchain=$(pwd)/cmake/mingw-w64.cmake
root=$work/root
mkdir -p "$root/include" "$root/lib" "$work/sources"

# The system's own lists of packages may be without sources: private ones are made of them.
fetch() {
  apt=$work/apt
  mkdir -p "$apt/parts" "$apt/lists/partial" "$apt/cache/archives/partial"
  for file in /etc/apt/sources.list.d/debian.sources; do
    [ ! -f "$file" ] || sed 's/^Types:.*/Types: deb-src/' "$file" >"$apt/parts/debian.sources"
  done
  for file in /etc/apt/sources.list; do
    [ ! -f "$file" ] || sed -n 's/^deb /deb-src /p' "$file" >"$apt/parts/debian.list"
  done
  set -- -q -o Dir::Etc::SourceList=/dev/null -o Dir::Etc::SourceParts="$apt/parts" \
    -o Dir::State::Lists="$apt/lists" -o Dir::Cache="$apt/cache" -o APT::Sandbox::User=root "$@"
  [ -n "$(find "$apt/lists" -maxdepth 1 -name '*Sources*')" ] || apt-get "$@" update
  (cd "$work/sources" && apt-get "$@" source --download-only bzip2 uchardet)
}

# unpack NAME: the source of a package, Debian's changes applied, in the directory NAME.
unpack() {
  rm -rf "$work/sources/$1"
  (cd "$work/sources" && dpkg-source -q --extract "$1"_*.dsc "$1")
  mkdir -p "$root/share/doc/$1"
  cp "$work/sources/$1/debian/copyright" "$root/share/doc/$1"
}

# build SOURCE NAME [CMAKE-ARGUMENT...]
build() {
  source=$1
  name=$2
  shift 2
  cmake -S "$source" -B "$work/build-$name" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$root" -DCMAKE_INSTALL_LIBDIR=lib \
    -DBUILD_SHARED_LIBS=OFF "$@"
  cmake --build "$work/build-$name" --target install
}

if [ ! -f "$root/lib/libbz2.a" ] || [ ! -f "$root/lib/libuchardet.a" ]; then
  fetch
  unpack bzip2
  # The header takes every Windows for one that loads the library as a DLL, by hand.
  sed 's/^#ifdef _WIN32$/#if defined(_WIN32) \&\& defined(BZ_LOADED)/' \
    "$work/sources/bzip2/bzlib.h" >"$root/include/bzlib.h"
  (cd "$work/sources/bzip2" &&
    cp "$root/include/bzlib.h" . &&
    make libbz2.a CC=x86_64-w64-mingw32-gcc-posix AR=x86_64-w64-mingw32-ar \
      RANLIB=x86_64-w64-mingw32-ranlib CFLAGS='-O2 -Wall' && cp libbz2.a "$root/lib")
  unpack uchardet
  build "$work/sources/uchardet" uchardet -DBUILD_BINARY=OFF
fi
[ -d "$root/lib/cmake/GTest" ] || build /usr/src/googletest googletest -DBUILD_GMOCK=OFF
if [ ! -d "$root/include/CLI" ]; then
  cp -r /usr/include/CLI "$root/include"
  cp -r /usr/share/cmake/CLI11 "$root/lib/cmake" 2>/dev/null || cp -r /usr/lib/cmake/CLI11 "$root/lib/cmake"
fi
