#!/usr/bin/env bash
# Builds and runs every test: the Release build (with the benchmarks as a
# smoke run), then the whole suite again under AddressSanitizer with
# UndefinedBehaviorSanitizer, and under ThreadSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
jobs=$(nproc)

bash scripts/check-format.sh

run_suite() {  # build-dir, extra cmake arguments...
  local dir=$1; shift
  cmake -S . -B "$dir" -G Ninja "$@" >/dev/null
  cmake --build "$dir"
  ctest --test-dir "$dir" --output-on-failure -j "$jobs" --timeout 600
}

run_suite build -DCMAKE_BUILD_TYPE=Release
bash scripts/bench-smoke.sh build
run_suite build-asan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSABLEVOX_SANITIZE=address -DSABLEVOX_BENCH=OFF
TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1" \
  run_suite build-tsan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSABLEVOX_SANITIZE=thread -DSABLEVOX_BENCH=OFF
echo "All test suites passed."
