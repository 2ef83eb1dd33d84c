#!/usr/bin/env bash
# Builds and runs the demo (arguments go to it). Without a display it runs on a private
# Xvfb and saves a screenshot to demo.png instead.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

bash "$top/scripts/setup.sh"
configure "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build "$build" --target velmora-demo -j"$(nproc)"
demo="$build/apps/demo/velmora-demo"
if [ -z "${DISPLAY:-}" ]; then
  start_xvfb
  shot="${VELMORA_SCREENSHOT:-$PWD/demo.png}"
  "$demo" --screenshot "$shot" "$@"
  echo "No display: the demo ran on a private X server; its window is in $shot"
else
  exec "$demo" "$@"
fi
