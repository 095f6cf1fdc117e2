// The parts of sablevox-render that need no plug-in: options, --set values,
// the settings folder, the audio writer and its levels. The demo phrase, as
// written and read back, is what every regression render plays: any change
// to it moves all their checksums.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <numbers>

#include "host/parameters.h"
#include "render/audio_file.h"
#include "render/options.h"
#include "render/parameter_setting.h"
#include "render/sample_spool.h"
#include "render/settings_folder.h"

namespace sablevox::render {
namespace {

bool parse(std::vector<std::string> args, Options& options, std::string& error) {
  return parseOptions(args, options, error);
}

TEST(RenderOptions, ValuesInBothSpellingsAndSettingNames) {
  Options options;
  std::string error;
  // clang-format off
  ASSERT_TRUE(parse({"song.mid", "-o", "out.flac", "--plugin=/x.so", "--sample-rate", "48000",
                     "--block-size=64", "--tempo", "133.5", "--program", "7", "--bank", "Factory B",
                     "--quality", "low", "--iqm=2", "--set", "FiltType=LP Moog", "--set=Cutoff=0.5",
                     "--tail", "0", "--format", "float", "--gain=-6.5", "--ignore-cc", "7,64-66"},
                    options, error)) << error;
  // clang-format on
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
  EXPECT_EQ(options.gainDb, -6.5);
  std::array<bool, 128> ignored{};
  for (int number : {7, 64, 65, 66}) ignored[number] = true;
  EXPECT_EQ(options.ignoredControllers, ignored);

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
  ASSERT_TRUE(parse({"--normalize"}, options, error));
  EXPECT_TRUE(options.normalize);
  EXPECT_TRUE(options.input.empty());  // the demo phrase
  ASSERT_TRUE(parse({"--version", "--frobnicate"}, options, error));
  EXPECT_EQ(options.command, Command::version);
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
      {{"--gain", "60"}, "-96 to 48 dB"},
      {{"--gain", "-3", "--normalize"}, "either --gain or --normalize"},
      {{"--ignore-cc", "7,128"}, "controller numbers 0 to 127"},
      {{"--ignore-cc", "10-7"}, "--ignore-cc"},
      {{"--ignore-cc", "7,"}, "--ignore-cc"},
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
  // Numbers outside 0..1 are refused, as the message says.
  for (const char* text : {"Cutoff=inf", "Cutoff=", "Cutoff=1.5", "Cutoff=-0.1", "FiltType=2"}) {
    EXPECT_FALSE(resolveSetting(text, names, true, setting, error)) << text;
  }
  EXPECT_NE(error.find("'2' for FiltType: expected a number from 0 to 1"), std::string::npos)
      << error;
  // Another plug-in's parameters take numbers only.
  EXPECT_FALSE(resolveSetting("FiltType=LP Moog", names, false, setting, error));
  EXPECT_NE(error.find("expected a number"), std::string::npos);
  const std::vector<std::string> waves = sablevoxChoiceNames(kOsc1Wave);
  EXPECT_EQ(waves.size(), 85u);
  EXPECT_EQ(waves[59], "WV Pulse 25%") << "listed as the user types it";
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

TEST(RenderAudioFile, WritesEachFormatInBlocksClipsIntegersAndMeasuresOnTheWay) {
  const std::string folder = ::testing::TempDir();
  std::vector<float> left(48000), right(48000);
  for (size_t i = 0; i < left.size(); ++i) {
    left[i] = 0.5f * static_cast<float>(std::sin(2.0 * std::numbers::pi * 1000.0 * i / 48000.0));
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
               {"c.wav", SampleFormat::float32, SF_FORMAT_WAVEX | SF_FORMAT_FLOAT, 0.0f},
               {"d.flac", SampleFormat::pcm24, SF_FORMAT_FLAC | SF_FORMAT_PCM_24, 1e-6f}};
  for (const auto& c : cases) {
    const std::string path = folder + c.name;
    std::string error;
    {
      AudioFileWriter writer;
      ASSERT_TRUE(writer.open(path, c.format, 48000, error)) << error;
      EXPECT_FALSE(std::filesystem::exists(path)) << "only the finished file is renamed into place";
      ASSERT_TRUE(writer.write(left.data(), right.data(), 700, error)) << error;
      ASSERT_TRUE(writer.write(left.data() + 700, right.data() + 700, 47300, error)) << error;
      ASSERT_TRUE(writer.commit(error)) << error;
    }
    SF_INFO info;
    const std::vector<float> samples = readBack(path, info);
    EXPECT_EQ(info.format, c.sndfileFormat) << c.name;
    EXPECT_EQ(info.samplerate, 48000);
    ASSERT_EQ(info.frames, 48000) << c.name;
    for (size_t i : {size_t{500}, size_t{700}, size_t{47999}}) {
      EXPECT_NEAR(samples[2 * i], left[i], c.tolerance) << c.name << " " << i;
      EXPECT_NEAR(samples[2 * i + 1], right[i], c.tolerance) << c.name << " " << i;
    }
    EXPECT_NEAR(samples[2 * 10], c.format == SampleFormat::float32 ? 1.5f : 1.0f, 1e-4f) << c.name;
    std::filesystem::remove(path);
  }
  EXPECT_EQ(describeFormat("x.flac", SampleFormat::pcm16), "16-bit FLAC");

  // The levels, fed in two pieces, of a -6 dB sine (its one loud sample
  // aside) and of silence.
  left[10] = left[9];
  LevelMeter meter;
  meter.add(left.data(), 1000);
  meter.add(left.data() + 1000, 47000);
  EXPECT_NEAR(meter.levels().peakDb, -6.02, 0.01);
  EXPECT_NEAR(meter.levels().rmsDb, -9.03, 0.01);
  EXPECT_EQ(meter.beyondFullScale(), 0);
  const float loud[] = {1.0f, -1.25f, 0.0f, 2.0f};
  meter.add(loud, 4);
  EXPECT_EQ(meter.beyondFullScale(), 2);
  EXPECT_TRUE(std::isinf(LevelMeter{}.levels().peakDb) && LevelMeter{}.levels().peakDb < 0);
}

TEST(RenderAudioFile, NothingIsLeftWhenWritingFailsOrStops) {
  const std::string folder = ::testing::TempDir() + "sablevox-nowrite/";
  std::filesystem::create_directories(folder);
  std::vector<float> samples(100, 0.1f);
  std::string error;
  AudioFileWriter writer;
  EXPECT_FALSE(writer.open(folder + "out.mp3", SampleFormat::pcm16, 44100, error));
  EXPECT_NE(error.find(".wav or .flac"), std::string::npos);
  EXPECT_FALSE(writer.open(folder + "out.flac", SampleFormat::float32, 44100, error));
  EXPECT_FALSE(writer.open(folder + "missing/out.wav", SampleFormat::pcm16, 44100, error));
  EXPECT_NE(error.find("cannot write"), std::string::npos);
  {
    // A render that stops half way (an error, an exception) drops its file.
    AudioFileWriter stopped;
    ASSERT_TRUE(stopped.open(folder + "out.wav", SampleFormat::pcm24, 44100, error)) << error;
    ASSERT_TRUE(stopped.write(samples.data(), samples.data(), 100, error));
    SampleSpool spool;
    ASSERT_TRUE(spool.open(folder + "out.wav", error)) << error;
    ASSERT_TRUE(spool.write(samples.data(), samples.data(), 100, error));
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder));
  std::filesystem::remove_all(folder);
  // A WAV file's 4 GiB: a little over 3 hours of float samples at 44.1 kHz.
  EXPECT_EQ(maxAudioFileFrames("x.wav", SampleFormat::float32), 536870399);
  EXPECT_GT(maxAudioFileFrames("x.flac", SampleFormat::pcm24), int64_t{1} << 40);
}

}  // namespace
}  // namespace sablevox::render
