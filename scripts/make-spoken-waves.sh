#!/usr/bin/env bash
# Regenerates the spoken-wave data under data/spoken/: speaks each phrase of
# data/spoken/phrases.tsv with espeak-ng at a flat pitch, analyses it into 256
# harmonic frames, and synthesises and analyses the four drum loops. Run by
# hand (espeak-ng is not a build dependency); commit the .spk files it writes.
#
# Usage: scripts/make-spoken-waves.sh [--sources-only DIR]
#   BUILD_DIR (default build) is where sablevox_voicegen is built.
#   --sources-only DIR: only speak the phrases into DIR/<stem>.wav (used by
#   scripts/measure-spoken-waves.sh), writing no data.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build="${BUILD_DIR:-$root/build}"
sources=""
if [ "${1:-}" = "--sources-only" ]; then sources="${2:?a folder}"; fi

bash "$root/scripts/install-deps.sh" espeak-ng
[ -d "$build" ] || cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
ninja -C "$build" -j2 sablevox_voicegen >/dev/null
voicegen="$build/tools/voicegen/sablevox_voicegen"

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
out="${sources:-$work}"
mkdir -p "$out"

# Pitch 82 with the narrowest intonation range gives a nearly flat voice near
# 130.8 Hz, the pitch the analysis reads the harmonics at.
speak() {  # text, words per minute, output
  printf '<speak><prosody range="x-low">%s</prosody></speak>' "$1" >"$work/phrase.xml"
  espeak-ng -v en-us -m -p 82 -s "$2" -w "$3" -f "$work/phrase.xml"
}

# Sounding length of a file in seconds, as the analysis measures it.
length() { "$voicegen" speech "$1" "$work/probe.spk" | sed -n 's/.*: \([0-9.]*\) s of sound.*/\1/p'; }

while IFS=$'\t' read -r stem seconds text; do
  case "$stem" in '#'*|'') continue ;; esac
  # Speak once at the usual rate, then at the rate that fills the time the
  # wave's default speed takes (within espeak-ng's comfortable range).
  speak "$text" 175 "$work/first.wav"
  rate=$(awk -v l="$(length "$work/first.wav")" -v s="$seconds" \
    'BEGIN { r = int(175 * l / s + 0.5); if (r < 80) r = 80; if (r > 260) r = 260; print r }')
  speak "$text" "$rate" "$out/$stem.wav"
  if [ -z "$sources" ]; then
    "$voicegen" speech "$out/$stem.wav" "$root/data/spoken/$stem.spk"
  fi
done <"$root/data/spoken/phrases.tsv"

if [ -z "$sources" ]; then
  stems=(VoDl17 VoDl3 VoDl8 VoDl1)  # "VO Dloop 1", "VO Dloop 2", "VO Drumloop 3", "VO Drumloop 4"
  for i in 1 2 3 4; do
    "$voicegen" drums "$i" "$root/data/spoken/${stems[$((i - 1))]}.spk"
  done
fi
