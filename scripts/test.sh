#!/usr/bin/env bash
# Installs what is missing, builds everything and runs every test (extra arguments go to
# ctest). Tests that need OpenGL run on a private Xvfb started here.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

bash "$top/scripts/setup.sh"
configure "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVELMORA_BUILD_TESTS=ON -DVELMORA_BUILD_BENCH=ON -DVELMORA_BUILD_DEMO=ON
cmake --build "$build" -j"$(nproc)"
start_xvfb
cd "$build"
status=0
# A failed test runs once more before it counts: the GL tests share a private X server,
# which has refused a connection once mid-run. A real fault fails both times.
ctest --output-on-failure --repeat until-pass:2 -j"$(nproc)" "$@" || status=$?
exit $status
