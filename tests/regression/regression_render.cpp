// The regression render: plug-in session of the command-line host, the demo
// schedule, timed parameter groups, and an FNV-1a checksum of the samples.
#include "regression/regression_render.h"

#include <chrono>
#include <cmath>
#include <cstring>

#include "host/vendor_opcodes.h"
#include "render/demo_phrase.h"
#include "render/midi_file.h"
#include "render/midi_schedule.h"
#include "render/parameter_setting.h"
#include "render/plugin_session.h"
#include "render/tempo_map.h"

namespace sablevox::testing {
namespace {

constexpr double kTempo = 300.0;
constexpr double kTail = 0.4;
constexpr int kSampleRate = 44100;

uint64_t fnv1a(uint64_t hash, const std::vector<float>& samples) {
  for (float s : samples) {
    uint32_t bits;
    std::memcpy(&bits, &s, sizeof bits);
    for (int byte = 0; byte < 4; ++byte) {
      hash ^= (bits >> (8 * byte)) & 0xFFu;
      hash *= 0x100000001B3ull;
    }
  }
  return hash;
}

}  // namespace

RegressionResult renderRegression(const RegressionCase& c) {
  RegressionResult result;
  render::Options options;
  options.plugin = SABLEVOX_PLUGIN_PATH;
  options.sampleRate = kSampleRate;
  options.blockSize = c.blockSize;
  options.tempo = kTempo;
  options.tail = kTail;
  options.bank = 0;  // empty: every program is the default record
  options.quality = c.quality;
  options.iqm = 0;
  options.sets = c.sets;

  render::MidiFile midi;
  if (!render::parseMidiFile(render::demoPhraseFile(), midi, result.error)) return result;
  render::PluginSession session;
  if (!render::openPlugin(options, true, session, result.error)) return result;
  host::Plugin& plugin = *session.plugin;

  std::vector<std::string> names;
  for (int i = 0; i < plugin.numParams(); ++i) names.push_back(plugin.paramName(i));
  std::vector<std::vector<render::ParameterSetting>> groups;
  for (const auto& texts : c.segments) {
    auto& group = groups.emplace_back();
    for (const auto& text : texts) {
      render::ParameterSetting setting{};
      if (!render::resolveSetting(text, names, true, setting, result.error)) return result;
      group.push_back(setting);
    }
  }

  const render::TempoMap tempo(midi, options.tempo, options.sampleRate);
  const render::Schedule schedule =
      render::makeSchedule(midi, tempo, options.tail, options.sampleRate);
  const auto segmentFrames = static_cast<int64_t>(c.segmentSeconds * kSampleRate);
  size_t applied = 0;
  bool late = false;
  std::vector<float> left;
  std::vector<float> right;
  plugin.resume();
  render::playSchedule(plugin, schedule, tempo, options.blockSize, left, right,
                       [&](int64_t start, VstInt32) {
                         while (applied < groups.size() &&
                                start >= static_cast<int64_t>(applied + 1) * segmentFrames) {
                           for (const auto& s : groups[applied])
                             plugin.setParameter(s.index, s.value);
                           ++applied;
                         }
                         late = !plugin.waitForSablevoxWaves();
                         return !late;
                       });
  if (late) {
    result.error = "wave tables not ready in time";
    return result;
  }
  result.frames = static_cast<int64_t>(left.size());
  for (const auto* channel : {&left, &right}) {
    for (float s : *channel) {
      if (!std::isfinite(s)) result.finite = false;
      result.peak = std::max(result.peak, std::fabs(s));
    }
  }
  result.checksum = fnv1a(fnv1a(0xCBF29CE484222325ull, left), right);
  return result;
}

}  // namespace sablevox::testing
