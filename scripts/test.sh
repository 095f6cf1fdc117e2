#!/usr/bin/env bash
# Builds and runs every test: the Release build (with the benchmarks as a
# smoke run), then the whole suite again under AddressSanitizer with
# UndefinedBehaviorSanitizer, and under ThreadSanitizer (both without the
# long factory-program renders), then each fuzz target for a bounded time.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
jobs=$(nproc)

bash scripts/check-format.sh

run_suite() {  # build-dir, extra cmake arguments... (CTEST_ARGS: extra ctest arguments)
  local dir=$1; shift
  cmake -S . -B "$dir" -G Ninja "$@" >/dev/null
  cmake --build "$dir"
  # shellcheck disable=SC2086
  ctest --test-dir "$dir" --output-on-failure -j "$jobs" --timeout 600 ${CTEST_ARGS:-}
}

run_suite build -DCMAKE_BUILD_TYPE=Release
bash scripts/bench-smoke.sh build
# Sanitizer builds: -O1 without debug information compiles fastest and still
# reports every finding with its function names.
sanitized=(-DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE=-O1 -DSABLEVOX_BENCH=OFF)
CTEST_ARGS="-LE bank_renders" UBSAN_OPTIONS="print_stacktrace=1" \
  run_suite build-asan "${sanitized[@]}" -DSABLEVOX_SANITIZE=address
CTEST_ARGS="-LE bank_renders" TSAN_OPTIONS="halt_on_error=1" \
  run_suite build-tsan "${sanitized[@]}" -DSABLEVOX_SANITIZE=thread
bash scripts/fuzz.sh --time "${SABLEVOX_FUZZ_SECONDS:-30}"
echo "All test suites passed."
