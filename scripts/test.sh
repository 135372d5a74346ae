#!/usr/bin/env bash
# Installs what is missing, builds everything and runs every test headless,
# builds the API reference (a Doxygen warning fails it); then the whole suite
# once more under the sanitizers, and each fuzz target over its corpus and for
# a short time.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
build=${BUILD_DIR:-build}
cmake -S . -B "$build" -DSX_WERROR=ON >/dev/null
cmake --build "$build" -j"$(nproc)"
export QT_QPA_PLATFORM=offscreen
ctest --test-dir "$build" --output-on-failure -j"$(nproc)"
scripts/apidocs.sh "$build/docs/api"
scripts/sanitize.sh
FUZZ_SEED=${FUZZ_SEED:-1} scripts/fuzz.sh --seconds "${FUZZ_SECONDS:-20}"
