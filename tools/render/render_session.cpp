// The render: MIDI input to timed events, blocks through the plug-in, checks,
// the output file and the summary.
#include "render/render_session.h"

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
#include "render/tempo_map.h"

namespace sablevox::render {
namespace {

using Clock = std::chrono::steady_clock;

std::string outputPath(const Options& options) {
  if (!options.output.empty()) return options.output;
  if (options.input.empty()) return "sablevox-demo.wav";
  return std::filesystem::path(options.input).replace_extension(".wav").string();
}

// Index of the first sample that is NaN or infinite, or -1.
int64_t firstNonFinite(const std::vector<float>& samples) {
  for (size_t i = 0; i < samples.size(); ++i) {
    if (!std::isfinite(samples[i])) return static_cast<int64_t>(i);
  }
  return -1;
}

int render(const Options& options, std::ostream& out, std::ostream& err, bool progress) {
  auto fail = [&err](int status, const std::string& message) {
    err << "sablevox-render: " << message << '\n';
    return status;
  };
  MidiFile midi;
  std::string error;
  const bool read = options.input.empty() ? parseMidiFile(demoPhraseFile(), midi, error)
                                          : readMidiFile(options.input, midi, error);
  if (!read) return fail(kExitInput, error);
  const std::string path = outputPath(options);
  if (!checkAudioFileName(path, options.format, error)) return fail(kExitUsage, error);

  PluginSession session;
  if (!openPlugin(options, true, session, error)) return fail(kExitPlugin, error);
  host::Plugin& plugin = *session.plugin;

  const TempoMap tempo(midi, options.tempo, options.sampleRate);
  const Schedule schedule = makeSchedule(midi, tempo, options.tail, options.sampleRate);

  // Rendering to a file is offline work: Sablevox then builds its wave tables
  // on this thread when they come due, so the file is the same every time.
  plugin.host().setProcessLevel(kVstProcessLevelOffline);
  plugin.resume();
  ProgressBar bar(err, progress, schedule.frames);
  std::vector<float> left;
  std::vector<float> right;
  const auto started = Clock::now();
  playSchedule(plugin, schedule, tempo, options.blockSize, left, right,
               [&](int64_t start, VstInt32) {
                 bar.update(start);
                 return true;
               });
  const double seconds = std::chrono::duration<double>(Clock::now() - started).count();
  bar.finish();

  for (const auto* channel : {&left, &right}) {
    const int64_t bad = firstNonFinite(*channel);
    if (bad >= 0) {
      return fail(kExitOutput,
                  "the plug-in produced a non-finite sample at frame " + std::to_string(bad) +
                      " (" + (channel == &left ? "left" : "right") + "); nothing was written");
    }
  }
  if (!writeAudioFile(path, options.format, options.sampleRate, left, right, error)) {
    return fail(kExitOutput, error);
  }
  const bool integerSamples = options.format != SampleFormat::float32;
  out << summaryLine({path, describeFormat(path, options.format), integerSamples,
                      options.sampleRate, &left, &right, seconds})
      << '\n';
  return 0;
}

}  // namespace

int runCommand(const Options& options, std::ostream& out, std::ostream& err, bool progress) {
  switch (options.command) {
    case Command::help:
      out << usageText();
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
