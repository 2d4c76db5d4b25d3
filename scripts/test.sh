#!/bin/sh
# Builds everything and runs all tests.
#
#   scripts/test.sh [PRESET [CMAKE-ARGUMENT...]]
#
# PRESET is one of CMakePresets.json: release when none is given.
set -eu
cd "$(dirname "$0")/.."

preset=${1:-release}
[ $# -eq 0 ] || shift

scripts/setup.sh test
[ "$preset" != clang ] || scripts/setup.sh fuzz
cmake --preset "$preset" -DENCCONV_BUILD_TESTS=ON "$@"
cmake --build --preset "$preset"
ctest --preset "$preset" --parallel "$(nproc)"
