// The parts of sablevox-render that need no plug-in: options, --set values,
// the settings folder, the audio writer and its levels, the demo phrase.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <numbers>

#include "host/parameters.h"
#include "render/audio_file.h"
#include "render/demo_phrase.h"
#include "render/midi_file.h"
#include "render/options.h"
#include "render/parameter_setting.h"
#include "render/settings_folder.h"

namespace sablevox::render {
namespace {

bool parse(std::vector<std::string> args, Options& options, std::string& error) {
  return parseOptions(args, options, error);
}

TEST(RenderOptions, ValuesInBothSpellingsAndSettingNames) {
  Options options;
  std::string error;
  ASSERT_TRUE(parse({"song.mid",
                     "-o",
                     "out.flac",
                     "--plugin=/x.so",
                     "--sample-rate",
                     "48000",
                     "--block-size=64",
                     "--tempo",
                     "133.5",
                     "--program",
                     "7",
                     "--bank",
                     "Factory B",
                     "--quality",
                     "low",
                     "--iqm=2",
                     "--set",
                     "FiltType=LP Moog",
                     "--set=Cutoff=0.5",
                     "--tail",
                     "0",
                     "--format",
                     "float"},
                    options, error))
      << error;
  EXPECT_EQ(options.command, Command::render);
  EXPECT_EQ(options.input, "song.mid");
  EXPECT_EQ(options.output, "out.flac");
  EXPECT_EQ(options.plugin, "/x.so");
  EXPECT_EQ(options.sampleRate, 48000);
  EXPECT_EQ(options.blockSize, 64);
  EXPECT_EQ(options.tempo, 133.5);
  EXPECT_EQ(options.program, 7);
  EXPECT_EQ(options.bank, 2);
  EXPECT_EQ(options.quality, 3);
  EXPECT_EQ(options.iqm, 2);
  EXPECT_EQ(options.sets, (std::vector<std::string>{"FiltType=LP Moog", "Cutoff=0.5"}));
  EXPECT_EQ(options.tail, 0.0);
  EXPECT_EQ(options.format, SampleFormat::float32);

  EXPECT_EQ(bankFromName("abstracts"), 4);
  EXPECT_EQ(bankFromName("C"), 3);
  EXPECT_EQ(bankFromName("factory_a"), 1);
  EXPECT_EQ(bankFromName("5"), -1);
  EXPECT_EQ(qualityFromName("Ultra"), 0);
  EXPECT_EQ(iqmFromName("pure"), 3);
  EXPECT_EQ(iqmFromName("extreme"), -1);

  ASSERT_TRUE(parse({"info", "--plugin", "p.so"}, options, error));
  EXPECT_EQ(options.command, Command::info);
  ASSERT_TRUE(parse({"--list-programs", "--bank", "0"}, options, error));
  EXPECT_EQ(options.command, Command::listPrograms);
  EXPECT_EQ(options.bank, 0);
  ASSERT_TRUE(parse({}, options, error));
  EXPECT_TRUE(options.input.empty());  // the demo phrase
}

TEST(RenderOptions, BadArgumentsAreNamedInTheMessage) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{"--frobnicate"}, "unknown option --frobnicate"},
      {{"--tail=1", "--wat=3"}, "unknown option --wat"},
      {{"--sample-rate"}, "--sample-rate needs a value"},
      {{"--sample-rate", "44.1k"}, "bad value '44.1k' for --sample-rate"},
      {{"--block-size", "0"}, "expected 1 to 65536"},
      {{"--block-size", "70000"}, "expected 1 to 65536"},
      {{"--tempo", "nan"}, "--tempo"},
      {{"--tail", "-1"}, "--tail"},
      {{"--quality", "best"}, "ultra, high, medium, low"},
      {{"--bank", "D"}, "--bank"},
      {{"--set", "Cutoff"}, "NAME=VALUE"},
      {{"--set", "=0.5"}, "NAME=VALUE"},
      {{"--format", "8"}, "16, 24 or float"},
      {{"a.mid", "b.mid"}, "more than one input"},
      {{"a.mid", "--demo"}, "either a MIDI file or --demo"},
  };
  for (const auto& [args, expected] : cases) {
    Options options;
    std::string error;
    EXPECT_FALSE(parse(args, options, error)) << args[0];
    EXPECT_NE(error.find(expected), std::string::npos) << error;
  }
}

TEST(RenderOptions, SetFindsParametersByNameAndChoicesByTheirNames) {
  std::vector<std::string> names;
  for (int i = 0; i < kNumParams; ++i) names.push_back(parameterInfo(i).name);
  ParameterSetting setting{};
  std::string error;
  // Each value must decode to the intended choice inside the plug-in.
  const struct {
    const char* text;
    int index;
    int steps;
    int choice;
  } choices[] = {{"FiltType=LP Moog", kFiltType, 39, 23},
                 {"Osc1Wave=WV Pulse 25%", kOsc1Wave, 85, 59},
                 {"Osc2Wave=WV Pulse 25%%", kOsc2Wave, 85, 59},
                 {"Osc2Wave=off", kOsc2Wave, 85, 0},
                 {"Voices=8", kVoices, 8, 4},  // the choice "8", not the number
                 {"GlMode=2 keys", kGlMode, 3, 2}};
  for (const auto& c : choices) {
    ASSERT_TRUE(resolveSetting(c.text, names, true, setting, error)) << c.text << ": " << error;
    EXPECT_EQ(setting.index, c.index) << c.text;
    EXPECT_EQ(steppedIndex(setting.value, c.steps), c.choice) << c.text;
  }
  ASSERT_TRUE(resolveSetting("Cutoff=0.7", names, true, setting, error));
  EXPECT_EQ(setting.index, kCutoff);
  EXPECT_EQ(setting.value, 0.7f);
  ASSERT_TRUE(resolveSetting("FiltType=0.2", names, true, setting, error));
  EXPECT_EQ(setting.value, 0.2f);

  EXPECT_FALSE(resolveSetting("Cutof=0.7", names, true, setting, error));
  EXPECT_NE(error.find("unknown parameter 'Cutof'"), std::string::npos);
  EXPECT_FALSE(resolveSetting("FiltType=LP Moog 2", names, true, setting, error));
  EXPECT_NE(error.find("neither a number nor one of its choices"), std::string::npos);
  EXPECT_FALSE(resolveSetting("Cutoff=inf", names, true, setting, error));
  EXPECT_FALSE(resolveSetting("Cutoff=", names, true, setting, error));
  // Another plug-in's parameters take numbers only.
  EXPECT_FALSE(resolveSetting("FiltType=LP Moog", names, false, setting, error));
  EXPECT_NE(error.find("expected a number"), std::string::npos);
  EXPECT_EQ(sablevoxChoiceNames(kOsc1Wave).size(), 85u);
  EXPECT_EQ(sablevoxChoiceNames(kFiltType).size(), 39u);
  EXPECT_TRUE(sablevoxChoiceNames(kCutoff).empty());
}

TEST(RenderSettings, TheRunsOwnFolderHoldsOnlyTheGivenValuesAndGoesAway) {
  setenv("XDG_CONFIG_HOME", "/users/own/config", 1);
  std::string folder;
  {
    SettingsFolder settings(4, -1, 3);
    ASSERT_TRUE(settings.ok()) << settings.error();
    folder = std::getenv("XDG_CONFIG_HOME");
    EXPECT_NE(folder, "/users/own/config");
    std::ifstream file(folder + "/Sablevox/settings");
    const std::string text((std::istreambuf_iterator<char>(file)),
                           std::istreambuf_iterator<char>());
    EXPECT_EQ(text, "Bank=4\nIQM=3\n");
  }
  EXPECT_STREQ(std::getenv("XDG_CONFIG_HOME"), "/users/own/config");
  EXPECT_FALSE(std::filesystem::exists(folder));
  unsetenv("XDG_CONFIG_HOME");
  { SettingsFolder settings(-1, -1, -1); }
  EXPECT_EQ(std::getenv("XDG_CONFIG_HOME"), nullptr);
}

// Reads a stereo file back as floats.
std::vector<float> readBack(const std::string& path, SF_INFO& info) {
  info = SF_INFO{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  if (file == nullptr) return {};
  std::vector<float> samples(static_cast<size_t>(info.frames * info.channels));
  sf_readf_float(file, samples.data(), info.frames);
  sf_close(file);
  return samples;
}

TEST(RenderAudioFile, WritesEachFormatAndClipsIntegerSamples) {
  const std::string folder = ::testing::TempDir();
  std::vector<float> left(1000), right(1000);
  for (size_t i = 0; i < left.size(); ++i) {
    left[i] = 0.5f * std::sin(static_cast<float>(i) * 0.1f);
    right[i] = -left[i];
  }
  left[10] = 1.5f;  // beyond full scale
  const struct {
    const char* name;
    SampleFormat format;
    int sndfileFormat;
    float tolerance;
  } cases[] = {{"a.wav", SampleFormat::pcm16, SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1.0f / 32768},
               {"b.WAV", SampleFormat::pcm24, SF_FORMAT_WAV | SF_FORMAT_PCM_24, 1e-6f},
               {"c.wav", SampleFormat::float32, SF_FORMAT_WAV | SF_FORMAT_FLOAT, 0.0f},
               {"d.flac", SampleFormat::pcm24, SF_FORMAT_FLAC | SF_FORMAT_PCM_24, 1e-6f}};
  for (const auto& c : cases) {
    const std::string path = folder + c.name;
    std::string error;
    ASSERT_TRUE(writeAudioFile(path, c.format, 48000, left, right, error)) << error;
    SF_INFO info;
    const std::vector<float> samples = readBack(path, info);
    EXPECT_EQ(info.format, c.sndfileFormat) << c.name;
    EXPECT_EQ(info.samplerate, 48000);
    ASSERT_EQ(info.frames, 1000) << c.name;
    EXPECT_NEAR(samples[2 * 500], left[500], c.tolerance) << c.name;
    EXPECT_NEAR(samples[2 * 500 + 1], right[500], c.tolerance) << c.name;
    EXPECT_NEAR(samples[2 * 10], c.format == SampleFormat::float32 ? 1.5f : 1.0f, 1e-4f) << c.name;
    std::filesystem::remove(path);
  }
  EXPECT_EQ(describeFormat("x.flac", SampleFormat::pcm16), "16-bit FLAC");
}

TEST(RenderAudioFile, NothingIsWrittenWhenWritingFails) {
  const std::string folder = ::testing::TempDir() + "sablevox-nowrite/";
  std::filesystem::create_directories(folder);
  std::vector<float> samples(100, 0.1f);
  std::string error;
  EXPECT_FALSE(
      writeAudioFile(folder + "out.mp3", SampleFormat::pcm16, 44100, samples, samples, error));
  EXPECT_NE(error.find(".wav or .flac"), std::string::npos);
  EXPECT_FALSE(
      writeAudioFile(folder + "out.flac", SampleFormat::float32, 44100, samples, samples, error));
  EXPECT_FALSE(writeAudioFile(folder + "missing/out.wav", SampleFormat::pcm16, 44100, samples,
                              samples, error));
  EXPECT_NE(error.find("cannot write"), std::string::npos);
  EXPECT_TRUE(std::filesystem::is_empty(folder));
  std::filesystem::remove_all(folder);
}

TEST(RenderAudioFile, LevelsOfASineAndOfSilence) {
  std::vector<float> sine(48000);
  for (size_t i = 0; i < sine.size(); ++i) {
    sine[i] = 0.5f * static_cast<float>(std::sin(2.0 * std::numbers::pi * 1000.0 * i / 48000.0));
  }
  const ChannelLevels levels = measureLevels(sine);
  EXPECT_NEAR(levels.peakDb, -6.02, 0.01);
  EXPECT_NEAR(levels.rmsDb, -9.03, 0.01);
  const ChannelLevels silent = measureLevels(std::vector<float>(10, 0.0f));
  EXPECT_TRUE(std::isinf(silent.peakDb) && silent.peakDb < 0);
}

TEST(RenderDemo, ThePhraseHasChordsBassAndMelodyThatAllEnd) {
  MidiFile file;
  std::string error;
  ASSERT_TRUE(parseMidiFile(demoPhraseFile(), file, error)) << error;
  EXPECT_EQ(file.format, 1);
  EXPECT_EQ(file.trackCount, 4);
  ASSERT_EQ(file.tempos.size(), 1u);
  EXPECT_EQ(file.tempos[0].microsPerQuarter, 600000u);  // 100 BPM
  int held[16][128] = {};
  int notesPerChannel[16] = {};
  int most[16] = {};
  for (const MidiFileEvent& event : file.events) {
    const int channel = event.bytes[0] & 15;
    int& count = held[channel][event.bytes[1]];
    if ((event.bytes[0] & 0xF0) == 0x90) {
      ++count;
      ++notesPerChannel[channel];
    } else {
      ASSERT_EQ(event.bytes[0] & 0xF0, 0x80);
      --count;
      ASSERT_GE(count, 0);
    }
    int sounding = 0;
    for (int key = 0; key < 128; ++key) sounding += held[channel][key];
    most[channel] = std::max(most[channel], sounding);
  }
  for (int channel = 0; channel < 3; ++channel) {
    for (int key = 0; key < 128; ++key) EXPECT_EQ(held[channel][key], 0);
    EXPECT_GE(notesPerChannel[channel], 15) << channel;
  }
  EXPECT_EQ(most[0], 3) << "three-note chords";
  EXPECT_EQ(most[1], 1) << "a bass line";
  EXPECT_EQ(most[2], 1) << "a melody";
  EXPECT_EQ(file.lastTick, 20 * 480);  // five bars of 4/4
}

}  // namespace
}  // namespace sablevox::render
