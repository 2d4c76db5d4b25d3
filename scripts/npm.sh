#!/bin/sh
# Builds the npm package encconv, and runs all that shows that it works with Node.js: tests of the
# kernels in WebAssembly, of the types, of the package beside the tool of the native build, and of what
# `npm pack` makes, in an empty folder.
#
#   scripts/npm.sh [--build]
#
# --build only makes npm/dist. The package is left in build/npm.
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh npm
command -v npm >/dev/null || scripts/setup.sh nodejs

export CCACHE_BASEDIR="${CCACHE_BASEDIR:-$PWD}" CCACHE_NOHASHDIR=1
# Where another Node.js than Debian's is installed, it does not look for modules of Debian packages, of
# which Emscripten uses one.
export NODE_PATH="${NODE_PATH:-/usr/share/nodejs}"
# Where Emscripten keeps its libraries, if not everybody may write to its own place.
[ -w /usr/share/emscripten/cache ] || export EM_CACHE="${EM_CACHE:-$PWD/build/emscripten-cache}"
emcmake cmake --preset wasm -DENCCONV_WASM_TESTS=ON
cmake --build --preset wasm --target encconv_wasm

cd npm
npm install --no-package-lock --no-audit --no-fund --ignore-scripts --loglevel=error
rm -rf dist
node_modules/.bin/tsc
cp -R ../build/wasm/npm/core.wasm ../build/wasm/npm/tables dist
cp ../LICENSE .
[ "${1:-}" != --build ] || exit 0

# What is loaded before the first conversion.
size=$(gzip -9 -c dist/core.wasm | wc -c)
echo "the core has $size bytes, compressed by gzip"
[ "$size" -lt 600000 ]

cd ..
cmake --build --preset wasm --target encconv_wasm_tests
# What Emscripten makes takes fetch for that of a browser.
for test in build/wasm/npm/tests/*.cjs; do node --no-experimental-fetch "$test" --gtest_brief=1; done

cmake --preset ci
cmake --build --preset ci --target encconv_cli
export ENCCONV_TOOL="$PWD/build/ci/bin/encconv"
cd npm
node_modules/.bin/tsc -p tests
node --test tests

work=../build/npm
rm -rf "$work"
mkdir -p "$work/clean"
npm pack --loglevel=error --pack-destination "$work" >/dev/null
cd "$work/clean"
echo '{"private": true}' >package.json
npm install --no-audit --no-fund --offline --loglevel=error ../encconv-*.tgz
node --input-type=module -e '
  import { decode, encode, init } from "encconv";
  await init();
  if (decode(encode("一乂", "euc-tw"), "euc-tw") !== "一乂") throw new Error("not the same text");'
ls -l ../encconv-*.tgz
