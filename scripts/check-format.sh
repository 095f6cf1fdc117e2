#!/usr/bin/env bash
# Fails when a C++ file differs from what .clang-format makes of it.
set -euo pipefail
cd "$(dirname "$0")/.."
files=$(git ls-files 'src/*.h' 'src/*.cpp' 'tests/*.h' 'tests/*.cpp' 'tools/*.h' 'tools/*.cpp' 'bench/*.cpp' 'fuzz/*.h' 'fuzz/*.cpp')
[ -z "$files" ] && exit 0
clang-format --dry-run -Werror $files
