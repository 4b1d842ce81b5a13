#!/usr/bin/env bash
# Installs from the Debian registry what the named job needs: "build", "test", "bench", "wayland" (a desktop
# without X) or "format".
set -euo pipefail
build=(g++ cmake ninja-build ccache pkg-config qt6-base-dev libgl1-mesa-dev libxkbcommon-dev qt6-serialport-dev
       qt6-multimedia-dev qt6-svg-dev libicu-dev libpq-dev libsqlite3-dev libcups2-dev libzint-dev fonts-inter
       qt6-translations-l10n)
packages=("${build[@]}")
case "${1:-build}" in
  build) ;;
  test) packages+=(libgtest-dev libgmock-dev postgresql-15 clang-14 libclang-rt-14-dev python3 poppler-utils
                     libzbar0) ;;
  bench) packages+=(libbenchmark-dev postgresql-15) ;;
  wayland) packages+=(qt6-wayland) ;;
  format) packages=(clang-format-14 git) ;;
  *) echo "usage: install.sh [build|test|bench|wayland|format]" >&2; exit 2 ;;
esac
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'ok installed' || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
sudo=()
[ "$(id -u)" -eq 0 ] || sudo=(sudo)
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -q
"${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}"
