#!/bin/sh
# Counts the instructions that each kernel takes for a byte of input on 64-bit ARM, beside its scalar
# form, the C library's iconv and ICU with the same text, and prints a table. The programs run under
# emulation, with a plugin that counts; nothing is said of time.
#
#   bench/arm-instructions.sh
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh cross-aarch64
tuple=aarch64-linux-gnu
work=$(pwd)/build/aarch64-instructions
root=$work/root
mkdir -p "$work"
scripts/debian-root.sh arm64 "$root" libc6 libc-bin libgcc-s1 libstdc++6 libicu-dev libicu72

cc -O2 -shared -fPIC -o "$work/qemu_count.so" bench/qemu_count.c
$tuple-g++ -std=c++20 -O3 -DNDEBUG -I. -isystem "$root/usr/include" -o "$work/kernel_count" \
  bench/kernel_count.cpp encoding/kernels/*.cpp encoding/kernels/arm/*.cpp \
  encoding/tables/kernel_tables.cpp \
  -L"$root/usr/lib/$tuple" -licuuc -licudata -Wl,-rpath-link,"$root/usr/lib/$tuple"

# The sentences of a language, over and over, without the marks that KOI8-R lacks.
text_of() {
  sed -n "/^\[$1/,/^\[/p" bench/samples.txt | grep -v '^[[]' |
    sed 's/«//g; s/»//g; s/—//g' >"$work/once"
  for _ in 1 2 3 4 5 6 7 8; do cat "$work/once"; done >"$work/eight"
  for _ in 1 2 3 4 5 6 7 8; do cat "$work/eight"; done
}
for language in English Russian Japanese Korean; do text_of $language >"$work/$language"; done

# Instructions for each byte: what eight rounds more take than two do.
count() {
  run() {
    qemu-aarch64 -L "$root" -plugin "$work/qemu_count.so" "$work/kernel_count" "$1" "$2" "$3" \
      "$work/$4" 2>"$work/log" || return 1
    sed -n 's/^instructions: //p' "$work/log"
  }
  few=$(run "$1" "$2" 2 "$3") && many=$(run "$1" "$2" 10 "$3") || { echo "-"; return; }
  # Of each: the bytes of a round, then the number.
  # shellcheck disable=SC2086
  echo $few $many | awk '{ printf "%.2f", ($4 - $2) / 8 / $1 }'
}

echo "| kernel | text | NEON | scalar | iconv | ICU |"
echo "|---|---|--:|--:|--:|--:|"
row() {
  language=$1
  shift
  for kernel in "$@"; do
    printf '| `%s` | %s |' "$kernel" "$language"
    for way in neon scalar iconv icu; do printf ' %s |' "$(count $way "$kernel" "$language")"; done
    echo
  done
}
for language in English Russian Japanese; do
  row $language utf8ToUtf16 utf16ToUtf8 swapUtf16 utf32ToUtf16 utf16ToUtf32 utf8ToUtf32 utf32ToUtf8
done
row Russian singleByteToUtf16 singleByteToUtf8 mapBytes utf16ToSingleByte
row Japanese doubleByteToUtf16 utf16ToDoubleByte
row Korean unshiftPairs
row Russian pairedUtf16 wellFormedUtf8 countByte countUnit countScalar utf8Length
