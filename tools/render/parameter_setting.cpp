// Resolving --set arguments against the plug-in's parameter names.
#include "render/parameter_setting.h"

#include <charconv>
#include <cmath>

#include "data/wave_descriptors.h"
#include "filter/filter_types.h"
#include "host/parameters.h"

namespace sablevox::render {
namespace {

// The menus keep a doubled percent sign ("WV Pulse 25%%"); a user sees and
// types one, and may type either form.
std::string singlePercent(const char* name) {
  std::string out;
  for (const char* c = name; *c != '\0'; ++c) {
    if (!(c[0] == '%' && c[1] == '%')) out += *c;
  }
  return out;
}

}  // namespace

int sablevoxChoice(int index, const std::string& choice) {
  if (index == kOsc1Wave || index == kOsc2Wave) {
    for (int i = 0; i < kWaveCount; ++i) {
      const char* name = kWaveDescriptors[i].displayName;
      if (choice == name || choice == singlePercent(name)) return i;
    }
    return -1;
  }
  if (index == kFiltType) {
    for (int i = 0; i < kFilterTypeCount; ++i) {
      if (choice == kFilterTypes[i].name) return i;
    }
    return -1;
  }
  return findChoice(index, choice);
}

std::vector<std::string> sablevoxChoiceNames(int index) {
  std::vector<std::string> names;
  if (index == kOsc1Wave || index == kOsc2Wave) {
    for (const WaveDescriptor& wave : kWaveDescriptors) {
      names.push_back(singlePercent(wave.displayName));
    }
  } else if (index == kFiltType) {
    for (const FilterType& type : kFilterTypes) names.push_back(type.name);
  } else {
    const ParameterInfo& info = parameterInfo(index);
    for (int i = 0; i < info.choiceCount; ++i) names.push_back(info.choices[i]);
  }
  return names;
}

bool resolveSetting(const std::string& text, const std::vector<std::string>& names, bool sablevox,
                    ParameterSetting& setting, std::string& error) {
  const size_t equals = text.find('=');
  if (equals == std::string::npos || equals == 0) {
    error = "--set needs NAME=VALUE, got '" + text + "'";
    return false;
  }
  const std::string name = text.substr(0, equals);
  const std::string value = text.substr(equals + 1);
  setting.index = -1;
  for (size_t i = 0; i < names.size(); ++i) {
    if (names[i] == name) {
      setting.index = static_cast<int>(i);
      break;
    }
  }
  if (setting.index < 0) {
    error = "unknown parameter '" + name + "' (see --list-params)";
    return false;
  }
  if (sablevox) {
    const int choice = sablevoxChoice(setting.index, value);
    if (choice >= 0) {
      setting.value = choiceValue(choice);
      return true;
    }
  }
  float number = 0.0f;
  const char* end = value.data() + value.size();
  const auto [at, failure] = std::from_chars(value.data(), end, number);
  const bool isNumber = failure == std::errc() && at == end && !value.empty();
  if (isNumber && number >= 0.0f && number <= 1.0f) {
    setting.value = number;
    return true;
  }
  const bool hasChoices = sablevox && parameterInfo(setting.index).kind == ParamKind::stepped;
  error = "bad value '" + value + "' for " + name +
          (hasChoices && !isNumber ? ": neither a number nor one of its choices (see --list-params)"
                                   : ": expected a number from 0 to 1");
  return false;
}

}  // namespace sablevox::render
