#!/usr/bin/env bash
# Runs every micro-benchmark for a moment: proves they build and run, times nothing.
set -euo pipefail
dir=${1:-build}
shopt -s nullglob
for b in "$dir"/bench/sablevox_bench_*; do
  [ -x "$b" ] || continue
  "$b" --benchmark_min_time=0.001 >/dev/null
done
