#!/bin/sh
# Runs clang-tidy over the sources, the optional ones as well; .clang-tidy says which checks. The
# table texts are data.
#
#   scripts/tidy.sh [FILE-PATTERN...]
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh all
cmake --preset fuzz -B build/tidy -DENCCONV_BUILD_BENCH=ON -DENCCONV_BUILD_CLI=ON \
  -DENCCONV_BUILD_TESTS=ON >/dev/null
root=$(pwd)
if [ $# -eq 0 ]; then
  set -- "$root/(apps|bench|examples|fuzz|interface|support|tests|tools)/.*" \
    "$root/encoding/([^/]*|codecs/.*|kernels/.*|stream/.*|tables/[^/]*)\.cpp"
fi
run-clang-tidy -quiet -p build/tidy "$@"
