#!/bin/sh
# Installs what only the benchmark needs: ICU and encoding_rs to compare with, cargo to build the
# latter, and valgrind for instructions.sh.
set -eu
"$(dirname "$0")/../scripts/setup.sh" build
as_root=""
[ "$(id -u)" -eq 0 ] || as_root=sudo
packages="icu-devtools libicu-dev librust-encoding-rs-dev python3 valgrind"
command -v cargo >/dev/null || packages="$packages cargo"
# Word splitting is meant: one argument a package.
# shellcheck disable=SC2086
$as_root apt-get install -q -y --no-install-recommends $packages
