#!/bin/sh
# Builds a small program against each form in which the library can be used, and runs it.
#
#   run.sh BUILD_DIRECTORY WORK_DIRECTORY
set -eu
export LC_ALL=C

here=$(cd "$(dirname "$0")" && pwd)
build=$1
work=$2
rm -rf "$work"
mkdir -p "$work"
prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" >"$work/install.log"
lib=$(dirname "$(find "$prefix" -name libencconv.a)")

say() { echo "== $*"; }

say "names that the static library shows"
if nm -C --defined-only --extern-only "$lib/libencconv.a" | grep -E '^[0-9a-f]+ ' |
  grep -v -E ' (encconv::|encconv_|(vtable|typeinfo|typeinfo name) for encconv::)' |
  grep -v -E ' [VWu] .*std::'; then
  echo "these are no names of the interface"
  exit 1
fi

say "names that the shared library shows"
nm -DC --defined-only "$lib/libencconv.so" |
  sed -n 's/^[0-9a-f]* [A-Z] \(.*\)@@ENCCONV_[0-9]*$/\1/p' | sort -u >"$work/symbols.txt"
diff -u "$here/../../interface/symbols.txt" "$work/symbols.txt" || {
  echo "what is gone needs another first number of the version, what is new a line in the list"
  exit 1
}

find_package() {
  kind=$1 languages=$2 tree=$work/find_$3
  say "find_package, $kind, $languages"
  cmake -G Ninja -S "$here" -B "$tree" -DKIND="$kind" -DLANGUAGES="$languages" \
    -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
  cmake --build "$tree" >"$tree.log" || { cat "$tree.log"; exit 1; }
  for program in "$tree"/consumer_*; do "$program"; done
}
find_package static "C;CXX" 1
find_package shared "C;CXX" 2
find_package static C 3
find_package shared C 4

# pkg-config takes the shared library where there is one.
cp -a "$prefix" "$work/static_prefix"
rm "$work/static_prefix/${lib#"$prefix"/}"/libencconv.so*
for kind in shared static; do
  say "pkg-config, $kind"
  in=$prefix
  [ $kind = shared ] || in=$work/static_prefix
  PKG_CONFIG_PATH=$in/${lib#"$prefix"/}/pkgconfig
  export PKG_CONFIG_PATH
  static=
  [ $kind = shared ] || static=--static
  # Word splitting is meant.
  # shellcheck disable=SC2046
  ${CXX:-c++} -std=c++17 "$here/consumer.cpp" -o "$work/cpp_$kind" \
    $(pkg-config $static --cflags --libs encconv)
  # shellcheck disable=SC2046
  ${CC:-cc} -std=c89 -pedantic-errors "$here/consumer.c" -o "$work/c_$kind" \
    $(pkg-config $static --cflags --libs encconv)
  LD_LIBRARY_PATH=$lib "$work/cpp_$kind"
  LD_LIBRARY_PATH=$lib "$work/c_$kind"
done

say "without exceptions and RTTI"
# shellcheck disable=SC2046
${CXX:-c++} -std=c++17 -fno-exceptions -fno-rtti "$here/consumer.cpp" -o "$work/bare" \
  $(PKG_CONFIG_PATH=${lib}/pkgconfig pkg-config --cflags --libs encconv)
LD_LIBRARY_PATH=$lib "$work/bare"

say "pkg-config, engine"
# shellcheck disable=SC2046
${CXX:-c++} -std=c++20 "$here/consumer_engine.cpp" -o "$work/engine" \
  $(PKG_CONFIG_PATH=${lib}/pkgconfig pkg-config --cflags --libs encconv-engine)
"$work/engine"

say "the program of README.md"
readme=$here/../../README.md
sed -n '/^    #include <encconv/,/^$/s/^    //p' "$readme" | sed '/^$/,$d' >"$work/hello.cpp"
(
  cd "$work"
  PKG_CONFIG_PATH=$lib/pkgconfig LD_LIBRARY_PATH=$lib
  export PKG_CONFIG_PATH LD_LIBRARY_PATH
  [ "$(sh -c "$(sed -n 's/^    \(c++ .*hello\.cpp.*\)/\1/p' "$readme")")" = "café" ]
)

for fetch in OFF ON; do
  say "add_subdirectory, FetchContent $fetch (configured only)"
  cmake -G Ninja -S "$here/subproject" -B "$work/sub$fetch" -DFETCH=$fetch \
    -DENCCONV_SOURCE="$here/../.." -DCMAKE_BUILD_TYPE= >/dev/null
done
