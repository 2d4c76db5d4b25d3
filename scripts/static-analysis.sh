#!/bin/sh
# Runs clang-tidy (see .clang-tidy) and cppcheck over the sources; every finding is an error.
#
#   scripts/static-analysis.sh [BUILD-DIRECTORY]
set -eu
cd "$(dirname "$0")/.."

build=${1:-build/release}
scripts/setup.sh all
scripts/tidy.sh "$build"

# Not asked for: unusedFunction and unusedStructMember, because the library's interface is not all
# used here; useStlAlgorithm and the wording of loops in general, which is taste; missing headers of
# the system; and what the table texts, which are data, would take hours for.
cppcheck --project="$build/compile_commands.json" --std=c++20 --language=c++ --quiet \
  --enable=warning,performance,portability --inline-suppr --error-exitcode=1 \
  --suppress=missingIncludeSystem --suppress='*:/usr/*' -i encoding/tables/texts
