#!/bin/sh
# Shows that encconv.spark works on a real cluster: a master and two workers on loopback, each worker
# bound to a core of its own. Builds the wheel and the tool where they are older than the sources.
#
#   scripts/spark.sh [PYTHON]             tests, with 64 MiB of text
#   scripts/spark.sh --bench [PYTHON]     measures 1 GiB instead, beside Spark's own readers and the
#                                         COBOL data source on the Spark that it is made for
#   scripts/spark.sh -k WORD [PYTHON]     the tests whose names have the word
#
# PYTHON is python3 when none is given. What is downloaded stays in build/spark.
set -eu
cd "$(dirname "$0")/.."

bench="" word=""
case ${1:-} in
  --bench) bench=yes; shift ;;
  -k) word=$2; shift 2 ;;
esac
python=${1:-python3}
scripts/setup.sh spark

work=$PWD/build/spark
mkdir -p "$work"

# The wheel, as scripts/python.sh made it if that was after the last change.
wheel=$(ls build/python/dist/repaired/*.whl 2>/dev/null || true)
if [ -z "$wheel" ] || [ -n "$(find CMakeLists.txt pyproject.toml encoding include interface python \
    support -type f -newer "$wheel" ! -path '*/tests/*' ! -name '*.pyc' | head -1)" ]; then
  scripts/python.sh --wheel "$python"
  wheel=$(ls build/python/dist/repaired/*.whl)
fi
[ -f build/ci/build.ninja ] || cmake --preset ci
cmake --build --preset ci --target encconv_cli

# Spark is large: it is fetched and built once, and its environment is kept for as long as what is
# asked for stays the same.
environment() {  # FOLDER REQUIREMENTS
  if ! cmp -s "$2" "$work/$1/requirements.txt"; then
    rm -rf "${work:?}/$1"
    "$python" -m venv "$work/$1"
    "$work/$1/bin/pip" install --quiet --disable-pip-version-check wheel
    "$work/$1/bin/pip" install --quiet --disable-pip-version-check -r "$2" pytest
    cp "$2" "$work/$1/requirements.txt"
  fi
}
environment venv python/tests/spark/requirements.txt
"$work/venv/bin/pip" install --quiet --disable-pip-version-check --force-reinstall --no-deps "$wheel"

# Whatever happens, nothing of the cluster stays.
export ENCCONV_CLUSTER="$work/cluster" ENCCONV_TOOL="$PWD/build/ci/bin/encconv"
rm -rf "$ENCCONV_CLUSTER"
stop_cluster() {
  [ -f "$ENCCONV_CLUSTER/pids" ] || return 0
  while read -r group; do kill -9 "-$group" 2>/dev/null || true; done < "$ENCCONV_CLUSTER/pids"
}
trap stop_cluster EXIT
trap 'exit 1' INT TERM HUP

if [ -n "$bench" ]; then
  environment venv-cobol bench/spark-cobol.txt
  "$work/venv/bin/python" bench/spark.py --cobol "$work/venv-cobol/bin/python" --work "$work/bench"
else
  "$work/venv/bin/python" -m pytest -q -p no:cacheprovider python/tests/spark ${word:+-k "$word"}
fi
