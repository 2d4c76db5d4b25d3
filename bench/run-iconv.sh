#!/bin/sh
# Builds the library for iconv and sets it beside the C library's, on every encoding of the benchmark.
#
#   bench/run-iconv.sh [TEXT]
#
# TEXT selects the encodings whose names have it. Ends with status 1 when a pair misses a goal.
set -eu
cd "$(dirname "$0")/.."
cmake --preset release -DENCCONV_BUILD_BENCH=ON >&2
cmake --build --preset release --target encconv_iconv_bench >&2
exec build/release/bench/encconv_iconv_bench build/release/libencconv_iconv.so bench/samples.txt \
  bench/encodings.txt "$@"
