#!/bin/sh
# Builds the page of web/, as one file (web/dist/encconv.html) and as files for a web server
# (web/dist/site), and tests it in Chromium.
#
#   scripts/web.sh [--build | --serve [PORT] | --pictures]
#
# --build builds only; --serve builds and serves, on port 8080 if none is given; --pictures builds and
# takes the pictures of docs/images anew.
set -eu
cd "$(dirname "$0")/.."

usage() {
  echo "usage: scripts/web.sh [--build | --serve [PORT] | --pictures]" >&2
  exit 2
}

task=${1:---test}
port=${2:-8080}
case $task in
  --test | --build | --serve | --pictures) ;;
  *) usage ;;
esac

scripts/setup.sh web
scripts/npm.sh --build

# Chromium is Debian's; nothing of it is downloaded.
export PLAYWRIGHT_SKIP_BROWSER_DOWNLOAD=1
npm_config_cache="${npm_config_cache:-$PWD/build/npm-cache}"
export npm_config_cache
cd web
# Not "npm ci": that wants what other systems need in the lock file too, which npm leaves out of it.
npm install --no-save --no-audit --no-fund --silent
npm run --silent build

case $task in
  --test)
    npm run --silent check-format
    npm test --silent
    ;;
  --serve) npx vite preview --port "$port" ;;
  --pictures) npm run --silent pictures ;;
esac
