// Finding, loading and setting up the plug-in for one run: the temporary
// settings folder, the load itself, sample rate, block size, program and the
// --set parameters, in the order a host would apply them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "hostlib/plugin.h"
#include "render/options.h"
#include "render/settings_folder.h"

namespace sablevox::render {

// Exit statuses of the program.
constexpr int kExitUsage = 1;   // bad option or value
constexpr int kExitInput = 2;   // unreadable MIDI file
constexpr int kExitPlugin = 3;  // plug-in missing, not loadable, unknown parameter or value
constexpr int kExitOutput = 4;  // rendering or writing failed

struct PluginSession {
  std::unique_ptr<SettingsFolder> settings;  // outlives the plug-in
  std::unique_ptr<host::Plugin> plugin;
  bool sablevox = false;  // the loaded plug-in is Sablevox

  ~PluginSession() { plugin.reset(); }
};

// The files tried when no --plugin is given, in order: beside this program
// (a build tree or an installation), then ~/.vst/Sablevox.so.
std::vector<std::string> defaultPluginCandidates();

// Loads and opens the plug-in; with `configure` also sets the program and
// the --set parameters. False with a message on any failure.
bool openPlugin(const Options& options, bool configure, PluginSession& session, std::string& error);

}  // namespace sablevox::render
