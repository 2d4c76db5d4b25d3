#!/bin/sh
# Unpacks Debian's packages for another architecture into a directory, for compilers and emulators to
# find them there. Nothing is installed, and nobody need be root: the apt that fetches them has lists
# of its own, in which there is that architecture only. Does nothing where they are unpacked already.
#
#   scripts/debian-root.sh ARCHITECTURE DIRECTORY PACKAGE...
set -eu

architecture=$1
mkdir -p "$2"
root=$(cd "$2" && pwd)
shift 2
missing=""
for package in "$@"; do
  [ -e "$root/.unpacked/$package" ] || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

apt=$root/.apt
mkdir -p "$apt/lists/partial" "$apt/cache" "$apt/packages" "$root/.unpacked"
trap 'rm -rf "$apt"' EXIT
: >"$apt/status"
cat >"$apt/apt.conf" <<APT
APT::Architecture "$architecture";
APT::Architectures { "$architecture"; };
Dir::State::lists "$apt/lists";
Dir::State::status "$apt/status";
Dir::Cache "$apt/cache";
Acquire::Languages "none";
APT
APT_CONFIG=$apt/apt.conf
export APT_CONFIG
# A mirror that is being filled lacks some lists for a while; the packages need not be in these.
apt-get update -q || echo "debian-root.sh: going on with the lists that could be had"
cd "$apt/packages"
# Word splitting is meant: one argument a package.
# shellcheck disable=SC2086
apt-get download -q $missing
for file in *.deb; do dpkg -x "$file" "$root"; done
for package in $missing; do touch "$root/.unpacked/$package"; done
