#!/bin/sh
# Runs all tests in a build instrumented for coverage and prints the lines and branches of encoding/
# and support/ that they reach; the page with every line is build/coverage/coverage.html.
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh all
scripts/test.sh coverage
gcovr --root . --filter encoding/ --filter support/ --exclude encoding/tables/texts/ \
  --exclude-throw-branches --exclude-unreachable-branches --gcov-ignore-parse-errors \
  --html-details build/coverage/coverage.html --txt - build/coverage
