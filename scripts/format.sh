#!/bin/sh
# Formats the C++ and C sources; with --check, changes nothing and fails when one is not formatted.
# The table texts are data, written by a tool in their own layout.
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh check
case ${1:-} in
  --check) mode="--dry-run --Werror" ;;
  "") mode="-i" ;;
  *)
    echo "usage: scripts/format.sh [--check]" >&2
    exit 2
    ;;
esac

# shellcheck disable=SC2086
git ls-files -z '*.cpp' '*.h' '*.c' ':!encoding/tables/texts/*' |
  xargs -0 --no-run-if-empty clang-format $mode
