#!/bin/sh
# Builds the fuzz targets and runs each of them, one after the other, from the seeds in fuzz/corpus.
#
#   scripts/fuzz.sh [--smoke | SECONDS [TARGET...]]
#
# --smoke: a few thousand inputs a target, the same ones every time; this is what CI runs, of the
# preset "clang", which it has built for the tests. SECONDS (900 when not given) is the time of each
# target of the preset "fuzz"; what is found meanwhile is kept in build/fuzz/corpus. An input that shows
# a fault is written to build/PRESET as TARGET-crash-...: once the fault is mended, it goes into
# fuzz/corpus/TARGET under a telling name.
set -eu
cd "$(dirname "$0")/.."

seconds=${1:-900}
preset=fuzz
[ "$seconds" != --smoke ] || preset=clang
scripts/setup.sh fuzz
cmake --preset $preset >/dev/null
cmake --build --preset $preset
build=build/$preset

[ $# -eq 0 ] || shift
if [ $# -eq 0 ]; then
  for directory in fuzz/corpus/*/; do set -- "$@" "$(basename "$directory")"; done
fi

for target in "$@"; do
  echo "fuzzing: $target"
  dictionary=fuzz/$target.dict
  [ -f "$dictionary" ] || dictionary=fuzz/text.dict
  kept=$build/corpus/$target
  limit="-max_total_time=$seconds"
  if [ "$seconds" = --smoke ]; then
    kept=$(mktemp -d)
    limit="-runs=4000 -seed=1 -max_len=512"
  fi
  mkdir -p "$kept"
  log=$build/$target.log
  # Word splitting is meant: one argument a limit.
  # shellcheck disable=SC2086
  if ! "$build/fuzz/${target}_fuzz" $limit -timeout=60 -rss_limit_mb=3000 \
    -dict="$dictionary" -artifact_prefix="$build/$target-" -print_final_stats=1 \
    "$kept" "fuzz/corpus/$target" >"$log" 2>&1; then
    tail -n 60 "$log"
    echo "fuzz.sh: $target failed; the input is in $build" >&2
    exit 1
  fi
  grep number_of_executed_units "$log"
  [ "$seconds" != --smoke ] || rm -rf "$kept"
done
# Each encoding with a state once more; scripts/random-texts.sh does it in earnest.
[ "$seconds" != --smoke ] || "$build/fuzz/random_texts" 2000 >"$build/random_texts.log"
