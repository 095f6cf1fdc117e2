// The string questions of a host, each with a buffer of the size the interface
// promises (limit N characters plus the zero) or, leniently, a roomy one.
#include <cstring>
#include <memory>

#include "hostlib/plugin.h"

namespace sablevox::host {
namespace {

constexpr size_t kLenientBytes = 256;

}  // namespace

std::string Plugin::askString(VstInt32 opcode, VstInt32 index, size_t limit, VstIntPtr value,
                              VstIntPtr* answer) {
  const size_t bytes = strictStrings_ ? limit + 1 : kLenientBytes;
  auto buffer = std::make_unique<char[]>(bytes);  // zero-filled
  const VstIntPtr result = dispatch(opcode, index, value, buffer.get());
  if (answer != nullptr) *answer = result;
  return std::string(buffer.get(), strnlen(buffer.get(), bytes));
}

std::string Plugin::effectName() {
  return askString(effGetEffectName, 0, kVstMaxEffectNameLen);
}

std::string Plugin::vendorString() {
  return askString(effGetVendorString, 0, kVstMaxVendorStrLen);
}

std::string Plugin::productString() {
  return askString(effGetProductString, 0, kVstMaxProductStrLen);
}

std::string Plugin::programName() {
  return askString(effGetProgramName, 0, kVstMaxProgNameLen);
}

// Category -1: any. A plug-in that does not fill the name answers 0.
std::string Plugin::programNameIndexed(int index, bool* filled) {
  VstIntPtr answer = 0;
  std::string name = askString(effGetProgramNameIndexed, index, kVstMaxProgNameLen, -1, &answer);
  if (filled != nullptr) *filled = answer != 0;
  return name;
}

std::string Plugin::paramName(int index) {
  return askString(effGetParamName, index, kVstMaxParamStrLen);
}

std::string Plugin::paramLabel(int index) {
  return askString(effGetParamLabel, index, kVstMaxParamStrLen);
}

std::string Plugin::paramDisplay(int index) {
  return askString(effGetParamDisplay, index, kVstMaxParamStrLen);
}

VstIntPtr Plugin::canDo(const std::string& text) {
  return dispatch(effCanDo, 0, 0, const_cast<char*>(text.c_str()));
}

}  // namespace sablevox::host
