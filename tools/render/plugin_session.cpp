// Loading and configuring the plug-in of a run.
#include "render/plugin_session.h"

#include <cstdlib>
#include <filesystem>

#include "host/parameters.h"
#include "render/parameter_setting.h"

namespace sablevox::render {
namespace {

constexpr VstInt32 kSablevoxId = vstFourCharacters('Q', 'S', 'B', 'V');

std::string locatePlugin(std::string& error) {
  const std::vector<std::string> candidates = defaultPluginCandidates();
  for (const std::string& candidate : candidates) {
    std::error_code ignored;
    if (std::filesystem::is_regular_file(candidate, ignored)) return candidate;
  }
  error = "no plug-in found; tried:";
  for (const std::string& candidate : candidates) error += "\n  " + candidate;
  error += "\ngive one with --plugin FILE";
  return {};
}

// Sablevox's arpeggiator takes a new mode at the first tick after a reset and
// forgets the keys that came in that tick, as a fresh instance's first tick
// does when the program arpeggiates: a render then starts with one dropped
// tick, so that notes at frame 0 play in the program's mode.
bool arpeggiatorOn(host::Plugin& plugin) {
  return steppedIndex(plugin.getParameter(kArpType), parameterInfo(kArpType).steps) > 0;
}

}  // namespace

std::vector<std::string> defaultPluginCandidates() {
  std::vector<std::string> candidates;
  std::error_code failure;
  const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", failure);
  if (!failure) {
    const std::filesystem::path here = self.parent_path();
    for (const char* relative :
         {"libsablevox.so", "Sablevox.so", "../../src/libsablevox.so", "../lib/vst/Sablevox.so"}) {
      candidates.push_back((here / relative).lexically_normal().string());
    }
  }
  if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') {
    candidates.push_back(std::string(home) + "/.vst/Sablevox.so");
  }
  return candidates;
}

bool openPlugin(const Options& options, bool configure, PluginSession& session,
                std::string& error) {
  const std::string path = options.plugin.empty() ? locatePlugin(error) : options.plugin;
  if (path.empty()) return false;
  session.settings = std::make_unique<SettingsFolder>(options.bank, options.quality, options.iqm);
  if (!session.settings->ok()) {
    error = session.settings->error();
    return false;
  }
  session.plugin = host::Plugin::load(path, &error);
  if (session.plugin == nullptr) return false;
  host::Plugin& plugin = *session.plugin;
  plugin.host().keepCallLog(false);  // it would grow with the length of the render
  plugin.setStrictStrings(false);    // foreign plug-ins may write beyond the limits
  session.sablevox = plugin.uniqueId() == kSablevoxId;
  if (!session.sablevox) plugin.keepLoaded();  // unloading is where foreign plug-ins misbehave
  plugin.open();
  plugin.setSampleRate(options.sampleRate);
  plugin.setBlockSize(options.blockSize);
  if (!configure) return true;

  if (options.program >= 0) {
    if (options.program >= plugin.numPrograms()) {
      error = "program " + std::to_string(options.program) + " does not exist: the plug-in has " +
              std::to_string(plugin.numPrograms()) + " (0 to " +
              std::to_string(plugin.numPrograms() - 1) + ")";
      return false;
    }
    plugin.setProgram(options.program);
  }
  if (!options.sets.empty()) {
    std::vector<std::string> names;
    for (int i = 0; i < plugin.numParams(); ++i) names.push_back(plugin.paramName(i));
    for (const std::string& text : options.sets) {
      ParameterSetting setting{};
      if (!resolveSetting(text, names, session.sablevox, setting, error)) return false;
      plugin.setParameter(setting.index, setting.value);
    }
  }
  if (session.sablevox) plugin.settleBeforeStart(arpeggiatorOn(plugin));
  return true;
}

}  // namespace sablevox::render
