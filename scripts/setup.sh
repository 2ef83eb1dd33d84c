#!/usr/bin/env bash
# Installs the Debian packages the library, its tests, benchmarks, demo and CI lanes need
# (clang and its libFuzzer runtime for the fuzz targets, llvm-symbolizer for sanitizer stacks).
# Idempotent and non-interactive: packages already present are left alone.
set -euo pipefail

packages=(
  build-essential cmake ninja-build ccache pkg-config
  qtbase5-dev qtbase5-dev-tools libqt5svg5-dev libqt5opengl5-dev qttools5-dev-tools
  libqwt-qt5-dev libcoin-dev libproj-dev libpng-dev
  libgl1-mesa-dri libgl1-mesa-dev libglu1-mesa-dev
  xvfb xauth x11-utils
  libbenchmark-dev
  clang libclang-rt-14-dev llvm
  fonts-dejavu-core
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

[ ${#missing[@]} -eq 0 ] && exit 0

echo "setup: installing ${missing[*]}"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
