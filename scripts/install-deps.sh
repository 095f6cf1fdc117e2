#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the demo need, only
# when something is missing. Runs apt-get as root, or through sudo.
# Scripts that need more (the contact sheet, the spoken-wave generator) name
# their own packages as arguments.
set -euo pipefail

packages=(build-essential cmake ninja-build pkg-config g++ clang clang-format
          libclang-rt-14-dev libgtest-dev libgmock-dev libbenchmark-dev libsndfile1-dev
          amsynth
          # the editor's toolkit: Xlib and cairo, the fonts, and the tests'
          # own X server with the input extension; FreeType and libpng for the artwork
          # generator, which loads its faces by file
          libx11-dev libxext-dev libxtst-dev libcairo2-dev libfreetype-dev libpng-dev fontconfig fonts-liberation xvfb
          "$@")

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}" >&2
if [ "$(id -u)" -eq 0 ]; then sudo=(); else sudo=(sudo); fi
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
