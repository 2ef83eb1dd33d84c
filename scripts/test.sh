#!/usr/bin/env bash
# Installs what is missing, builds everything and runs every test (extra arguments go to
# ctest). Tests that need OpenGL run on a private Xvfb started here.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

bash "$top/scripts/setup.sh"
configure "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVELMORA_WERROR=ON -DVELMORA_BUILD_TESTS=ON -DVELMORA_BUILD_BENCH=ON -DVELMORA_BUILD_DEMO=ON
cmake --build "$build" -j"$(nproc)"
start_xvfb
cd "$build"
run_ctest "$@"
