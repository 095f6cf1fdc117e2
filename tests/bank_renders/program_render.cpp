// The standard phrase through the plug-in and its level measurements.
#include "program_render.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "host/parameters.h"
#include "host/vendor_opcodes.h"

namespace sablevox::testing {
namespace {

constexpr int64_t seconds(double s) {
  return static_cast<int64_t>(s * BankPlayer::kRate);
}

double toDb(double amplitude) {
  return amplitude > 1e-10 ? 20.0 * std::log10(amplitude) : -200.0;
}

// A held C major chord, then a single low C. Pattern programs hold their keys
// for two cycles of a rhythm (one cycle is two beats, a second at 120 BPM).
std::vector<host::TimedMidi> phrase(bool pattern, int64_t& length) {
  const double chordEnd = pattern ? 2.2 : 1.2;
  const double lowStart = chordEnd + 0.3;
  const double lowEnd = lowStart + (pattern ? 1.2 : 0.9);
  length = seconds(lowEnd + 0.6);
  std::vector<host::TimedMidi> events;
  for (int key : {60, 64, 67, 72}) {
    events.push_back({0, host::MidiMessage::noteOn(0, 0, key, 100)});
  }
  for (int key : {60, 64, 67, 72}) {
    events.push_back({seconds(chordEnd), host::MidiMessage::noteOff(0, 0, key)});
  }
  events.push_back({seconds(lowStart), host::MidiMessage::noteOn(0, 0, 36, 100)});
  events.push_back({seconds(lowEnd), host::MidiMessage::noteOff(0, 0, 36)});
  return events;
}

ProgramMeasure measure(const std::vector<float>& left, const std::vector<float>& right) {
  ProgramMeasure m;
  double peak = 0.0;
  double sum[2] = {0.0, 0.0};
  const size_t n = std::min(left.size(), right.size());
  for (size_t i = 0; i < n; ++i) {
    if (!std::isfinite(left[i]) || !std::isfinite(right[i])) m.finite = false;
    peak = std::max(
        {peak, std::fabs(static_cast<double>(left[i])), std::fabs(static_cast<double>(right[i]))});
    sum[0] += left[i];
    sum[1] += right[i];
  }
  if (!m.finite || n == 0) return m;
  m.peakDb = toDb(peak);
  m.dc = std::max(std::fabs(sum[0]), std::fabs(sum[1])) / static_cast<double>(n);
  // Mean square in 50 ms pieces, the loudness the loudest 8 in a row.
  const size_t piece = BankPlayer::kRate / 20;
  std::vector<double> power;
  for (size_t start = 0; start + piece <= n; start += piece) {
    double s = 0.0;
    for (size_t i = start; i < start + piece; ++i) {
      s +=
          0.5 * (static_cast<double>(left[i]) * left[i] + static_cast<double>(right[i]) * right[i]);
    }
    power.push_back(s / static_cast<double>(piece));
  }
  double loudest = 0.0;
  for (size_t i = 0; i + 8 <= power.size(); ++i) {
    double s = 0.0;
    for (size_t k = i; k < i + 8; ++k) s += power[k];
    loudest = std::max(loudest, s / 8.0);
  }
  m.loudnessDb = toDb(std::sqrt(loudest));
  return m;
}

}  // namespace

bool BankPlayer::start(std::string& error) {
  host_ = std::make_shared<host::Host>();
  host_->setTempo(120.0);
  host_->setSampleRate(kRate);
  host_->setBlockSize(kBlock);
  plugin_ = host::Plugin::load(SABLEVOX_PLUGIN_PATH, &error, host_);
  if (plugin_ == nullptr) return false;
  plugin_->open();
  plugin_->setSampleRate(kRate);
  plugin_->setBlockSize(kBlock);
  // A program's first tick would drop the phrase's first keys whenever the
  // arpeggiator's mode differs from the last program's.
  plugin_->settleBeforeStart(true);
  return true;
}

ProgramMeasure BankPlayer::play(int program, bool pattern) {
  // Suspending clears the voices and the effects' tails of the last program.
  plugin_->suspend();
  plugin_->setProgram(program);
  plugin_->resume();
  ProgramMeasure m;
  m.name = programName(program);
  if (!plugin_->waitForSablevoxWaves()) {
    m.finite = false;
    return m;
  }
  int64_t length = 0;
  const std::vector<host::TimedMidi> events = phrase(pattern, length);
  plugin_->render(events, length, kBlock, left_, right_);
  const std::string name = m.name;
  m = measure(left_, right_);
  m.name = name;
  m.volume = plugin_->getParameter(kVolume);
  return m;
}

std::string categoryOf(const std::string& name) {
  size_t n = 0;
  while (n < name.size() && name[n] >= 'A' && name[n] <= 'Z') ++n;
  return n >= 2 && n <= 4 && n < name.size() && name[n] == ' ' ? name.substr(0, n) : "";
}

}  // namespace sablevox::testing
