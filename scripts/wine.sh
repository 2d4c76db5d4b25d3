#!/bin/sh
# Runs a program for Windows under Wine, with a Windows of its own below build/.
#
#   scripts/wine.sh PROGRAM.EXE [ARGUMENT...]
set -eu
here=$(cd "$(dirname "$0")/.." && pwd)

export WINEPREFIX="${WINEPREFIX:-$here/build/wine}"
# No desktop entries, no installers for what is not used here, no chatter.
export WINEDLLOVERRIDES="winemenubuilder.exe,mscoree,mshtml="
export WINEDEBUG=-all
# Names of files are in UTF-8.
export LC_ALL=C.UTF-8
# No display is opened, even where there is one.
unset DISPLAY || true
wine=$(command -v wine64 || echo /usr/lib/wine/wine64)
exec "$wine" "$@"
