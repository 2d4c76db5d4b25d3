#!/bin/sh
# Builds the tool and converts a real file: a Japanese mail.
set -eu
cd "$(dirname "$0")/.."

scripts/setup.sh build
cmake --preset release -DENCCONV_BUILD_TESTS=OFF
cmake --build --preset release --target encconv_cli

tool=build/release/bin/encconv
mail=tests/data/mail.50220
printf '\nA mail in ISO-2022-JP, as it came (%s):\n\n' "$mail"
tail -n +9 "$mail" | cat -v
printf '\n$ %s -f iso-2022-jp -t utf-8 %s\n\n' "$tool" "$mail"
"$tool" -f iso-2022-jp -t utf-8 "$mail"
