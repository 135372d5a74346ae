#!/usr/bin/env bash
# Installs what is missing, builds everything and runs every test headless.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
build=${BUILD_DIR:-build}
cmake -S . -B "$build" -DSX_WERROR=ON >/dev/null
cmake --build "$build" -j"$(nproc)"
export QT_QPA_PLATFORM=offscreen
ctest --test-dir "$build" --output-on-failure -j"$(nproc)"
