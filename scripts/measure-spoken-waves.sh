#!/usr/bin/env bash
# Measures how well each spoken wave keeps its phrase: speaks the phrase again
# with espeak-ng exactly as scripts/make-spoken-waves.sh does, renders the
# wave through sablevox-render with a neutral patch at its default loop and
# speed, and correlates the two spectral envelopes over time.
#
# Both sounds are cut into 256 frames (the source over its sounding span, the
# render over the time its default speed takes to walk the frames); each frame
# is a 25 ms Hann window, its power summed in 20 triangular mel bands from
# 100 Hz to 8 kHz and taken in dB, cells more than 60 dB under the loudest
# raised to that floor. "correlation" is Pearson's r over all 5120 band x
# frame cells; "reversed" is the same with the render's frames in reverse
# order, a baseline that shares the average spectrum but not the movement.
#
# Usage: scripts/measure-spoken-waves.sh     (BUILD_DIR, default build)
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build="${BUILD_DIR:-$root/build}"
ninja -C "$build" -j2 sablevox_voicegen sablevox-render >/dev/null
voicegen="$build/tools/voicegen/sablevox_voicegen"
render="$build/tools/render/sablevox-render"

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
BUILD_DIR="$build" "$root/scripts/make-spoken-waves.sh" --sources-only "$work/sources"

# The menu name of the wave made from a source stem, from the descriptor table.
name_of() { sed -n "s/.*\"$1\.mf\", \"\([^\"]*\)\".*/\1/p" "$root/src/data/wave_descriptors.cpp"; }

printf '%-16s %-30s %s\n' wave phrase result
while IFS=$'\t' read -r stem seconds text; do
  case "$stem" in '#'*|'') continue ;; esac
  # "+ stop" walks the frames in 1/(Hz * 0.0025) ticks of 110 samples at 44.1 kHz.
  walk=$(awk -v s="$seconds" 'BEGIN { printf "%.4f", (s / 0.0025) * 110 / 44100 }')
  # C3 (MIDI 60) plays these waves at 65.4 Hz, where their formants lie true.
  "$voicegen" midi "$work/note.mid" 60 "$(awk -v w="$walk" 'BEGIN { print w + 0.3 }')"
  "$render" "$work/note.mid" -o "$work/render.wav" --format float --tail 0.1 --bank empty \
    --set Osc1Wave="$(name_of "$stem")" --set Osc2Wave=off --set Osc1Mod=off \
    --set Osc1Loop=auto --set Osc1LSp=auto --set FiltType=off --set LFODest=off \
    --set EffType=off --set EnvVolA=0 --set EnvVolS=1 --set Fat=0 --set Analog=0 >/dev/null
  printf '%-16s %-30s %s\n' "$(name_of "$stem")" "$text" \
    "$("$voicegen" compare "$work/sources/$stem.wav" "$work/render.wav" "$walk")"
done <"$root/data/spoken/phrases.tsv"
