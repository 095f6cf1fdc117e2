// Hand-made MIDI files that bend the format in the ways files found in the
// wild do, each with what the tolerant reader makes of it. The reader tests
// check them all; the MIDI-file fuzzer's corpus holds them as seeds.
#pragma once

#include <string>
#include <vector>

#include "midi_bytes.h"

namespace sablevox::testing {

struct BentMidiFile {
  const char* name;
  Bytes bytes;
  // The channel events read tolerantly, as "tick:status:data1:data2" in hex, or
  // nullptr when the file is refused even so.
  const char* events;
  const char* message;  // part of a warning, or of the refusal; "" for none
  bool strictPlays;     // read strictly too (perhaps with a warning)
};

inline Bytes joined(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

inline std::vector<BentMidiFile> bentMidiFiles() {
  const Bytes on = {0x00, 0x90, 0x3C, 0x64};   // note 60 on at the track's tick 0
  const Bytes off = {0x60, 0x80, 0x3C, 0x40};  // and off 96 ticks later
  const Bytes end = {0x00, 0xFF, 0x2F, 0x00};
  const Bytes note = joined({on, off, end});
  const Bytes other = {0x00, 0x91, 0x40, 0x64, 0x60, 0x81, 0x40, 0x40, 0x00, 0xFF, 0x2F, 0x00};
  const char* const both = "0:90:3C:64 0:91:40:64 60:80:3C:40 60:81:40:40";
  const char* const one = "0:90:3C:64 60:80:3C:40";
  // Two tracks, the first chunk's length changed by `delta` (its last byte).
  auto lengthOff = [&](int delta) {
    Bytes file = midiFile(1, 96, {note, other});
    file[21] = static_cast<unsigned char>(file[21] + delta);
    return file;
  };
  Bytes riff = {'R', 'I', 'F', 'F', 0, 0, 0, 0, 'R', 'M', 'I', 'D', 'd', 'a', 't', 'a', 0, 0, 0, 0};
  Bytes gap = midiFile(1, 96, {note});
  gap.insert(gap.end(), {0x00, 0x00, 0x13, 0x37, 0x00});
  appendChunk(gap, "MTrk", other);
  gap[11] = 2;
  Bytes shortHeader = midiFile(0, 96, {note});
  shortHeader[7] = 4;  // header length 4, yet its six bytes follow
  Bytes hugeChunk = midiFile(1, 96, {note, other});
  hugeChunk[18] = 0xFF;
  Bytes wrongTag = midiFile(0, 96, {note});
  wrongTag[16] = 'R';
  wrongTag[17] = 'K';
  Bytes trailing = midiFile(0, 96, {note});
  trailing.insert(trailing.end(), {0x00, 0x00, 0x1A});
  Bytes past = midiFile(0, 96, {joined({on, off})});
  past[21] = 100;
  return {
      {"stray-system-messages",
       midiFile(0, 96,
                {joined({on,
                         {0x00, 0xF8, 0x00, 0xF2, 0x10, 0x20, 0x00, 0xF1, 0x05, 0x00, 0xF4},
                         {0x60, 0x80, 0xF8, 0x3C, 0x40, 0x00, 0xFE},  // 0xF8 inside a message
                         end})}),
       one, "track 1: skipped system message 0xF8 at byte 27 (and 1 more like it)", false},
      {"running-status-across-meta-and-sysex",
       midiFile(0, 96,
                {joined({on,
                         {0x00, 0xFF, 0x01, 0x02, 'h', 'i', 0x00, 0x3E, 0x64},
                         {0x00, 0xF0, 0x03, 0x7E, 0x01, 0xF7, 0x60, 0x3C, 0x00, 0x00, 0x3E, 0x00},
                         end})}),
       "0:90:3C:64 0:90:3E:64 60:80:3C:00 60:80:3E:00",
       "continued after a meta or system exclusive", false},
      {"chunk-length-one-too-long", lengthOff(1), both, "does not match its events", false},
      {"chunk-length-one-too-short", lengthOff(-1), both, "does not match its events", false},
      {"end-of-track-missing", midiFile(1, 96, {joined({on, off}), other}), both,
       "track 1: no end-of-track event", true},
      {"end-of-track-early", midiFile(0, 96, {joined({note, {0x00, 0x00, 0x00}})}), one,
       "skipped 3 bytes after the end-of-track event at byte 34", true},
      {"chunk-past-end-of-file", past, one, "runs past the end of the file", false},
      {"cut-inside-an-event", midiFile(0, 96, {joined({on, {0x60, 0x80, 0x3C}})}), "0:90:3C:64",
       "event at byte 26 is cut short", false},
      {"format-2-patterns", midiFile(2, 96, {note, other}),
       "0:90:3C:64 60:80:3C:40 60:91:40:64 C0:81:40:40", "", true},
      {"zero-tempo", midiFile(0, 96, {joined({{0x00, 0xFF, 0x51, 0x03, 0, 0, 0}, note})}), one,
       "tempo of zero at byte 23; 120 BPM", true},
      {"zero-division", midiFile(0, 0, {note}), one, "480 ticks per quarter note assumed", false},
      {"riff-wrapper", joined({riff, midiFile(0, 96, {note})}), one,
       "skipped 20 bytes before the MThd header", false},
      {"garbage-between-tracks", gap, both, "skipped 5 bytes of garbage at byte 34", false},
      {"trailing-garbage", trailing, one, "ignored 3 bytes after the last chunk at byte 34", true},
      {"fewer-tracks-than-declared", midiFile(1, 96, {note, other}, 3), both,
       "3 tracks declared, 2 found", false},
      {"status-byte-inside-a-message",
       midiFile(0, 96, {joined({{0x00, 0x90, 0x3E, 0x90, 0x3C, 0x64}, off, end})}), one,
       "dropped the incomplete message 0x90 at byte 23", false},
      {"data-bytes-before-any-status",
       midiFile(0, 96, {joined({{0x00, 0x3C, 0x64, 0x90, 0x3C, 0x64}, off, end})}), one,
       "skipped data bytes without a status byte at byte 23", false},
      {"header-length-wrong", shortHeader, one, "header length 4 at byte 4 is wrong", false},
      {"huge-chunk-length-mid-file", hugeChunk, both, "runs past the end of the file", false},
      {"header-cut-short",
       {'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 1, 0, 2},
       nullptr,
       "header is incomplete",
       false},
      {"track-tagged-MTRK", wrongTag, nullptr, "1 track declared, none found", false},
  };
}

}  // namespace sablevox::testing
