#!/usr/bin/env bash
# Redraws docs/skins.png, the contact sheet of the eleven main-panel skins
# and the settings panel, from the artwork generator of the build in
# ${1:-build}. The test ArtworkContactSheetIsCurrent fails until this is run
# after a change of the artwork.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
cmake --build "$build" --target sablevox_artgen
"$build/tools/artgen/sablevox_artgen" --sheet docs/skins.png
echo "wrote docs/skins.png"
