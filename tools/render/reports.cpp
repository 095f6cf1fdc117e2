// info, --list-params and --list-programs.
#include "render/reports.h"

#include <cstdio>
#include <string>

#include "render/parameter_setting.h"
#include "render/plugin_session.h"

namespace sablevox::render {
namespace {

std::string fourCharacters(VstInt32 id) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    const auto c = static_cast<char>((static_cast<uint32_t>(id) >> shift) & 0xFF);
    text += c >= 32 && c < 127 ? c : '?';
  }
  return text;
}

std::string flagNames(VstInt32 flags) {
  const std::pair<VstInt32, const char*> known[] = {
      {effFlagsHasEditor, "HasEditor"},
      {effFlagsHasClip, "HasClip"},
      {effFlagsHasVu, "HasVu"},
      {effFlagsCanMono, "CanMono"},
      {effFlagsCanReplacing, "CanReplacing"},
      {effFlagsProgramChunks, "ProgramChunks"},
      {effFlagsIsSynth, "IsSynth"},
      {effFlagsNoSoundInStop, "NoSoundInStop"},
      {effFlagsCanDoubleReplacing, "CanDoubleReplacing"}};
  std::string names;
  for (const auto& [bit, name] : known) {
    if ((flags & bit) != 0) names += std::string(names.empty() ? "" : " ") + name;
  }
  return names;
}

const char* categoryName(VstIntPtr category) {
  constexpr const char* kNames[] = {"unknown",     "effect",      "synth",   "analysis",
                                    "mastering",   "spacializer", "room fx", "surround fx",
                                    "restoration", "offline",     "shell",   "generator"};
  return category >= 0 && category < 12 ? kNames[category] : "?";
}

std::string hex(VstInt32 value) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%X", static_cast<unsigned>(value));
  return text;
}

// Items joined by ", " after `lead`, broken before `width` characters into
// lines indented as deep as the lead.
void printWrapped(std::ostream& out, const std::string& lead, const std::vector<std::string>& items,
                  size_t width = 100) {
  const std::string indent(lead.size(), ' ');
  std::string line = lead;
  bool empty = true;
  for (size_t i = 0; i < items.size(); ++i) {
    const std::string item = items[i] + (i + 1 < items.size() ? "," : "");
    if (!empty && line.size() + 1 + item.size() > width) {
      out << line << '\n';
      line = indent;
      empty = true;
    }
    line += (empty ? "" : " ") + item;
    empty = false;
  }
  out << line << '\n';
}

// Opens the plug-in or reports why not; null on failure.
host::Plugin* start(const Options& options, bool configure, PluginSession& session,
                    std::ostream& err) {
  std::string error;
  if (!openPlugin(options, configure, session, error)) {
    err << "sablevox-render: " << error << '\n';
    return nullptr;
  }
  return session.plugin.get();
}

}  // namespace

int reportInfo(const Options& options, std::ostream& out, std::ostream& err) {
  PluginSession session;
  host::Plugin* plugin = start(options, false, session, err);
  if (plugin == nullptr) return kExitPlugin;
  const VstIntPtr category = plugin->category();
  out << "Plug-in file:    " << plugin->path() << '\n'
      << "Effect name:     " << plugin->effectName() << '\n'
      << "Product:         " << plugin->productString() << '\n'
      << "Vendor:          " << plugin->vendorString() << '\n'
      << "Vendor version:  " << plugin->vendorVersion() << '\n'
      << "VST version:     " << plugin->vstVersion() << '\n'
      << "Unique id:       '" << fourCharacters(plugin->uniqueId()) << "' (" << plugin->uniqueId()
      << ", " << hex(plugin->uniqueId()) << ")\n"
      << "Plug-in version: " << plugin->version() << '\n'
      << "Category:        " << category << " (" << categoryName(category) << ")\n"
      << "Inputs, outputs: " << plugin->numInputs() << ", " << plugin->numOutputs() << '\n'
      << "Flags:           " << hex(plugin->flags()) << " (" << flagNames(plugin->flags()) << ")\n"
      << "Parameters:      " << plugin->numParams() << '\n'
      << "Programs:        " << plugin->numPrograms() << '\n'
      << "Initial delay:   " << plugin->effect()->initialDelay << '\n'
      << "Can do:         ";
  for (const char* feature : {"receiveVstEvents", "receiveVstMidiEvent", "receiveVstTimeInfo",
                              "midiProgramNames", "sendVstEvents", "offline", "bypass"}) {
    const VstIntPtr answer = plugin->canDo(feature);
    out << ' ' << feature << '=' << (answer > 0 ? "yes" : answer < 0 ? "no" : "?");
  }
  out << '\n';
  return 0;
}

int listParameters(const Options& options, std::ostream& out, std::ostream& err) {
  PluginSession session;
  host::Plugin* plugin = start(options, true, session, err);
  if (plugin == nullptr) return kExitPlugin;
  for (int i = 0; i < plugin->numParams(); ++i) {
    char value[32];
    std::snprintf(value, sizeof value, "%.6f", static_cast<double>(plugin->getParameter(i)));
    const std::string label = plugin->paramLabel(i);
    out << (i < 10 ? " " : "") << i << "  " << plugin->paramName(i) << "  " << value << "  \""
        << plugin->paramDisplay(i) << '"' << (label.empty() ? "" : " " + label) << '\n';
    if (session.sablevox) {
      const std::vector<std::string> choices = sablevoxChoiceNames(i);
      if (!choices.empty()) printWrapped(out, "      choices: ", choices);
    }
  }
  return 0;
}

int listPrograms(const Options& options, std::ostream& out, std::ostream& err) {
  PluginSession session;
  host::Plugin* plugin = start(options, true, session, err);
  if (plugin == nullptr) return kExitPlugin;
  const int current = plugin->program();
  for (int i = 0; i < plugin->numPrograms(); ++i) {
    bool filled = false;
    std::string name = plugin->programNameIndexed(i, &filled);
    if (!filled) {  // a plug-in without indexed names: ask each program in turn
      plugin->setProgram(i);
      name = plugin->programName();
    }
    out << i << "  " << name << '\n';
  }
  if (plugin->program() != current) plugin->setProgram(current);
  return 0;
}

}  // namespace sablevox::render
