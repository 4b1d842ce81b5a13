#!/usr/bin/env bash
# Builds and runs all tests with ctest, offscreen, and the fuzz targets while the tests are being built.
# Usage: tools/test.sh [ctest arguments]; with arguments the fuzz targets are built but not run.
# Warnings are errors here, and nowhere else. FUZZ_SECONDS sets how long each fuzz target runs.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install.sh test
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1 QT_QPA_PLATFORM=offscreen
cmake --preset fuzz -DFUZZ_SECONDS="${FUZZ_SECONDS:-20}" >/dev/null
cmake --build --preset fuzz
fuzz=""
if [ $# -eq 0 ]; then
  (cd build/fuzz && ctest --output-on-failure -j2 >fuzz.log 2>&1) &
  fuzz=$!
fi
cmake --preset asan -DMERIVANE_REQUIRE_SERVER=ON >/dev/null
cmake --build --preset asan
fuzz_status=0
if [ -n "$fuzz" ]; then
  wait "$fuzz" || fuzz_status=$?
  cat build/fuzz/fuzz.log
fi
cd build/asan
# ctest stops the database server of the tests itself, unless it is interrupted.
trap 'ctest -R "^postgres\.stop$" >/dev/null 2>&1 || true' EXIT
status=0
ctest --output-on-failure -j"$(nproc)" "$@" || status=$?
exit $((status != 0 ? status : fuzz_status))
