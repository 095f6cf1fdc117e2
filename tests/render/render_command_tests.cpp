// sablevox-render as a user runs it: the built program in fresh processes
// with the built plug-in (exit statuses, messages, nothing written on
// failure, identical renders, the user's settings untouched), and amsynth
// rendered in this process through the same command code.
#include <gtest/gtest.h>
#include <sndfile.h>
#include <sys/wait.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "bent_midi_files.h"
#include "midi_bytes.h"
#include "render/render_session.h"

namespace sablevox::render {
namespace {

namespace fs = std::filesystem;

std::string shellQuoted(const std::string& text) {
  std::string out(1, '\'');
  for (char c : text) {
    if (c == '\'') {
      out.append("'\\''");
    } else {
      out.push_back(c);
    }
  }
  out.push_back('\'');
  return out;
}

std::string fileText(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

void writeFile(const std::string& path, const testing::Bytes& bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
}

// The peak in dBFS of a stereo file's frames [from, to), both channels.
double peakDb(const std::string& path, double fromSeconds, double toSeconds) {
  SF_INFO info{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  if (file == nullptr) return -1000.0;
  std::vector<float> samples(static_cast<size_t>(info.frames * info.channels));
  sf_readf_float(file, samples.data(), info.frames);
  sf_close(file);
  const auto from = static_cast<size_t>(fromSeconds * info.samplerate) * 2;
  const auto to = std::min(samples.size(), static_cast<size_t>(toSeconds * info.samplerate) * 2);
  float peak = 0.0f;
  for (size_t i = from; i < to; ++i) peak = std::max(peak, std::fabs(samples[i]));
  return 20.0 * std::log10(std::max(peak, 1e-10f));
}

class RenderCommand : public ::testing::Test {
 protected:
  void SetUp() override {
#if defined(SABLEVOX_RENDER_PATH) && defined(SABLEVOX_PLUGIN_PATH)
    program_ = SABLEVOX_RENDER_PATH;
    plugin_ = SABLEVOX_PLUGIN_PATH;
#endif
    if (program_.empty() || !fs::exists(program_) || !fs::exists(plugin_)) {
      GTEST_SKIP() << "sablevox-render or the plug-in is not built";
    }
    folder_ = fs::path(::testing::TempDir()) /
              ("sablevox-render-" +
               std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
    fs::remove_all(folder_);
    fs::create_directories(folder_ / "config" / "Sablevox");
    fs::create_directories(folder_ / "tmp");
    userSettings_ = folder_ / "config" / "Sablevox" / "settings";
    std::ofstream(userSettings_) << "Quality=2\nBank=3\n";
  }
  void TearDown() override {
    if (!folder_.empty()) fs::remove_all(folder_);
  }

  // Runs the program with the user's settings folder; output of both streams.
  int run(const std::vector<std::string>& args, std::string& output) {
    std::string command = "XDG_CONFIG_HOME=" + shellQuoted((folder_ / "config").string()) +
                          " TMPDIR=" + shellQuoted((folder_ / "tmp").string()) + " " +
                          shellQuoted(program_) + " --plugin " + shellQuoted(plugin_);
    for (const std::string& arg : args) {
      command.push_back(' ');
      command.append(shellQuoted(arg));
    }
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return -1;
    output.clear();
    char buffer[512];
    while (fgets(buffer, sizeof buffer, pipe) != nullptr) output += buffer;
    const int status = pclose(pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  std::string path(const char* name) const {
    return (folder_ / name).string();
  }

  std::string program_;
  std::string plugin_;
  fs::path folder_;
  fs::path userSettings_;
};

TEST_F(RenderCommand, SameInputTwiceGivesIdenticalAudioAndASummary) {
  std::string output;
  const std::string first = path("first.wav");
  const std::string second = path("second.wav");
  // The demo's 20 beats at 400 BPM: 3 seconds, and the tempo option tried.
  ASSERT_EQ(run({"--demo", "--format", "float", "--tempo", "400", "--tail", "0.2", "--quality",
                 "low", "-o", first},
                output),
            0)
      << output;
  EXPECT_NE(output.find("first.wav: 3.20 s, 44100 Hz, 32-bit float WAV; peak "), std::string::npos)
      << output;
  EXPECT_NE(output.find("dBFS (L / R)"), std::string::npos);
  EXPECT_NE(output.find("x real time"), std::string::npos);
  ASSERT_EQ(
      run({"--format=float", "--tempo=400", "--tail=0.2", "--quality=low", "-o", second}, output),
      0)
      << output;
  const std::string audio = fileText(first);
  EXPECT_GT(audio.size(), 3.2 * 44100 * 8);
  EXPECT_TRUE(audio == fileText(second)) << "two renders of the demo differ";
  EXPECT_EQ(fileText(userSettings_), "Quality=2\nBank=3\n");
  EXPECT_EQ(
      std::distance(fs::directory_iterator(userSettings_.parent_path()), fs::directory_iterator{}),
      1);
}

TEST_F(RenderCommand, FailuresExitWithAReasonAndWriteNothing) {
  const std::string garbage = path("garbage.mid");
  std::ofstream(garbage) << "MThd but not really";
  const std::string empty = path("empty.mid");
  std::ofstream{empty};
  const std::string bent = path("bent.mid");
  const testing::Bytes stray = testing::bentMidiFiles().front().bytes;
  std::ofstream(bent, std::ios::binary)
      .write(reinterpret_cast<const char*>(stray.data()),
             static_cast<std::streamsize>(stray.size()));
  // A note, and its end 0x0FFFFFFF ticks later: 77 hours at 120 BPM.
  const std::string endless = path("endless.mid");
  writeFile(endless, testing::midiFile(0, 480,
                                       {{0x00, 0x90, 0x3C, 0x64, 0xFF, 0xFF, 0xFF, 0x7F, 0x80, 0x3C,
                                         0x00, 0x00, 0xFF, 0x2F, 0x00}}));
  const std::string out = path("out.wav");
  const struct {
    std::vector<std::string> args;
    int status;
    const char* message;
  } cases[] = {
      {{garbage, "-o", out}, 2, "garbage.mid: not a MIDI file"},
      {{empty, "-o", out}, 2, "empty.mid: not a MIDI file: it is empty"},
      {{bent, "--strict", "-o", out}, 2, "bent.mid: track 1: system message 0xF8 is not allowed"},
      {{path("missing.mid"), "-o", out}, 2, "cannot read MIDI file"},
      {{folder_.string(), "-o", out}, 2, "it is a folder"},
      {{endless, "-o", out}, 2, "would last 77 h 40 min; at most 24 h"},
      {{"--set", "Cutoff=1.5", "-o", out}, 3, "expected a number from 0 to 1"},
      {{"--set", "NoSuchKnob=0.5", "-o", out}, 3, "unknown parameter 'NoSuchKnob'"},
      {{"--set", "FiltType=LP Nothing", "-o", out}, 3, "neither a number nor one of its choices"},
      {{"--program", "128", "-o", out}, 3, "program 128 does not exist"},
      {{"--plugin", path("none.so"), "-o", out}, 3, "plug-in file not found"},
      {{"--plugin", garbage, "-o", out}, 3, "cannot load plug-in"},
      {{"--sample-rate", "fast", "-o", out}, 1, "bad value 'fast' for --sample-rate"},
      {{"-o", path("out.ogg")}, 1, "must end in .wav or .flac"},
  };
  for (const auto& c : cases) {
    std::string output;
    EXPECT_EQ(run(c.args, output), c.status) << output;
    EXPECT_NE(output.find(c.message), std::string::npos) << output;
    EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 1) << output;
    EXPECT_FALSE(fs::exists(out)) << c.message;
  }
  EXPECT_TRUE(fs::is_empty(folder_ / "tmp")) << "a temporary folder was left behind";
  std::vector<std::string> left;
  for (const auto& entry : fs::directory_iterator(folder_)) left.push_back(entry.path().filename());
  std::sort(left.begin(), left.end());
  EXPECT_EQ(left, (std::vector<std::string>{"bent.mid", "config", "empty.mid", "endless.mid",
                                            "garbage.mid", "tmp"}));
  // Without --strict the bent file plays, with one warning line per repair.
  std::string output;
  ASSERT_EQ(run({bent, "--tail", "0", "--quality", "low", "-o", out}, output), 0) << output;
  EXPECT_NE(output.find("warning: " + bent +
                        ": track 1: skipped system message 0xF8 at byte 27 (and 1 more like it)\n"),
            std::string::npos)
      << output;
  EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 6) << output;
  EXPECT_TRUE(fs::exists(out));
}

TEST_F(RenderCommand, ProgramChangesKeepTheNotesThatFollowThem) {
  // Bank A: program 94 arpeggiates, program 1 does not. A program change at
  // tick 0 with a chord, another at 1.5 s with a note; both must sound, with
  // blocks longer and shorter than a control tick.
  const std::string song = path("programs.mid");
  writeFile(song, testing::midiFile(0, 480,
                                    {{0x00, 0xC0, 0x5E,                                // program 94
                                      0x00, 0x90, 0x30, 0x64, 0x00, 0x3C, 0x64,        // chord
                                      0x00, 0x40, 0x64, 0x00, 0x43, 0x64, 0x00, 0x48,  //
                                      0x64, 0x8B, 0x20, 0x80, 0x30, 0x00, 0x00, 0x3C,  // 1440:
                                      0x00, 0x00, 0x40, 0x00, 0x00, 0x43, 0x00, 0x00,  // ends,
                                      0x48, 0x00, 0x00, 0xC0, 0x01,                    // program 1
                                      0x00, 0x90, 0x3C, 0x64, 0x83, 0x60, 0x80, 0x3C,  // and a note
                                      0x00, 0x00, 0xFF, 0x2F, 0x00}}));
  for (const char* blockSize : {"512", "64"}) {
    const std::string out = path("programs.wav");
    std::string output;
    ASSERT_EQ(
        run({song, "--bank", "A", "--block-size", blockSize, "--tail", "0.2", "-o", out}, output),
        0)
        << output;
    EXPECT_GT(peakDb(out, 0.3, 1.4), -30.0) << "the arpeggio, block size " << blockSize;
    EXPECT_GT(peakDb(out, 1.55, 1.95), -30.0) << "the note, block size " << blockSize;
  }
}

TEST_F(RenderCommand, VolumeFromTheFileCanBeIgnoredScaledOrNormalized) {
  // A triad that sets controller 7 (the program's Volume) to 100.
  const std::string song = path("volume.mid");
  writeFile(song,
            testing::midiFile(0, 480, {{0x00, 0xB0, 0x07, 0x64, 0x00, 0x90, 0x3C, 0x64, 0x00, 0x40,
                                        0x64, 0x00, 0x43, 0x64, 0x83, 0x60, 0x80, 0x3C, 0x00, 0x00,
                                        0x40, 0x00, 0x00, 0x43, 0x00, 0x00, 0xFF, 0x2F, 0x00}}));
  const std::string loud = path("loud.wav");
  std::string output;
  ASSERT_EQ(run({song, "--format", "float", "-o", loud}, output), 0) << output;
  const double level = peakDb(loud, 0.0, 10.0);
  EXPECT_GT(level, 6.0) << "controller 7 no longer sets the volume?";
  EXPECT_EQ(output.find("clipped"), std::string::npos) << "float files clip nothing";

  const std::string clipped = path("clipped.wav");
  ASSERT_EQ(run({song, "-o", clipped}, output), 0) << output;
  EXPECT_NE(output.find(" samples clipped (try --gain "), std::string::npos) << output;

  const std::string quiet = path("quiet.wav");
  ASSERT_EQ(run({song, "--format", "float", "--gain", "-12.5", "-o", quiet}, output), 0) << output;
  EXPECT_NEAR(peakDb(quiet, 0.0, 10.0), level - 12.5, 0.01);

  const std::string ignored = path("ignored.wav");
  ASSERT_EQ(run({song, "--format", "float", "--ignore-cc", "7", "-o", ignored}, output), 0)
      << output;
  EXPECT_LT(peakDb(ignored, 0.0, 10.0), level - 10.0);

  const std::string normalized = path("normalized.wav");
  ASSERT_EQ(run({song, "--normalize", "-o", normalized}, output), 0) << output;
  EXPECT_NEAR(peakDb(normalized, 0.0, 10.0), -1.0, 0.01);
  EXPECT_EQ(output.find("clipped"), std::string::npos) << output;
  EXPECT_TRUE(fs::is_empty(folder_ / "tmp"));
  std::vector<std::string> files;
  for (const auto& entry : fs::directory_iterator(folder_))
    files.push_back(entry.path().filename());
  EXPECT_EQ(files.size(), 8u) << "the spool file is gone";
}

TEST_F(RenderCommand, InfoAndListsReportWhatTheHostSees) {
  std::string output;
  ASSERT_EQ(run({"info"}, output), 0) << output;
  EXPECT_NE(output.find("Unique id:       'QSBV' (1364410966, 0x51534256)"), std::string::npos)
      << output;
  EXPECT_NE(output.find("Inputs, outputs: 0, 2"), std::string::npos);
  EXPECT_NE(output.find("Parameters:      50"), std::string::npos);
  EXPECT_NE(output.find("Programs:        128"), std::string::npos);
  EXPECT_NE(output.find("IsSynth"), std::string::npos);

  ASSERT_EQ(run({"--list-params", "--set", "FiltType=LP Moog"}, output), 0) << output;
  EXPECT_NE(output.find("16  FiltType  0.120000"), std::string::npos) << output;
  EXPECT_NE(output.find("LP Moog Noisy"), std::string::npos) << "choice names are listed";

  ASSERT_EQ(run({"--list-programs"}, output), 0) << output;
  EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 128);

  ASSERT_EQ(run({"--version"}, output), 0) << output;
  EXPECT_EQ(output.rfind("sablevox-render ", 0), 0u) << output;
}

TEST(RenderAmsynth, TheDemoRendersThroughAmsynthToo) {
  const char* amsynth = "/usr/lib/vst/amsynth_vst.so";
  if (!fs::exists(amsynth)) GTEST_SKIP() << "amsynth is not installed";
  const std::string out = ::testing::TempDir() + "sablevox-amsynth.flac";
  Options options;
  options.plugin = amsynth;
  options.output = out;
  options.tail = 0.5;
  std::ostringstream summary;
  std::ostringstream messages;
  ASSERT_EQ(runCommand(options, summary, messages, false), 0) << messages.str();
  EXPECT_NE(summary.str().find("12.50 s, 44100 Hz, 24-bit FLAC"), std::string::npos)
      << summary.str();
  SF_INFO info{};
  SNDFILE* file = sf_open(out.c_str(), SFM_READ, &info);
  ASSERT_NE(file, nullptr);
  std::vector<float> samples(static_cast<size_t>(info.frames * 2));
  sf_readf_float(file, samples.data(), info.frames);
  sf_close(file);
  fs::remove(out);
  float peak = 0.0f;
  for (float sample : samples) peak = std::max(peak, std::fabs(sample));
  EXPECT_GT(peak, 0.1f);
}

}  // namespace
}  // namespace sablevox::render
