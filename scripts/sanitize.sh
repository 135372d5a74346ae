#!/usr/bin/env bash
# Builds everything with AddressSanitizer, UndefinedBehaviorSanitizer and
# LeakSanitizer (in build-asan) and runs the whole test suite there; any
# report fails the test that caused it. Third-party leaks at exit are
# suppressed by tests/sanitizer/lsan.supp.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${ASAN_BUILD_DIR:-build-asan}
export QT_QPA_PLATFORM=offscreen
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1:strict_string_checks=1
export LSAN_OPTIONS="suppressions=$PWD/tests/sanitizer/lsan.supp"
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
# The test programs run at build time too, to list their tests: the options above hold there.
cmake -S . -B "$build" -DSX_SANITIZE=ON -DSX_WERROR=ON -DSX_BUILD_BENCH=OFF -DSX_BUILD_APPS=OFF >/dev/null
cmake --build "$build" -j"$(nproc)"
ctest --test-dir "$build" --output-on-failure -j"$(nproc)"
