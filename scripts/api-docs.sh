#!/bin/sh
# Makes the API documentation of the library, build/api/html/index.html. Any warning is an error.
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh docs
ENCCONV_VERSION=$(sed -n 's/^project(encconv VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
export ENCCONV_VERSION
mkdir -p build/api
doxygen docs/Doxyfile
