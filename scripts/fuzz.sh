#!/usr/bin/env bash
# Builds the libFuzzer targets with clang (in build-fuzz) and runs each one
# over its seed corpus in tests/fuzz/corpus/<target>/, then fuzzes it for the
# given time. A crash, a hang or a broken invariant fails the run and leaves
# the input in the work folder (build-fuzz/work/<target>-crash-...).
#
#   scripts/fuzz.sh                            # every target, 20 seconds each
#   scripts/fuzz.sh --seconds 3600 fuzz_editing  # one target for an hour
#
# FUZZ_SEED fixes libFuzzer's seed (CI uses 1, so that a run can be repeated);
# without it every run draws a new one.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=20
targets=()
while [ $# -gt 0 ]; do
  case "$1" in
    --seconds) seconds=$2; shift 2 ;;
    *) targets+=("$1"); shift ;;
  esac
done
if [ ${#targets[@]} -eq 0 ]; then
  for dir in tests/fuzz/corpus/*/; do targets+=("$(basename "$dir")"); done
fi

build=${FUZZ_BUILD_DIR:-build-fuzz}
work=${FUZZ_WORK_DIR:-$build/work}
cmake -S . -B "$build" -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DSX_FUZZ=ON -DBUILD_SHARED_LIBS=OFF \
  -DSX_BUILD_TESTS=OFF -DSX_BUILD_BENCH=OFF -DSX_BUILD_APPS=OFF -DSX_WERROR=ON >/dev/null
cmake --build "$build" -j"$(nproc)" --target "${targets[@]}"

export QT_QPA_PLATFORM=offscreen
export LSAN_OPTIONS="suppressions=$PWD/tests/sanitizer/lsan.supp"
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

passed=0
failed=0
for target in "${targets[@]}"; do
  mkdir -p "$work/$target"
  echo "== $target: corpus, then ${seconds}s of fuzzing"
  # New inputs go to the work folder; the seed corpus in the repository stays as it is.
  if "$build/tests/fuzz/$target" -max_total_time="$seconds" -seed="${FUZZ_SEED:-0}" -rss_limit_mb=4096 -timeout=30 \
      -artifact_prefix="$work/$target-" "$work/$target" "tests/fuzz/corpus/$target" \
      >"$work/$target.log" 2>&1; then
    grep -a -E '^Done [0-9]+ runs' "$work/$target.log" || true
    passed=$((passed + 1))
  else
    tail -n 60 "$work/$target.log"
    failed=$((failed + 1))
  fi
done
echo "fuzz: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
