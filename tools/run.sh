#!/usr/bin/env bash
# Builds Merivane, creates the demo shop once and starts the till on it. Without a display it plays the scripted
# day of assets/demo/day instead and tells where receipts, pictures and the log lie.
#
#   MERIVANE_HOME   folder of the demo shop, by default ~/.local/share/merivane-demo
#   MERIVANE_OUT    folder of the scripted day, by default a new one in /tmp
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install.sh build
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
cmake --preset release >/dev/null
cmake --build --preset release --target merivane merivane-play merivane-sql merivane-umzug
bin=$PWD/build/release

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  out=${MERIVANE_OUT:-$(mktemp -d "${TMPDIR:-/tmp}/merivane-day-XXXXXX")}
  exec "$bin/merivane-play" assets/demo/day/{morning,noon,afternoon}.txt --out "$out"
fi

[ -n "${DISPLAY:-}" ] || tools/install.sh wayland
export MERIVANE_HOME="${MERIVANE_HOME:-${XDG_DATA_HOME:-$HOME/.local/share}/merivane-demo}"
[ -e "$MERIVANE_HOME/konfig.ini" ] || "$bin/merivane" --create-demo "$MERIVANE_HOME"
echo "The programs lie in $bin"
echo "The demo shop lives in $MERIVANE_HOME; receipts are appended to $MERIVANE_HOME/bondrucker.bin"
exec "$bin/merivane"
