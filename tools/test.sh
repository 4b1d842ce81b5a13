#!/usr/bin/env bash
# Builds and runs all tests with ctest, offscreen. Usage: tools/test.sh [ctest arguments]
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install.sh test
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1 QT_QPA_PLATFORM=offscreen
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
cmake --preset asan >/dev/null
cmake --build --preset asan
cd build/asan
exec ctest --output-on-failure -j"$(nproc)" "$@"
