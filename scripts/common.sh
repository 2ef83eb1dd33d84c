# Shared by the scripts: the repository root, the build folder, a private X server and the
# test run that names flaky tests.
top="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${VELMORA_BUILD_DIR:-$top/build}"

configure() {
  local dir="$1"; shift
  local generator=()
  command -v ninja >/dev/null 2>&1 && generator=(-G Ninja)
  if [ -f "$dir/CMakeCache.txt" ] && ! grep -q "CMAKE_HOME_DIRECTORY:INTERNAL=$top\$" "$dir/CMakeCache.txt"; then
    rm -rf "$dir"
  fi
  cmake -S "$top" -B "$dir" "${generator[@]}" "$@" >/dev/null
}

xvfb_pid=""
start_xvfb() {
  local n
  if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
    XDG_RUNTIME_DIR="$(mktemp -d)"
    export XDG_RUNTIME_DIR
  fi
  for n in $(seq 99 140); do
    [ -e "/tmp/.X$n-lock" ] || [ -e "/tmp/.X11-unix/X$n" ] && continue
    Xvfb ":$n" -screen 0 1920x1080x24 -nolisten tcp >/dev/null 2>&1 &
    xvfb_pid=$!
    for _ in $(seq 1 50); do
      if DISPLAY=":$n" xdpyinfo >/dev/null 2>&1; then
        export DISPLAY=":$n"
        trap stop_xvfb EXIT
        return 0
      fi
      kill -0 "$xvfb_pid" 2>/dev/null || break
      sleep 0.1
    done
    kill "$xvfb_pid" 2>/dev/null || true
  done
  echo "could not start Xvfb" >&2
  return 1
}

stop_xvfb() {
  [ -n "$xvfb_pid" ] && kill "$xvfb_pid" 2>/dev/null
  xvfb_pid=""
}

# Runs ctest in the current build folder (arguments go to it). A failed test runs once more
# before it counts: the GL tests share a private X server, which has refused a connection once
# mid-run, and a real fault fails both times. A test that passed only on its rerun is named
# in a "FLAKY:" line at the end, and appended to $VELMORA_FLAKY_FILE when that is set, so that
# the rerun never hides it; the run still passes.
run_ctest() {
  local log status=0 flaky
  log="$(mktemp)"
  ctest --output-on-failure --repeat until-pass:2 -j"$(nproc)" "$@" 2>&1 | tee "$log" || status=${PIPESTATUS[0]}
  flaky="$(flaky_tests "$log")"
  rm -f "$log"
  if [ -n "$flaky" ]; then
    echo
    while read -r name; do
      echo "FLAKY: $name (failed once, passed on its rerun)"
      if [ -n "${VELMORA_FLAKY_FILE:-}" ]; then echo "$name (in $(basename "$PWD"))" >>"$VELMORA_FLAKY_FILE"; fi
    done <<<"$flaky"
  fi
  return "$status"
}

# The tests of a ctest log that have both a failed and a passed run.
flaky_tests() {
  awk '/Test +#[0-9]+: / {
         name = $0
         sub(/.*Test +#[0-9]+: /, "", name)
         sub(/ .*/, "", name)
         if ($0 ~ /\*\*\*/) failed[name] = 1
         else if ($0 ~ / Passed /) passed[name] = 1
       }
       END { for (name in failed) if (name in passed) print name }' "$1" | sort
}
