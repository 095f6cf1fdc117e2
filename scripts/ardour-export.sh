#!/usr/bin/env bash
# Exports the same MIDI-file session through Ardour's headless export N
# times with Sablevox as the instrument and compares the files sample for
# sample. An export runs faster than real time; the files must not differ.
#
#   bash scripts/ardour-export.sh [--plugin FILE] [--runs N] [--load]
#
# --load keeps a busy thread per core running during the exports, which
# starves any low-priority background work of the plug-in. Without --plugin
# the plug-in is built in build/ (Release). Exit status 0 when every export
# has sound and all are identical.
#
# The session: one MIDI track with Sablevox (found through LXVST_PATH), one
# region whose source is a MIDI file written here (a four-note chord, a
# program change after two seconds and a second chord), session range 7 s.
# ardour-lua creates the track and an empty MIDI region; the region's file
# is then replaced by ours (marked read-only in the session), and the
# session range is written into the session file, since Ardour's Lua
# interface offers neither a MIDI import nor a session range outside the
# editor.
set -euo pipefail
cd "$(dirname "$0")/.."

plugin=""
runs=5
load=0
while [ $# -gt 0 ]; do
  case "$1" in
    --plugin) plugin="$2"; shift 2 ;;
    --runs) runs="$2"; shift 2 ;;
    --load) load=1; shift ;;
    *) echo "usage: $0 [--plugin FILE] [--runs N] [--load]" >&2; exit 2 ;;
  esac
done

bash scripts/install-deps.sh ardour python3
if [ -z "$plugin" ]; then
  cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
  cmake --build build --target sablevox >/dev/null
  plugin="$PWD/build/src/libsablevox.so"
fi
plugin="$(realpath "$plugin")"

# Debian names the tools after the major version (ardour7-lua, ardour7-export).
lua_tool="$(compgen -c ardour | grep -E '^ardour[0-9]+-lua$' | sort -V | tail -n 1)"
export_tool="${lua_tool%-lua}-export"
scanner="$(ls /usr/lib/ardour*/ardour-vst-scanner 2>/dev/null | sort -V | tail -n 1)"
[ -n "$lua_tool" ] && [ -n "$scanner" ] || { echo "Ardour's tools not found" >&2; exit 1; }

work="$(mktemp -d)"
busy=()
cleanup() {
  for pid in "${busy[@]}"; do kill "$pid" 2>/dev/null || true; done
  rm -rf "$work"
}
trap cleanup EXIT
# Ardour's configuration, plug-in cache and Sablevox's settings stay in here.
export HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config"
mkdir -p "$HOME" "$work/vst"
cp "$plugin" "$work/vst/Sablevox.so"
# Ardour rescans (and without a user interface, skips) a plug-in that is not
# older than its cache entry.
touch -d '-2 minutes' "$work/vst/Sablevox.so"
export LXVST_PATH="$work/vst"
LD_LIBRARY_PATH="$(dirname "$scanner")" "$scanner" -q "$work/vst/Sablevox.so"

# The MIDI file: format 0, 480 ticks a beat, 120 beats a minute.
python3 - "$work/notes.mid" <<'EOF'
import struct, sys
def var(n):
    out = [n & 0x7F]
    while n > 127:
        n >>= 7
        out.insert(0, (n & 0x7F) | 0x80)
    return bytes(out)
events = []  # (tick, bytes)
events.append((0, bytes([0xFF, 0x51, 3, 0x07, 0xA1, 0x20])))
for key in (48, 55, 60, 64):
    events += [(0, bytes([0x90, key, 100])), (1440, bytes([0x80, key, 0]))]
events.append((1920, bytes([0xC0, 17])))
for key in (52, 59, 67):
    events += [(2040, bytes([0x90, key, 110])), (3600, bytes([0x80, key, 0]))]
events.sort(key=lambda e: (e[0], e[1][0] & 0xF0 == 0x90))
track, now = b"", 0
for tick, data in events:
    track += var(tick - now) + data
    now = tick
track += var(0) + bytes([0xFF, 0x2F, 0])
with open(sys.argv[1], "wb") as f:
    f.write(b"MThd" + struct.pack(">IHHH", 6, 0, 1, 480))
    f.write(b"MTrk" + struct.pack(">I", len(track)) + track)
EOF

cat >"$work/make-session.lua" <<EOF
AudioEngine:set_backend("None (Dummy)", "", "")
AudioEngine:set_sample_rate(44100)
AudioEngine:start(false)
create_session("$work/session", "session", 44100)
local info = nil
for p in ARDOUR.LuaAPI.list_plugins():iter() do
  if p.type == ARDOUR.PluginType.LXVST and p.name == "QuorlSablevox" then info = p end
end
assert(info, "Sablevox not found on LXVST_PATH")
local tracks = Session:new_midi_track(ARDOUR.ChanCount(ARDOUR.DataType("midi"), 1),
  ARDOUR.ChanCount(ARDOUR.DataType("audio"), 2), true, info, nil, nil, 1, "Sablevox",
  ARDOUR.PresentationInfo.max_order, ARDOUR.TrackMode.Normal, true)
local track = tracks:front()
-- Bouncing the empty track gives an empty MIDI region of 6 s and its file.
local region = track:bounce_range(0, 44100 * 6, ARDOUR.InterThreadInfo(),
  ARDOUR.LuaAPI.nil_proc(), false, "notes")
assert(not region:isnil(), "no region")
track:playlist():add_region(region, Temporal.timepos_t(0), 1, false)
Session:save_state("", false, false, false, false, false)
close_session()
EOF
"$lua_tool" "$work/make-session.lua" >"$work/lua.log" 2>&1 || { cat "$work/lua.log" >&2; exit 1; }

python3 - "$work/session/session.ardour" <<'EOF'
import re, sys
path = sys.argv[1]
text = open(path).read()
# Ardour counts time in superclocks of 282240000 a second.
seven = 7 * 282240000
location = ('<Locations>\n    <Location id="900001" name="session" start="a0" end="a%d" '
            'flags="IsSessionRange" locked="0" timestamp="0" cue="0"/>\n  </Locations>' % seven)
text, n = re.subn(r"<Locations/>", location, text)
assert n == 1, "no empty Locations element"
# The bounced file is marked empty and writable: Ardour would write it back
# empty. Ours is read as it is.
text, n = re.subn(r'(<Source name="notes[^"]*" [^>]*flags=")[^"]*"', r'\1"', text)
assert n == 1, "no MIDI source"
open(path, "w").write(text)
EOF
source_file="$(ls "$work"/session/interchange/session/midifiles/notes*.mid | head -n 1)"
cp "$work/notes.mid" "$source_file"

if [ "$load" -eq 1 ]; then
  for ((c = 0; c < $(nproc); c++)); do
    (while :; do :; done) &
    busy+=($!)
  done
fi

# Now and then Ardour's headless export hangs before it renders anything,
# whatever the plug-in (its butler never reports the locate done); such an
# export is stopped after a minute and run again, and counted.
hung=0
for ((i = 1; i <= runs; i++)); do
  for attempt in 1 2 3; do
    status=0
    timeout 60 "$export_tool" -s 44100 -b float -o "$work/export-$i.wav" "$work/session" session \
      >"$work/export-$i.log" 2>&1 || status=$?
    [ "$status" -eq 124 ] || break
    hung=$((hung + 1))
  done
  [ "$status" -eq 0 ] || { tail -n 20 "$work/export-$i.log" >&2; exit 1; }
done
[ "$hung" -eq 0 ] || echo "$hung export(s) hung in Ardour and were run again"

python3 - "$work" "$runs" <<'EOF'
import math, struct, sys
work, runs = sys.argv[1], int(sys.argv[2])
def samples(path):
    data = open(path, "rb").read()
    pos = 12
    while pos < len(data):
        tag, size = data[pos:pos + 4], struct.unpack("<I", data[pos + 4:pos + 8])[0]
        if tag == b"data":
            body = data[pos + 8:pos + 8 + size]
            return struct.unpack("<%df" % (len(body) // 4), body)
        pos += 8 + size + (size & 1)
    raise SystemExit(path + ": no data chunk")
def peak_db(x):
    p = max((abs(v) for v in x), default=0.0)
    return 20 * math.log10(p) if p > 0 else float("-inf")
first = samples("%s/export-1.wav" % work)
failed = False
for i in range(1, runs + 1):
    x = samples("%s/export-%d.wav" % (work, i))
    head = x[: 2 * 4410]  # the first 0.1 s, both channels
    same = x == first
    print("export %d: %d frames, peak %.1f dBFS, first 0.1 s peak %.1f dBFS, %s" %
          (i, len(x) // 2, peak_db(x), peak_db(head),
           "identical to export 1" if same else "DIFFERS from export 1"))
    failed |= not same or peak_db(head) < -60
print("%d exports: %s" % (runs, "all identical, with sound from the start" if not failed
                          else "NOT all identical or silent at the start"))
sys.exit(1 if failed else 0)
EOF
