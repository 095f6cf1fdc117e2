#!/usr/bin/env bash
# Builds the libFuzzer targets with clang (address and undefined-behaviour
# sanitizers, coverage on every library) in build-fuzz, and runs each for a
# bounded time on a scratch copy of its corpus in fuzz/corpus/<target>.
#
#   scripts/fuzz.sh                 each target 60 s
#   scripts/fuzz.sh --time 600      each target 10 minutes
#   scripts/fuzz.sh --only midi_file --time 30
#
# A finding stops the run with a non-zero exit; the input that caused it is in
# build-fuzz/findings/<target>/. Fix the fault, then add that input to
# fuzz/corpus/<target>/ so every later run replays it.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=60
only=""
while [ $# -gt 0 ]; do
  case "$1" in
    --time) seconds=$2; shift 2 ;;
    --only) only=$2; shift 2 ;;
    *) echo "usage: $0 [--time SECONDS] [--only event_path|settings|midi_file]" >&2; exit 2 ;;
  esac
done

# libFuzzer ships in clang's runtime package, which a plain clang install may
# lack.
bash scripts/install-deps.sh

dir=build-fuzz
CC=clang CXX=clang++ cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_CXX_FLAGS_RELEASE=-O1 -DSABLEVOX_BENCH=OFF -DSABLEVOX_SANITIZE=address \
  -DSABLEVOX_FUZZ=ON -DCMAKE_C_FLAGS=-fsanitize=fuzzer-no-link \
  -DCMAKE_CXX_FLAGS=-fsanitize=fuzzer-no-link >/dev/null

targets=(event_path settings midi_file)
[ -n "$only" ] && targets=("$only")
cmake --build "$dir" --target "${targets[@]/#/sablevox_fuzz_}"

export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
for t in "${targets[@]}"; do
  work="$dir/corpus/$t"
  findings="$dir/findings/$t"
  mkdir -p "$work" "$findings"
  # -timeout: a single input running 10 s counts as a hang.
  "$dir/fuzz/sablevox_fuzz_$t" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=4096 \
    -print_final_stats=1 -artifact_prefix="$findings/" "$work" "fuzz/corpus/$t" \
    >"$dir/fuzz-$t.log" 2>&1 || {
    echo "fuzz $t: FOUND A FAULT (see $dir/fuzz-$t.log and $findings/)" >&2
    grep -E 'ERROR|SUMMARY|runtime error|Test unit written' "$dir/fuzz-$t.log" >&2 || true
    exit 1
  }
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$dir/fuzz-$t.log")
  echo "fuzz $t: ${runs} inputs in ${seconds} s, no fault"
done
