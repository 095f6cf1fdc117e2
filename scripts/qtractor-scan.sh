#!/usr/bin/env bash
# Runs Qtractor's plug-in scanner on Sablevox followed by amsynth's VST, as
# Qtractor does when it scans a folder, and checks that both are listed and
# that the scanner exits cleanly. The scanner probes a plug-in with a second
# instance that it never closes before it unloads the library.
#
#   bash scripts/qtractor-scan.sh [--plugin FILE] [--runs N]
#
# Without --plugin the plug-in is built in build/ (Release). Exit status 0
# when every run listed both plug-ins and ended with status 0.
set -euo pipefail
cd "$(dirname "$0")/.."

plugin=""
runs=10
while [ $# -gt 0 ]; do
  case "$1" in
    --plugin) plugin="$2"; shift 2 ;;
    --runs) runs="$2"; shift 2 ;;
    *) echo "usage: $0 [--plugin FILE] [--runs N]" >&2; exit 2 ;;
  esac
done

bash scripts/install-deps.sh qtractor
if [ -z "$plugin" ]; then
  cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
  cmake --build build --target sablevox >/dev/null
  plugin="$PWD/build/src/libsablevox.so"
fi
plugin="$(realpath "$plugin")"
next=/usr/lib/vst/amsynth_vst.so

# Debian installs it under the multiarch library folder.
scanner="$(find /usr/lib /usr/libexec -name qtractor_plugin_scan -type f 2>/dev/null | head -n 1)"
[ -n "$scanner" ] || { echo "qtractor_plugin_scan not found" >&2; exit 1; }

# The scanner reads "TYPE:FILE" lines on its input and prints one
# "VST|name|..." line for each plug-in it could load.
home="$(mktemp -d)"
trap 'rm -rf "$home"' EXIT
failures=0
for ((i = 1; i <= runs; i++)); do
  set +e
  listing="$(printf 'VST:%s\nVST:%s\n' "$plugin" "$next" |
    HOME="$home" XDG_CONFIG_HOME="$home" "$scanner" 2>/dev/null)"
  status=$?
  set -e
  names="$(printf '%s\n' "$listing" | cut -d'|' -f2 | paste -sd, -)"
  if [ "$status" -ne 0 ] || [ "$names" != "QuorlSablevox,amsynth" ]; then
    failures=$((failures + 1))
    echo "run $i: exit status $status, listed: ${names:-nothing}"
  else
    echo "run $i: exit status 0, listed: $names"
  fi
done
echo "$((runs - failures)) of $runs scans listed QuorlSablevox and amsynth and exited cleanly"
[ "$failures" -eq 0 ]
