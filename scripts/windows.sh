#!/bin/sh
# Builds the library, the tool and the tests for 64-bit Windows with MinGW-w64, runs the tests under
# Wine, packs the zip that people install, and tries it: the tool of the zip, and a program in C and
# one in C++ built against it.
#
#   scripts/windows.sh [CTEST-ARGUMENT...]
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh windows
scripts/mingw-packages.sh
cmake --preset mingw
cmake --build --preset mingw
# Windows is made before the tests want it, all at once.
scripts/wine.sh wineboot --init
ctest --preset mingw --parallel "$(nproc)" "$@"
(cd build/mingw && cpack -G ZIP)
tests/consumer/windows.sh build/mingw build/mingw/consumer
