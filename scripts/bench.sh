#!/usr/bin/env bash
# Builds the benchmarks in Release and runs each; every program ends with its figures
# against the baseline measured in the same run, each naming the size it measured.
#
#   scripts/bench.sh [--benchmark_<option>=<value>...] [bench_<name>...]
#
# --benchmark_* options (--benchmark_repetitions=3, --benchmark_filter=BM_Save, ...) go to
# every Google Benchmark program; the plain programs (bench_map_stall) take no options and
# run with their own sizes. Names choose the programs to run (all of them by default).
# Anything else is refused, so that no program reads an option meant for another.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

usage() {
  sed -n 's/^#   //p' "${BASH_SOURCE[0]}" >&2
  echo "$1" >&2
  exit 2
}

options=()
wanted=()
for arg in "$@"; do
  case "$arg" in
    --benchmark_*) options+=("$arg") ;;
    bench_*) wanted+=("$arg") ;;
    *) usage "bench.sh: '$arg' is neither a --benchmark_* option nor a benchmark's name" ;;
  esac
done

bash "$top/scripts/setup.sh"
release="$top/build-release"
configure "$release" -DCMAKE_BUILD_TYPE=Release -DVELMORA_BUILD_BENCH=ON -DVELMORA_BUILD_TESTS=OFF -DVELMORA_BUILD_DEMO=OFF
cmake --build "$release" -j"$(nproc)"
manifest="$release/bench/bench_programs.txt"
[ -f "$manifest" ] || { echo "bench.sh: no benchmarks were built (is Google Benchmark installed?)" >&2; exit 1; }
for name in "${wanted[@]}"; do
  grep -q "/$name\$" "$manifest" || usage "bench.sh: there is no benchmark $name; there are: $(sed 's|.*/||' "$manifest" | tr '\n' ' ')"
done

start_xvfb
status=0
while read -r kind program; do
  name="$(basename "$program")"
  if [ ${#wanted[@]} -gt 0 ] && [[ " ${wanted[*]} " != *" $name "* ]]; then continue; fi
  echo "== $name"
  if [ "$kind" = google ]; then
    QT_QPA_PLATFORM=offscreen "$program" --benchmark_color=false "${options[@]}" || status=1
  else
    QT_QPA_PLATFORM=offscreen "$program" || status=1
  fi
done <"$manifest"
exit $status
