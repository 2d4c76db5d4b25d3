#!/bin/sh
# Installs what is missing from Debian's packages. Does nothing when everything is there.
#
#   scripts/setup.sh [build|package|test|check|iconv|python|spark|docs|fuzz|cross-PROCESSOR|windows|npm|
#                     nodejs|web|peers|all]...
#
# build: the library and the tool; package: Debian packages of them; test: their tests as well;
# check: the formatter that CI asks for;
# iconv: the programs of scripts/iconv-programs.sh; python: the Python package and its tests;
# spark: the Python package on a cluster; docs: the API documentation;
# peers: the converters that tools/compare_peers and the scripts that make mappings ask;
# fuzz: the fuzz targets; cross-aarch64, -armhf, -i386, -s390x: scripts/cross.sh for that processor;
# windows: scripts/windows.sh; npm: the npm package and its tests; nodejs: Node.js and npm, where there
# are no others; web: what tests the page besides, and fonts for its pictures;
# all: what the scripts and the optional targets use (coverage, benchmarks), but for cross, windows,
# npm, web and peers.
set -eu

build="g++ cmake ninja-build libbz2-dev libcli11-dev libuchardet-dev"
package="$build dpkg-dev file gzip"
test="$build libgtest-dev pkg-config python3 musl-tools"
check="clang-format"
iconv="musl-tools patchelf php-cli libtext-iconv-perl git libxml2-utils vim man-db libarchive-tools
       unzip mutt libglib2.0-tests bsdutils python3"
docs="doxygen"
fuzz="$build clang libclang-rt-14-dev"
python="$build ccache python3 python3-dev python3-venv libpython3.11-testsuite"
spark="$python libcli11-dev default-jre-headless util-linux procps"
cross="g++ cmake ninja-build python3 qemu-user"
cross_aarch64="$cross g++-aarch64-linux-gnu"
cross_armhf="$cross g++-arm-linux-gnueabihf"
cross_i386="$cross g++-i686-linux-gnu"
cross_s390x="$cross g++-s390x-linux-gnu"
windows="g++ cmake ninja-build ccache g++-mingw-w64-x86-64-posix wine64 googletest libcli11-dev
         dpkg-dev bzip2 xz-utils make patch python3"
npm="$build ccache emscripten googletest"
nodejs="nodejs npm"
web="chromium fonts-dejavu-core fonts-droid-fallback libc-bin python3"
peers="python3 icu-devtools locales default-jdk-headless perl nkf yaz libmarc-charset-perl
       python3-webencodings chromium"
all="$package $test $check $iconv $docs $fuzz $python $spark ccache clang-tidy cppcheck libbenchmark-dev
     libicu-dev gcovr valgrind nkf bzip2 locales python3"

wanted=""
for group in "${@:-build}"; do
  case $group in
    build) wanted="$wanted $build" ;;
    package) wanted="$wanted $package" ;;
    test) wanted="$wanted $test" ;;
    check) wanted="$wanted $check" ;;
    iconv) wanted="$wanted $iconv" ;;
    docs) wanted="$wanted $docs" ;;
    fuzz) wanted="$wanted $fuzz" ;;
    python) wanted="$wanted $python" ;;
    cross-aarch64) wanted="$wanted $cross_aarch64" ;;
    cross-armhf) wanted="$wanted $cross_armhf" ;;
    cross-i386) wanted="$wanted $cross_i386" ;;
    cross-s390x) wanted="$wanted $cross_s390x" ;;
    windows) wanted="$wanted $windows" ;;
    npm) wanted="$wanted $npm" ;;
    nodejs) wanted="$wanted $nodejs" ;;
    spark) wanted="$wanted $spark" ;;
    web) wanted="$wanted $web" ;;
    peers) wanted="$wanted $peers" ;;
    all) wanted="$wanted $all" ;;
    *)
      echo "setup.sh: unknown group '$group'; the head of this script lists the groups" >&2
      exit 2
      ;;
  esac
done

missing=""
for package in $wanted; do
  state=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$state" = installed ] || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

as_root=""
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null; then
    echo "setup.sh: run this as root, or install sudo; missing are:$missing" >&2
    exit 1
  fi
  as_root=sudo
fi

echo "Installing:$missing"
export DEBIAN_FRONTEND=noninteractive
$as_root apt-get update -q
# Word splitting is meant: one argument a package.
# shellcheck disable=SC2086
$as_root apt-get install -q -y --no-install-recommends $missing
