// Timing of one instance: thread CPU clock for the audio thread (this one),
// getrusage for the process, a steady clock for creation.
#include "bench/measure.h"

#include <sys/resource.h>

#include <chrono>
#include <cmath>
#include <ctime>
#include <thread>
#include <vector>

#include "host/vendor_opcodes.h"
#include "render/plugin_session.h"

namespace sablevox::bench {
namespace {

using Clock = std::chrono::steady_clock;

double threadSeconds() {
  timespec t{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

double processSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  auto seconds = [](const timeval& t) {
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// Sablevox answers its vendor call once its tables are built; it takes them
// up at the head of a block, so empty blocks run while waiting. Other
// plug-ins get a fixed moment for whatever they start in the background.
bool settle(render::PluginSession& session) {
  host::Plugin& plugin = *session.plugin;
  if (!session.sablevox) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    return true;
  }
  return plugin.waitForSablevoxWaves(std::chrono::seconds(30));
}

// Keys spread over five octaves, so that 32 notes are 32 different keys.
int keyOf(int note) {
  return 36 + (note * 2) % 64 + (note * 2) / 64;
}

}  // namespace

RunResult measureRun(const Subject& subject, const RunShape& shape) {
  RunResult result;
  render::Options options = subject.options;
  options.sampleRate = shape.sampleRate;
  options.blockSize = shape.blockSize;
  render::PluginSession session;
  if (!render::openPlugin(options, true, session, result.error)) return result;
  host::Plugin& plugin = *session.plugin;
  plugin.resume();
  std::vector<float> left(static_cast<size_t>(shape.blockSize));
  std::vector<float> right(left.size());
  if (!settle(session)) {
    result.error = "the wave tables were not ready in time";
    return result;
  }
  std::vector<host::MidiMessage> notes;
  for (int n = 0; n < shape.notes; ++n)
    notes.push_back(host::MidiMessage::noteOn(0, 0, keyOf(n), 100));
  if (!notes.empty()) plugin.sendMidi(notes);

  // Past the attacks before the clock starts.
  const auto blocksFor = [&](double seconds) {
    return std::max<int64_t>(1, std::llround(seconds * shape.sampleRate / shape.blockSize));
  };
  for (int64_t b = blocksFor(0.3); b > 0; --b)
    plugin.processReplacing(left.data(), right.data(), shape.blockSize);

  const int64_t blocks = blocksFor(shape.seconds);
  const double thread0 = threadSeconds();
  const double process0 = processSeconds();
  for (int64_t b = 0; b < blocks; ++b) {
    plugin.processReplacing(left.data(), right.data(), shape.blockSize);
  }
  const double thread1 = threadSeconds();
  const double process1 = processSeconds();
  for (size_t i = 0; i < left.size(); ++i) {
    result.peak = std::max({result.peak, std::fabs(left[i]), std::fabs(right[i])});
  }
  const double audio = static_cast<double>(blocks * shape.blockSize) / shape.sampleRate;
  result.audioCpu = (thread1 - thread0) / audio;
  result.processCpu = (process1 - process0) / audio;
  result.ok = true;
  return result;
}

double measureCreate(const Subject& subject, std::string& error) {
  render::PluginSession session;
  const auto start = Clock::now();
  if (!render::openPlugin(subject.options, true, session, error)) return -1.0;
  session.plugin->resume();
  const auto end = Clock::now();
  return std::chrono::duration<double, std::milli>(end - start).count();
}

}  // namespace sablevox::bench
