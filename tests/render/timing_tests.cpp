// From MIDI ticks to the frame where the plug-in sees an event: the tempo
// map's arithmetic, the schedule made from a file's bytes, and the tempo the
// block loop tells the recording fake plug-in at each block.
#include <gtest/gtest.h>

#include "fake_plugin.h"
#include "midi_bytes.h"
#include "render/midi_schedule.h"

namespace sablevox::render {
namespace {

using testing::FakePlugin;

// 480 ticks a quarter; 120 BPM, then 240 BPM from tick 960, then 60 BPM from
// tick 1920. Notes at ticks 0, 480, 1000, 1920, 2400 on three tracks.
testing::Bytes tempoChangingFile() {
  const testing::Bytes conductor = {
      0x00, 0xFF, 0x51, 0x03, 0x07, 0xA1, 0x20,        // tick 0: 500000 us
      0x87, 0x40, 0xFF, 0x51, 0x03, 0x03, 0xD0, 0x90,  // tick 960: 250000 us
      0x87, 0x40, 0xFF, 0x51, 0x03, 0x0F, 0x42, 0x40,  // tick 1920: 1000000 us
      0x00, 0xFF, 0x2F, 0x00};
  const testing::Bytes lead = {0x00, 0x90, 0x3C, 0x64,        // tick 0
                               0x83, 0x60, 0x80, 0x3C, 0x00,  // tick 480 (off)
                               0x87, 0x40, 0x90, 0x43, 0x64,  // tick 1440
                               0x00, 0xFF, 0x2F, 0x00};
  const testing::Bytes bass = {0x87, 0x68, 0x91, 0x24, 0x64,  // tick 1000
                               0x87, 0x18, 0x24, 0x00,        // tick 1920, running status
                               0x83, 0x60, 0xB1, 0x40, 0x7F,  // tick 2400: sustain
                               0x00, 0xFF, 0x2F, 0x00};
  return testing::midiFile(1, 480, {conductor, lead, bass});
}

MidiFile parsedTempoFile() {
  MidiFile file;
  std::string error;
  EXPECT_TRUE(parseMidiFile(tempoChangingFile(), file, error)) << error;
  return file;
}

TEST(Timing, TempoMapTurnsTicksIntoSecondsAndFrames) {
  const MidiFile file = parsedTempoFile();
  const TempoMap map(file, 0.0, 48000.0);
  EXPECT_DOUBLE_EQ(map.secondsAt(480), 0.5);
  EXPECT_DOUBLE_EQ(map.secondsAt(960), 1.0);
  EXPECT_EQ(map.frameAt(1000), 49000);  // 1 s + 40 ticks of 1/1920 s
  EXPECT_EQ(map.frameAt(1440), 60000);
  EXPECT_EQ(map.frameAt(1920), 72000);
  EXPECT_EQ(map.frameAt(2400), 120000);  // a quarter at 60 BPM later
  EXPECT_EQ(map.bpmAtFrame(71999), 240.0);
  EXPECT_EQ(map.bpmAtFrame(72000), 60.0);
  EXPECT_EQ(TempoMap(file, 0.0, 44100.0).frameAt(7), 322);  // 321.56 frames, rounded

  const TempoMap fixed(file, 90.0, 44100.0);  // --tempo replaces the whole map
  EXPECT_EQ(fixed.frameAt(2400), 147000);     // 5 quarters at 90 BPM
  EXPECT_EQ(fixed.bpmAtFrame(100000), 90.0);

  MidiFile smpte;
  smpte.smpteFramesPerSecond = 25.0;
  smpte.smpteTicksPerFrame = 40;
  smpte.tempos = {{0, 250000}};  // has no effect on SMPTE time
  EXPECT_EQ(TempoMap(smpte, 0.0, 44100.0).frameAt(500), 22050);
}

// Where the events then land in the plug-in's blocks, for any block size,
// is the host library's render (host_library_tests).
TEST(Timing, ScheduleHoldsEventsAtTheirFramesAndEachBlockIsToldItsTempo) {
  const MidiFile file = parsedTempoFile();
  const TempoMap map(file, 0.0, 48000.0);
  const Schedule schedule = makeSchedule(file, map, 0.25, 48000.0);
  EXPECT_EQ(schedule.frames, 120000 + 12000);
  const int64_t expectedFrames[] = {0, 24000, 49000, 60000, 72000, 120000};
  const unsigned char expectedStatus[] = {0x90, 0x80, 0x91, 0x90, 0x81, 0xB1};
  ASSERT_EQ(schedule.events.size(), 6u);
  for (size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(schedule.events[i].frame, expectedFrames[i]) << i;
    EXPECT_EQ(schedule.events[i].message.bytes[0], expectedStatus[i]) << i;
  }

  std::string error;
  auto plugin = host::Plugin::fromEntry(&FakePlugin::entry, "fake", &error);
  ASSERT_NE(plugin, nullptr) << error;
  plugin->setSampleRate(48000.0);
  std::vector<float> left, right;
  ASSERT_TRUE(playSchedule(*plugin, schedule, map, 500, left, right));
  const FakePlugin& fake = FakePlugin::state();
  EXPECT_EQ(fake.events.size(), 6u);
  EXPECT_EQ(fake.framesRendered, schedule.frames);
  int64_t start = 0;
  for (size_t block = 0; block < fake.times.size(); ++block) {
    ASSERT_TRUE(fake.times[block].answered);
    EXPECT_EQ(fake.times[block].info.tempo, map.bpmAtFrame(start)) << block;
    EXPECT_EQ(fake.times[block].info.samplePos, static_cast<double>(start));
    start += fake.blockLengths[block];
  }
}

}  // namespace
}  // namespace sablevox::render
