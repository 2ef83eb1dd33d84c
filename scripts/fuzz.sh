#!/usr/bin/env bash
# Builds every fuzz target with clang in build-fuzz and runs each for a fixed time
# (VELMORA_FUZZ_SECONDS, 45 by default), starting from its seeds in fuzz/corpus/<target>.
# A crash, an ASan or UBSan error, a leak, a hang or running out of memory fails the lane;
# the input that caused it is kept in build-fuzz/artifacts/<target>/ and each target's log in
# build-fuzz/logs/. Arguments name the targets to run (all of them by default).
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

bash "$top/scripts/setup.sh"
fuzz="${VELMORA_FUZZ_BUILD_DIR:-$top/build-fuzz}"
seconds="${VELMORA_FUZZ_SECONDS:-45}"
configure "$fuzz" -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVELMORA_BUILD_FUZZ=ON \
  -DVELMORA_BUILD_TESTS=OFF -DVELMORA_BUILD_BENCH=OFF -DVELMORA_BUILD_DEMO=OFF
cmake --build "$fuzz" --target fuzzers -j"$(nproc)"

mapfile -t programs <"$fuzz/fuzz/fuzz_targets.txt"
for wanted in "$@"; do
  if ! printf '%s\n' "${programs[@]}" | grep -q "/$wanted\$"; then
    echo "fuzz: no fuzz target $wanted; there are: $(printf '%s ' "${programs[@]##*/}")" >&2
    exit 1
  fi
done
export QT_QPA_PLATFORM=offscreen
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1${UBSAN_OPTIONS:+:$UBSAN_OPTIONS}"
mkdir -p "$fuzz/logs"
status=0
ran=0
for program in "${programs[@]}"; do
  name="$(basename "$program")"
  if [ $# -gt 0 ] && [[ " $* " != *" $name "* ]]; then continue; fi
  ran=$((ran + 1))
  work="$fuzz/corpus/$name"          # what the runs find; the seeds stay as committed
  artifacts="$fuzz/artifacts/$name"
  log="$fuzz/logs/$name.log"
  mkdir -p "$work" "$artifacts"
  corpora=("$work")
  [ -d "$top/fuzz/corpus/$name" ] && corpora+=("$top/fuzz/corpus/$name")
  # One input may take at most 20 s (a hang is a finding); timeout(1) is the last resort
  # should the fuzzer itself stop answering.
  if (cd "$artifacts" && timeout --kill-after=10 $((seconds + 120)) "$program" \
        -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 -print_final_stats=1 \
        -artifact_prefix="$artifacts/" "${corpora[@]}") >"$log" 2>&1; then
    runs="$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)"
    echo "fuzz: $name passed: ${runs:-?} runs in ${seconds} s, $(find "$work" -type f | wc -l) inputs in its corpus"
  else
    status=1
    echo "fuzz: $name FAILED; from its log ($log):"
    # The report, from the error to the sanitizer's summary line, or else the end of the log.
    report="$(awk '/ERROR|runtime error|deadly signal/ { on = 1 } on && n++ < 80 { print } on && /^SUMMARY/ { exit }' "$log")"
    if [ -n "$report" ]; then echo "$report"; else tail -n 40 "$log"; fi | sed 's/^/    /'
    grep -h 'Test unit written to' "$log" | sed "s/^.*Test unit written to /fuzz: the input that caused it: /" || true
  fi
done
if [ $ran -eq 0 ]; then
  echo "fuzz: no fuzz target was built" >&2
  exit 1
fi
exit $status
