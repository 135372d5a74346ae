#!/usr/bin/env bash
# Installs what is missing, builds the demo editor and runs it on a bundled
# sample (or the file given). Without a display it renders PNG screenshots.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
build=${BUILD_DIR:-build}
cmake -S . -B "$build" >/dev/null
cmake --build "$build" --target sxedit -j"$(nproc)"
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  export QT_QPA_PLATFORM=offscreen
  exec "$build/apps/sxedit/sxedit" --screenshots out/screenshots "$@"
fi
exec "$build/apps/sxedit/sxedit" "$@"
