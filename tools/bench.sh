#!/usr/bin/env bash
# Builds Release and measures: one line a figure (name, measured, bound, ok or MISSED). Fails when a bound is missed.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install.sh bench
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1 QT_QPA_PLATFORM=offscreen
cmake --preset bench >/dev/null
cmake --build --preset bench >&2
missed=0
for bench in build/bench/bench/*_bench; do
  "$bench" 2>/dev/null || missed=1
done
exit $missed
