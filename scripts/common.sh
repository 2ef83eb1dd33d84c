# Shared by the scripts: the repository root, the build folder and a private X server.
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
