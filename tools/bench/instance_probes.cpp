// Block times around a filter-type change, and resident memory from
// /proc/self/status.
#include "bench/instance_probes.h"

#include <chrono>
#include <ctime>
#include <fstream>
#include <vector>

#include "bench/report.h"
#include "render/parameter_setting.h"
#include "render/plugin_session.h"

namespace sablevox::bench {
namespace {

constexpr int kRate = 44100;
constexpr int kBlock = 256;
constexpr int kNotes = 32;

// Keys spread over five octaves, so that 32 notes are 32 different keys.
int keyOf(int note) {
  return 36 + (note * 2) % 64 + (note * 2) / 64;
}

int blocksFor(double seconds) {
  return static_cast<int>(seconds * kRate / kBlock) + 1;
}

// Opens an instance with the subject's settings and `more`, resumed and with
// its wave tables built, and starts 32 notes.
bool startPlaying(const Subject& subject, const std::vector<std::string>& more,
                  render::PluginSession& session, std::string& error) {
  render::Options options = subject.options;
  options.sampleRate = kRate;
  options.blockSize = kBlock;
  options.sets.insert(options.sets.end(), more.begin(), more.end());
  if (!render::openPlugin(options, true, session, error)) return false;
  session.plugin->resume();
  if (session.sablevox && !session.plugin->waitForSablevoxWaves(std::chrono::seconds(30))) {
    error = "the wave tables were not ready in time";
    return false;
  }
  return true;
}

void playNotes(host::Plugin& plugin) {
  std::vector<host::MidiMessage> notes;
  for (int n = 0; n < kNotes; ++n) notes.push_back(host::MidiMessage::noteOn(0, 0, keyOf(n), 100));
  plugin.sendMidi(notes);
}

// CPU time of this thread, page faults included; unlike wall time it leaves
// out the moments another process held the core.
double threadMs() {
  timespec t{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) * 1e3 + static_cast<double>(t.tv_nsec) * 1e-6;
}

// VmRSS in MB; 0 where /proc is missing.
double residentMb() {
  std::ifstream status("/proc/self/status");
  std::string key;
  while (status >> key) {
    if (key == "VmRSS:") {
      double kb = 0.0;
      status >> kb;
      return kb / 1024.0;
    }
    status.ignore(1 << 12, '\n');
  }
  return 0.0;
}

}  // namespace

SwitchResult measureSwitch(const Subject& subject, const std::string& name, const std::string& from,
                           const std::string& to) {
  SwitchResult result;
  render::PluginSession session;
  if (!startPlaying(subject, {"Voices=32", name + "=" + from}, session, result.error)) {
    return result;
  }
  if (!session.sablevox) {
    result.error = "the type change is a Sablevox measure";
    return result;
  }
  host::Plugin& plugin = *session.plugin;
  render::ParameterSetting change{};
  std::vector<std::string> names;
  for (int i = 0; i < plugin.numParams(); ++i) names.push_back(plugin.paramName(i));
  if (!render::resolveSetting(name + "=" + to, names, true, change, result.error)) return result;

  std::vector<float> left(kBlock), right(kBlock);
  playNotes(plugin);
  const auto timedBlock = [&] {
    const double start = threadMs();
    plugin.processReplacing(left.data(), right.data(), kBlock);
    return threadMs() - start;
  };
  std::vector<double> usual;
  for (int b = blocksFor(1.0); b > 0; --b) usual.push_back(timedBlock());
  plugin.setParameter(change.index, change.value);
  for (int b = blocksFor(0.3); b > 0; --b) result.worstMs = std::max(result.worstMs, timedBlock());
  result.usualMs = median(usual);
  result.ok = true;
  return result;
}

ResidentResult measureResident(const Subject& subject) {
  ResidentResult result;
  const double before = residentMb();
  render::PluginSession session;
  if (!startPlaying(subject, {}, session, result.error)) return result;
  host::Plugin& plugin = *session.plugin;
  result.createdMb = residentMb() - before;
  std::vector<float> left(kBlock), right(kBlock);
  playNotes(plugin);
  for (int b = blocksFor(2.0); b > 0; --b)
    plugin.processReplacing(left.data(), right.data(), kBlock);
  result.playedMb = residentMb() - before;
  result.ok = true;
  return result;
}

}  // namespace sablevox::bench
