// --set NAME=VALUE: finds the parameter by the name the plug-in reports and
// turns the value into the normalised float the plug-in takes. For Sablevox
// a choice parameter also takes the name of its choice.
#pragma once

#include <string>
#include <vector>

namespace sablevox::render {

struct ParameterSetting {
  int index;
  float value;
};

// names: the plug-in's parameter names by index. sablevox: the plug-in is
// Sablevox, whose choice names this program knows. A choice name wins over a
// number ("Voices=8" is the choice "8"). False with a message for an unknown
// name, a value that is neither a number nor a choice, or a malformed text.
bool resolveSetting(const std::string& text, const std::vector<std::string>& names, bool sablevox,
                    ParameterSetting& setting, std::string& error);

// Index of the choice named `choice` of Sablevox parameter `index`: the value
// lists of the parameter table, the wave names and the filter type names;
// -1 if none matches.
int sablevoxChoice(int index, const std::string& choice);
// All choice names of Sablevox parameter `index`, empty if it has none.
std::vector<std::string> sablevoxChoiceNames(int index);

}  // namespace sablevox::render
