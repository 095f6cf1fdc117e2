#!/usr/bin/env bash
# Renders every built-in wave (index 1 to 84; 0 is "off") as one held C3
# (MIDI note 48) through sablevox-render with a neutral patch, and tiles a
# spectrogram of each into one labelled PNG.
#
# Usage: scripts/wave-contact-sheet.sh [output.png] [audio-folder]
#   output.png    default docs/waves-contact-sheet.png
#   audio-folder  keep the rendered WAV files there (default: a temporary
#                 folder, removed at the end)
# Installs sox and ImageMagick's montage when missing; needs a built
# sablevox-render (SABLEVOX_RENDER overrides build/tools/render/sablevox-render).
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
render=${SABLEVOX_RENDER:-$root/build/tools/render/sablevox-render}
output=${1:-$root/docs/waves-contact-sheet.png}
bash "$root/scripts/install-deps.sh" sox imagemagick fonts-dejavu-core
for tool in sox montage "$render"; do
  command -v "$tool" >/dev/null || { echo "wave-contact-sheet: $tool is missing" >&2; exit 1; }
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
audio=${2:-$work}
mkdir -p "$audio"

# A format-0 MIDI file, 480 ticks a beat at 120 BPM: note 48 held 3 seconds.
printf 'MThd\0\0\0\6\0\0\0\1\1\340MTrk\0\0\0\15\0\220\60\144\226\100\200\60\0\0\377\57\0' \
  >"$work/c3.mid"

# Display names in index order, as the descriptor table has them.
mapfile -t names < <(sed -n 's/^ *{"[^"]*", "\([^"]*\)".*/\1/p' \
  "$root/src/data/wave_descriptors.cpp")
[ "${#names[@]}" -eq 85 ] || { echo "wave-contact-sheet: expected 85 wave names" >&2; exit 1; }

# Neutral patch: oscillator 2 off, filter, LFO and effect off (the defaults),
# an organ envelope so that the wave alone shapes the sound.
tiles=()
for index in $(seq 1 84); do
  name=${names[$index]}
  wav="$audio/$(printf '%02d' "$index").wav"
  "$render" "$work/c3.mid" -o "$wav" --format 16 --tail 0.3 \
    --set Osc1Wave="$name" --set Osc2Wave=off --set FiltType=off --set LFODest=off \
    --set EffType=0 --set EnvVolA=0 --set EnvVolS=1 --set EnvVolR=0 >/dev/null
  # 0 to 8 kHz (the first harmonics of C3 up to about the 60th), 80 dB range.
  sox "$wav" -n remix - rate 16k spectrogram -x 200 -y 129 -z 80 -r -o "$work/$index.png"
  tiles+=(-label "$index $name" "$work/$index.png")
done

mkdir -p "$(dirname "$output")"
# 64 colours keep the sheet near half a megabyte without visible loss.
montage "${tiles[@]}" -font DejaVu-Sans -pointsize 11 -tile 10x -geometry +3+3 \
  -background white -colors 64 "PNG8:$output"
echo "wave-contact-sheet: wrote $output"
