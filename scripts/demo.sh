#!/usr/bin/env bash
# The main job: builds the plug-in and the command-line host in Release and
# renders the bundled demo phrase to out/demo.wav.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release -DSABLEVOX_BENCH=OFF >/dev/null
cmake --build build --target sablevox sablevox-render
mkdir -p out
./build/tools/render/sablevox-render --demo -o out/demo.wav "$@"
