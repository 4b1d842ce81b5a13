#!/usr/bin/env bash
# Formats all sources; with --check changes nothing, names those that differ and fails.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install.sh format
mode=(-i)
[ "${1:-}" = --check ] && mode=(--dry-run --Werror)
git ls-files -z -- '*.cpp' '*.h' | xargs -0 clang-format-14 "${mode[@]}"
