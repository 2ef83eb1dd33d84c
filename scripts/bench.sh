#!/usr/bin/env bash
# Builds the benchmarks in Release and runs each; every program ends with its ratios
# against the baseline measured in the same run.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

bash "$top/scripts/setup.sh"
release="$top/build-release"
configure "$release" -DCMAKE_BUILD_TYPE=Release -DVELMORA_BUILD_BENCH=ON -DVELMORA_BUILD_TESTS=OFF -DVELMORA_BUILD_DEMO=OFF
cmake --build "$release" -j"$(nproc)"
start_xvfb
status=0
for program in "$release"/bench/bench_*; do
  [ -f "$program" ] && [ -x "$program" ] || continue
  echo "== $(basename "$program")"
  QT_QPA_PLATFORM=offscreen "$program" --benchmark_color=false "$@" || status=1
done
exit $status
