// The Standard MIDI File reader against hand-made files: running status,
// velocity-0 note-ons, tempo changes, merged tracks, skipped chunks and
// system exclusive, the repairs of bent and cut files, and what is refused.
#include <gtest/gtest.h>

#include <cstdio>

#include "bent_midi_files.h"
#include "render/midi_file.h"

namespace sablevox::render {
namespace {

using testing::Bytes;
using testing::midiFile;

MidiFile parsed(const Bytes& bytes) {
  MidiFile file;
  std::string error;
  EXPECT_TRUE(parseMidiFile(bytes, file, error)) << error;
  return file;
}

std::string failure(const Bytes& bytes) {
  MidiFile file;
  std::string error;
  EXPECT_FALSE(parseMidiFile(bytes, file, error));
  EXPECT_FALSE(error.empty());
  return error;
}

// Channel events as "tick:status:data1:data2", in hex.
std::string signature(const MidiFile& file) {
  std::string text;
  char event[40];
  for (const MidiFileEvent& e : file.events) {
    std::snprintf(event, sizeof event, "%s%llX:%02X:%02X:%02X", text.empty() ? "" : " ",
                  static_cast<unsigned long long>(e.tick), e.bytes[0], e.bytes[1], e.bytes[2]);
    text += event;
  }
  return text;
}

TEST(MidiFile, RunningStatusAndVelocityZeroNoteOns) {
  const Bytes track = {0x00, 0x90, 0x3C, 0x64,        // note on 60
                       0x60, 0x3E, 0x50,              // running status: note on 62, 96 ticks later
                       0x60, 0x3C, 0x00,              // running status, velocity 0: note off 60
                       0x00, 0xC1, 0x05,              // program change, one data byte
                       0x10, 0x06,                    // running status with one data byte
                       0x81, 0x00, 0xE2, 0x00, 0x40,  // two-byte delta (128): pitch bend, channel 3
                       0x00, 0xFF, 0x2F, 0x00};
  const MidiFile file = parsed(midiFile(0, 96, {track}));
  EXPECT_EQ(file.format, 0);
  EXPECT_EQ(file.ticksPerQuarter, 96);
  EXPECT_EQ(signature(file),
            "0:90:3C:64 60:90:3E:50 C0:80:3C:00 C0:C1:05:00 D0:C1:06:00 150:E2:00:40");
  EXPECT_EQ(file.events[3].size, 2);
  EXPECT_EQ(file.lastTick, 336);
}

TEST(MidiFile, TracksMergeInTimeOrderAndTempoChangesAreCollected) {
  const Bytes conductor = {0x00, 0xFF, 0x51, 0x03, 0x07, 0xA1, 0x20,        // 500000 us at 0
                           0x87, 0x40, 0xFF, 0x51, 0x03, 0x03, 0xD0, 0x90,  // 250000 us at 960
                           0x00, 0xFF, 0x2F, 0x00};
  const Bytes melody = {0x00, 0x90, 0x40, 0x60, 0x83, 0x60, 0x80, 0x40, 0x00,  // 0 on, 480 off
                        0x00, 0xFF, 0x2F, 0x00};
  const Bytes bass = {0x83, 0x60, 0x95, 0x24, 0x70,        // 480: on, channel 6
                      0x00, 0xF0, 0x03, 0x7E, 0x01, 0xF7,  // system exclusive, skipped
                      0x00, 0xFF, 0x60, 0x01, 0x00,        // unknown meta event, skipped
                      0x83, 0x60, 0x85, 0x24, 0x00, 0x00, 0xFF, 0x2F, 0x00};  // 960: off
  Bytes bytes = midiFile(1, 480, {conductor, melody});
  testing::appendChunk(bytes, "XFIH", {1, 2, 3});  // unknown chunk between tracks
  testing::appendChunk(bytes, "MTrk", bass);
  bytes[11] = 3;  // three tracks declared
  const MidiFile file = parsed(bytes);
  EXPECT_EQ(file.trackCount, 3);
  EXPECT_TRUE(file.warnings.empty());
  ASSERT_EQ(file.tempos.size(), 2u);
  EXPECT_EQ(file.tempos[0].microsPerQuarter, 500000u);
  EXPECT_EQ(file.tempos[1].tick, 960);
  EXPECT_EQ(file.tempos[1].microsPerQuarter, 250000u);
  // At tick 480 the earlier track comes first.
  EXPECT_EQ(signature(file), "0:90:40:60 1E0:80:40:00 1E0:95:24:70 3C0:85:24:00");
  EXPECT_EQ(file.events[2].track, 2);
}

bool warned(const MidiFile& file, const std::string& part) {
  for (const std::string& warning : file.warnings) {
    if (warning.find(part) != std::string::npos) return true;
  }
  return false;
}

TEST(MidiFile, BentFilesPlayWithAWarningPerRepairAndStrictReadingRefusesThem) {
  for (const testing::BentMidiFile& bent : testing::bentMidiFiles()) {
    SCOPED_TRACE(bent.name);
    MidiFile file;
    std::string error;
    const bool played = parseMidiFile(bent.bytes, file, error);
    ASSERT_EQ(played, bent.events != nullptr) << error;
    if (!played) {
      EXPECT_NE(error.find(bent.message), std::string::npos) << error;
      continue;
    }
    EXPECT_EQ(signature(file), bent.events);
    if (*bent.message == '\0') {
      EXPECT_TRUE(file.warnings.empty()) << file.warnings.front();
    } else {
      EXPECT_TRUE(warned(file, bent.message)) << ::testing::PrintToString(file.warnings);
    }
    MidiFile strict;
    EXPECT_EQ(parseMidiFile(bent.bytes, strict, error, MidiReading::strict), bent.strictPlays)
        << error;
    if (bent.strictPlays) {
      EXPECT_EQ(signature(strict), bent.events);
    }
  }
}

TEST(MidiFile, EveryTruncationPlaysWhatIsThereOrIsRefusedStrictly) {
  const Bytes whole = midiFile(1, 480,
                               {{0x00, 0xFF, 0x51, 0x03, 0x07, 0xA1, 0x20, 0x00, 0xFF, 0x2F, 0x00},
                                {0x00, 0x90, 0x40, 0x60, 0x83, 0x60, 0x80, 0x40, 0x00}});
  parsed(whole);
  for (size_t length = 0; length < whole.size(); ++length) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<long>(length));
    MidiFile file;
    std::string error;
    // Once the first track's chunk header is there, something plays.
    EXPECT_EQ(parseMidiFile(cut, file, error), length >= 22) << length << ": " << error;
    EXPECT_FALSE(parseMidiFile(cut, file, error, MidiReading::strict)) << length;
    EXPECT_FALSE(error.empty());
  }
  // A delta time that never ends: the events before it play.
  const MidiFile file = parsed(
      midiFile(0, 96, {{0x00, 0x90, 0x3C, 0x40, 0x81, 0x81, 0x81, 0x81, 0x01, 0x90, 0x3C, 0x40}}));
  EXPECT_EQ(file.events.size(), 1u);
  EXPECT_TRUE(warned(file, "track 1: delta time longer than four bytes at byte 26"));
}

TEST(MidiFile, RepeatedRepairsShareALineAndTheLinesAreCapped) {
  const Bytes stray = {0x00, 0xF4, 0x00, 0xFF, 0x2F, 0x00};
  Bytes bytes = midiFile(1, 96, {{0x00, 0xF8, 0x00, 0xF8, 0x00, 0xF8, 0x00, 0xFF, 0x2F, 0x00}}, 46);
  for (int track = 2; track <= 46; ++track) testing::appendChunk(bytes, "MTrk", stray);
  const MidiFile file = parsed(bytes);
  ASSERT_EQ(file.warnings.size(), 41u);
  EXPECT_EQ(file.warnings.front(),
            "track 1: skipped system message 0xF8 at byte 23 (and 2 more like it)");
  EXPECT_EQ(file.warnings.back(), "6 more repairs not listed");
}

TEST(MidiFile, WhatIsNotAMidiFileIsRefused) {
  EXPECT_NE(failure({}).find("empty"), std::string::npos);
  EXPECT_NE(failure({'R', 'I', 'F', 'F', 0, 0, 0, 6, 0, 0, 0, 1, 0, 96}).find("no MThd"),
            std::string::npos);
  MidiFile file;
  std::string error;
  EXPECT_FALSE(readMidiFile("/nonexistent/file.mid", file, error));
  EXPECT_NE(error.find("cannot read"), std::string::npos);
  EXPECT_FALSE(readMidiFile(::testing::TempDir(), file, error));
  EXPECT_NE(error.find("a directory, not a MIDI file"), std::string::npos) << error;
  // An unknown format plays as format 1, but not when reading strictly.
  const Bytes format3 = midiFile(3, 96, {{0x00, 0x90, 0x3C, 0x40, 0x00, 0xFF, 0x2F, 0x00}});
  EXPECT_EQ(parsed(format3).format, 1);
  EXPECT_FALSE(parseMidiFile(format3, file, error, MidiReading::strict));
  EXPECT_NE(error.find("format 3 is not supported"), std::string::npos);
}

TEST(MidiFile, SmpteDivisionAndTheTemposOfFormat2Patterns) {
  // -25 frames a second, 40 ticks a frame: 1000 ticks a second.
  const MidiFile file = parsed(midiFile(0, 0xE728, {{0x00, 0xFF, 0x2F, 0x00}}));
  EXPECT_EQ(file.smpteFramesPerSecond, 25.0);
  EXPECT_EQ(file.smpteTicksPerFrame, 40);
  // A pattern that sets no tempo plays at 120 BPM, whatever came before it.
  const Bytes fast = {0x00, 0xFF, 0x51, 0x03, 0x03, 0xD0, 0x90, 0x60, 0xFF, 0x2F, 0x00};
  const MidiFile patterns = parsed(midiFile(2, 96, {fast, {0x60, 0xFF, 0x2F, 0x00}}));
  ASSERT_EQ(patterns.tempos.size(), 2u);
  EXPECT_EQ(patterns.tempos[1].tick, 96);
  EXPECT_EQ(patterns.tempos[1].microsPerQuarter, 500000u);
  EXPECT_EQ(patterns.lastTick, 192);
}

}  // namespace
}  // namespace sablevox::render
