// The render: MIDI input to timed events, blocks through the plug-in, checks,
// the output file and the summary.
#include "render/render_session.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>

#include "render/audio_file.h"
#include "render/demo_phrase.h"
#include "render/midi_file.h"
#include "render/midi_schedule.h"
#include "render/plugin_session.h"
#include "render/progress.h"
#include "render/reports.h"
#include "render/sample_spool.h"
#include "render/tempo_map.h"

namespace sablevox::render {
namespace {

using Clock = std::chrono::steady_clock;

constexpr double kMaxRenderHours = 24.0;
constexpr int64_t kSpoolFrames = 65536;

std::string outputPath(const Options& options) {
  if (!options.output.empty()) return options.output;
  if (options.input.empty()) return "sablevox-demo.wav";
  return std::filesystem::path(options.input).replace_extension(".wav").string();
}

std::string hoursAndMinutes(double seconds) {
  const auto minutes = static_cast<int64_t>(seconds / 60.0);
  return std::to_string(minutes / 60) + " h " + std::to_string(minutes % 60) + " min";
}

bool readInput(const Options& options, MidiFile& midi, std::string& error) {
  if (options.input.empty()) return parseMidiFile(demoPhraseFile(), midi, error);
  std::error_code failure;
  if (std::filesystem::is_directory(options.input, failure)) {
    error = "cannot read MIDI file " + options.input + ": it is a folder";
    return false;
  }
  const MidiReading reading = options.strict ? MidiReading::strict : MidiReading::tolerant;
  return readMidiFile(options.input, midi, error, reading);
}

// A render longer than the output can hold (or than a day) is refused
// before it starts. The length is checked in seconds first, since a file of
// huge delta times may lie beyond any count of frames.
bool checkLength(const Options& options, const std::string& path, double seconds,
                 std::string& error) {
  const double fileLimit = static_cast<double>(maxAudioFileFrames(path, options.format)) /
                           static_cast<double>(options.sampleRate);
  if (seconds <= kMaxRenderHours * 3600.0 && seconds <= fileLimit) return true;
  const std::string input = options.input.empty() ? "the demo" : options.input;
  error = input + ": the render would last " + hoursAndMinutes(seconds);
  if (seconds > kMaxRenderHours * 3600.0) {
    error += "; at most " + std::to_string(static_cast<int>(kMaxRenderHours)) + " h are rendered";
  } else {
    error += "; this WAV file holds at most " + hoursAndMinutes(fileLimit) +
             " (write .flac, or 16-bit samples)";
  }
  return false;
}

int render(const Options& options, std::ostream& out, std::ostream& err, bool progress) {
  auto fail = [&err](int status, const std::string& message) {
    err << "sablevox-render: " << message << '\n';
    return status;
  };
  MidiFile midi;
  std::string error;
  if (!readInput(options, midi, error)) return fail(kExitInput, error);
  for (const std::string& warning : midi.warnings) err << "warning: " << warning << '\n';
  const std::string path = outputPath(options);
  if (!checkAudioFileName(path, options.format, error)) return fail(kExitUsage, error);
  const TempoMap tempo(midi, options.tempo, options.sampleRate);
  if (!checkLength(options, path, tempo.secondsAt(midi.lastTick) + options.tail, error)) {
    return fail(kExitInput, error);
  }
  const Schedule schedule =
      makeSchedule(midi, tempo, options.tail, options.sampleRate, options.ignoredControllers);

  PluginSession session;
  if (!openPlugin(options, true, session, error)) return fail(kExitPlugin, error);
  host::Plugin& plugin = *session.plugin;

  // Straight into the output file, or with --normalize into a spool first.
  AudioFileWriter writer;
  SampleSpool spool;
  if (!(options.normalize ? spool.open(path, error)
                          : writer.open(path, options.format, options.sampleRate, error))) {
    return fail(kExitOutput, error);
  }
  const auto gain = static_cast<float>(std::pow(10.0, options.gainDb / 20.0));
  std::vector<float> scaled[2];
  LevelMeter meters[2];
  int64_t done = 0;
  std::string badSample;

  // Rendering to a file is offline work: Sablevox then builds its wave tables
  // on this thread when they come due, so the file is the same every time.
  plugin.host().setProcessLevel(kVstProcessLevelOffline);
  plugin.resume();
  ProgressBar bar(err, progress, schedule.frames);
  const auto started = Clock::now();
  const bool complete = streamSchedule(
      plugin, schedule, tempo, options.blockSize,
      [&](int64_t start, VstInt32) {
        bar.update(std::max<int64_t>(start, 0));
        return true;
      },
      [&](const float* left, const float* right, VstInt32 length) {
        const float* channels[2] = {left, right};
        for (int c = 0; c < 2; ++c) {
          scaled[c].resize(static_cast<size_t>(length));
          for (VstInt32 i = 0; i < length; ++i) {
            if (!std::isfinite(channels[c][i])) {
              badSample = "the plug-in produced a non-finite sample at frame " +
                          std::to_string(done + i) + " (" + (c == 0 ? "left" : "right") +
                          "); nothing was written";
              return false;
            }
            scaled[c][static_cast<size_t>(i)] = channels[c][i] * gain;
          }
          meters[c].add(scaled[c].data(), length);
        }
        done += length;
        return options.normalize ? spool.write(scaled[0].data(), scaled[1].data(), length, error)
                                 : writer.write(scaled[0].data(), scaled[1].data(), length, error);
      });
  const double seconds = std::chrono::duration<double>(Clock::now() - started).count();
  bar.finish();
  if (!badSample.empty()) return fail(kExitOutput, badSample);
  if (!complete) return fail(kExitOutput, error);

  if (options.normalize) {
    // The second pass: the spool scaled so that the peak lands on the target.
    const double peak = std::max(meters[0].peak(), meters[1].peak());
    const auto factor =
        static_cast<float>(peak > 0.0 ? std::pow(10.0, kNormalizedPeakDb / 20.0) / peak : 1.0);
    meters[0] = LevelMeter{};
    meters[1] = LevelMeter{};
    if (!spool.rewind(error) || !writer.open(path, options.format, options.sampleRate, error)) {
      return fail(kExitOutput, error);
    }
    while (spool.read(scaled[0], scaled[1], kSpoolFrames) > 0) {
      const auto length = static_cast<int64_t>(scaled[0].size());
      for (auto& channel : scaled) {
        for (float& sample : channel) sample *= factor;
      }
      meters[0].add(scaled[0].data(), length);
      meters[1].add(scaled[1].data(), length);
      if (!writer.write(scaled[0].data(), scaled[1].data(), length, error)) {
        return fail(kExitOutput, error);
      }
    }
  }
  if (!writer.commit(error)) return fail(kExitOutput, error);
  out << summaryLine({path, describeFormat(path, options.format),
                      options.format != SampleFormat::float32, options.sampleRate, done,
                      meters[0].levels(), meters[1].levels(),
                      meters[0].beyondFullScale() + meters[1].beyondFullScale(), seconds})
      << '\n';
  return 0;
}

}  // namespace

int runCommand(const Options& options, std::ostream& out, std::ostream& err, bool progress) {
  switch (options.command) {
    case Command::help:
      out << usageText();
      return 0;
    case Command::version:
      out << "sablevox-render " << programVersion() << '\n';
      return 0;
    case Command::info:
      return reportInfo(options, out, err);
    case Command::listParams:
      return listParameters(options, out, err);
    case Command::listPrograms:
      return listPrograms(options, out, err);
    case Command::render:
      break;
  }
  return render(options, out, err, progress);
}

}  // namespace sablevox::render
