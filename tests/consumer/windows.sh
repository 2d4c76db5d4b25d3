#!/bin/sh
# Tries the zip for Windows: runs its tool under Wine, and builds and runs small programs against what
# it holds, by CMake and the same compiler.
#
#   windows.sh BUILD_DIRECTORY WORK_DIRECTORY
set -eu

here=$(cd "$(dirname "$0")" && pwd)
source=$(cd "$here/../.." && pwd)
build=$(cd "$1" && pwd)
rm -rf "$2"
mkdir -p "$2"
work=$(cd "$2" && pwd)
wine=$source/scripts/wine.sh

say() { echo "== $*"; }

cmake -E chdir "$work" cmake -E tar xf "$build"/encconv-*-windows-x86_64.zip
prefix=$(echo "$work"/encconv-*)

say "the tool"
[ "$(printf 'caf\351' | "$wine" "$prefix/bin/encconv.exe" -f 1252 -t utf-8)" = "café" ]

say "what the DLL shows"
x86_64-w64-mingw32-objdump -p "$prefix"/bin/libencconv-*.dll |
  sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/{/Table/d;s/^[[:space:]]*\[[^]]*\] *//p;}' >"$work/shown.txt"
grep '^encconv_' "$work/shown.txt" >"$work/shown_c.txt"
sed -n 's/^\(encconv_[a-z0-9_]*\)$/\1/p' "$source/interface/symbols.txt" >"$work/listed_c.txt"
diff -u "$work/listed_c.txt" "$work/shown_c.txt"
if x86_64-w64-mingw32-c++filt -n <"$work/shown.txt" |
  grep -v -E '^(encconv_|encconv::|(vtable|typeinfo|typeinfo name) for encconv::)'; then
  echo "these are no names of the interface"
  exit 1
fi
say "what the DLL and the tool need besides: what every Windows has"
for file in "$prefix"/bin/*; do
  if x86_64-w64-mingw32-objdump -p "$file" | sed -n 's/.*DLL Name: //p' |
    grep -v -i -E '^(kernel32|msvcrt|user32|advapi32|shell32)\.dll$'; then
    echo "$file needs these"
    exit 1
  fi
done

for languages in "C;CXX" C; do
  tree=$work/find_$(echo "$languages" | tr -d ';')
  say "find_package, shared, $languages"
  # What the engine's static library needs besides stands where it was built.
  cmake -G Ninja -S "$here" -B "$tree" -DKIND=shared -DLANGUAGES="$languages" \
    -DCMAKE_TOOLCHAIN_FILE="$source/cmake/mingw-w64.cmake" \
    -DCMAKE_EXE_LINKER_FLAGS="-static -L$source/build/mingw-packages/root/lib" \
    -Dencconv_DIR="$prefix/lib/cmake/encconv" >/dev/null
  cmake --build "$tree" >"$tree.log" || { cat "$tree.log"; exit 1; }
  cp "$prefix"/bin/*.dll "$tree"
  for program in "$tree"/consumer_*.exe; do "$wine" "$program"; done
done
