#!/bin/sh
# Installs what only the benchmark needs: ICU, encoding_rs and simdutf to compare with (cargo of Rust
# 1.78 or later builds the latter two), manual pages and a bible to convert, time for the memory of
# processes, and valgrind for instructions.sh.
set -eu
cd "$(dirname "$0")"
../scripts/setup.sh build
as_root=""
[ "$(id -u)" -eq 0 ] || as_root=sudo
packages="icu-devtools libicu-dev python3 time valgrind bible-kjv manpages manpages-dev manpages-zh"
for language in de fr ja pl ru; do
  packages="$packages manpages-$language manpages-$language-dev"
done
command -v cargo >/dev/null || packages="$packages cargo"
# Word splitting is meant: one argument a package.
# shellcheck disable=SC2086
$as_root apt-get install -q -y --no-install-recommends $packages
cargo fetch --manifest-path peers/Cargo.toml
