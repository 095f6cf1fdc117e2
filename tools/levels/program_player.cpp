// Rendering a key case through the plug-in and measuring it.
#include "levels/program_player.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "host/parameters.h"

namespace sablevox::levels {
namespace {

constexpr int64_t seconds(double s) {
  return static_cast<int64_t>(s * ProgramPlayer::kRate);
}

double toDb(double amplitude) {
  return amplitude > 1e-10 ? 20.0 * std::log10(amplitude) : -200.0;
}

// The keys are held 1.2 s, long enough for a slow pad to open; pattern
// programs two cycles of a rhythm (one cycle is two beats, a second at
// 120 BPM). Then 0.3 s of release.
std::vector<host::TimedMidi> events(const KeyCase& keys, bool pattern, int64_t& length) {
  const double end = pattern ? 2.2 : 1.2;
  length = seconds(end + 0.3);
  std::vector<int> played{keys.key};
  if (keys.triad) played.insert(played.end(), {keys.key + 4, keys.key + 7});
  std::vector<host::TimedMidi> list;
  for (int key : played) list.push_back({0, host::MidiMessage::noteOn(0, 0, key, keys.velocity)});
  for (int key : played) list.push_back({seconds(end), host::MidiMessage::noteOff(0, 0, key)});
  return list;
}

CaseMeasure measure(const std::vector<float>& left, const std::vector<float>& right) {
  CaseMeasure m;
  double peak = 0.0;
  double sum[2] = {0.0, 0.0};
  uint64_t digest = 1469598103934665603u;  // FNV-1a
  const size_t n = std::min(left.size(), right.size());
  for (size_t i = 0; i < n; ++i) {
    if (!std::isfinite(left[i]) || !std::isfinite(right[i])) m.finite = false;
    peak = std::max(
        {peak, std::fabs(static_cast<double>(left[i])), std::fabs(static_cast<double>(right[i]))});
    sum[0] += left[i];
    sum[1] += right[i];
    uint32_t bits[2];
    std::memcpy(&bits[0], &left[i], 4);
    std::memcpy(&bits[1], &right[i], 4);
    digest = (digest ^ bits[0]) * 1099511628211u;
    digest = (digest ^ bits[1]) * 1099511628211u;
  }
  m.digest = digest;
  if (!m.finite || n == 0) return m;
  m.peakDb = toDb(peak);
  m.dc = std::max(std::fabs(sum[0]), std::fabs(sum[1])) / static_cast<double>(n);
  // Mean square in 50 ms pieces, the loudness the loudest 8 in a row.
  const size_t piece = ProgramPlayer::kRate / 20;
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

const char* kNoteNames[] = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};

}  // namespace

std::string KeyCase::label() const {
  return kNoteNames[key % 12] + std::to_string(key / 12 - 1) + (triad ? " triad" : "") + " v" +
         std::to_string(velocity);
}

std::vector<KeyCase> allKeyCases() {
  std::vector<KeyCase> cases;
  for (int velocity : {100, 127}) {
    for (int octave = 2; octave <= 5; ++octave)
      cases.push_back({12 * (octave + 1), true, velocity});
    for (int octave = 1; octave <= 7; ++octave) {
      cases.push_back({12 * (octave + 1), false, velocity});
    }
  }
  return cases;
}

uint32_t caseSeed(int run, size_t index) {
  uint32_t x = static_cast<uint32_t>(run) * 0x9E3779B9u + static_cast<uint32_t>(index) + 1u;
  x ^= x >> 16;
  x *= 0x85EBCA6Bu;
  x ^= x >> 13;
  return x;
}

bool ProgramPlayer::start(const std::string& pluginPath, std::string& error) {
  host_ = std::make_shared<host::Host>();
  host_->setTempo(120.0);
  host_->setSampleRate(kRate);
  host_->setBlockSize(kBlock);
  plugin_ = host::Plugin::load(pluginPath, &error, host_);
  if (plugin_ == nullptr) return false;
  plugin_->open();
  plugin_->setSampleRate(kRate);
  plugin_->setBlockSize(kBlock);
  return true;
}

bool ProgramPlayer::select(int program) {
  host_->clearCalls();  // the log of the plug-in's calls would grow with every block
  plugin_->suspend();
  plugin_->setProgram(program);
  plugin_->resume();
  return plugin_->waitForSablevoxWaves();
}

float ProgramPlayer::volume() {
  return plugin_->getParameter(kVolume);
}

CaseMeasure ProgramPlayer::play(const KeyCase& keys, bool pattern, std::optional<uint32_t> seed) {
  // Suspending clears the voices and the effects' tails of the last case.
  plugin_->suspend();
  plugin_->resume();
  CaseMeasure failed;
  failed.finite = false;
  if (!plugin_->waitForSablevoxWaves()) return failed;
  // The arpeggiator forgets every key at the first tick of a new mode: one
  // silent block lets that pass before the keys arrive.
  left_.assign(kBlock, 0.0f);
  right_.assign(kBlock, 0.0f);
  plugin_->processReplacing(left_.data(), right_.data(), kBlock);
  if (seed && !plugin_->seedSablevoxRandom(*seed)) return failed;
  int64_t length = 0;
  const std::vector<host::TimedMidi> list = events(keys, pattern, length);
  plugin_->render(list, length, kBlock, left_, right_);
  return measure(left_, right_);
}

std::string categoryOf(const std::string& name) {
  size_t n = 0;
  while (n < name.size() && name[n] >= 'A' && name[n] <= 'Z') ++n;
  return n >= 2 && n <= 4 && n < name.size() && name[n] == ' ' ? name.substr(0, n) : "";
}

bool isPattern(const std::string& category) {
  return category == "ARP" || category == "SEQ";
}

}  // namespace sablevox::levels
