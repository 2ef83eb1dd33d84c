#!/usr/bin/env bash
# Builds the libraries and every test with AddressSanitizer and UBSan in build-asan and runs
# the whole suite (extra arguments go to ctest). An ASan error, a UBSan runtime error or a
# leak fails the test it happens in; tests/lsan.supp lists the leaks that are not ours.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

bash "$top/scripts/setup.sh"
asan="${VELMORA_ASAN_BUILD_DIR:-$top/build-asan}"
# No benchmarks and no demo program: the tests need only the demo's core library. -O1 and
# line tables (-g1) keep the stacks readable and build in half the time of -O2 -g.
configure "$asan" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g1 -DNDEBUG" \
  -DVELMORA_SANITIZE=ON -DVELMORA_WERROR=ON -DVELMORA_BUILD_TESTS=ON -DVELMORA_BUILD_BENCH=OFF -DVELMORA_BUILD_DEMO=OFF
cmake --build "$asan" -j"$(nproc)"
start_xvfb
cd "$asan"
run_ctest "$@"
