#!/bin/sh
# Builds the benchmark, runs it, and prints the table of results; build/bench/ gets them as JSON,
# Markdown and a plot.
#
#   bench/run.sh [--quick] [--filter TEXT] [--publish]
set -eu
cd "$(dirname "$0")/.."
cmake --preset release -DENCCONV_BUILD_BENCH=ON >&2
cmake --build --preset release --target encconv_bench >&2
exec python3 -B bench/bench.py "$@" build/release/bench/encconv_bench build/bench
