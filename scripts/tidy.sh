#!/bin/sh
# Runs clang-tidy over the sources of a build directory (build/release when none is given).
#
#   scripts/tidy.sh [BUILD-DIRECTORY [FILE-PATTERN...]]
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh all
build=${1:-build/release}
[ $# -eq 0 ] || shift
[ -f "$build/compile_commands.json" ] || cmake --preset release
root=$(pwd)
if [ $# -eq 0 ]; then set -- "$root/(support|encoding|apps|tools|fuzz|bench|tests)/.*"; fi
run-clang-tidy -quiet -p "$build" "$@"
