// Parsing the bank source files: lines, blocks, names and values.
#include "bank_source.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <map>
#include <set>

#include "data/wave_descriptors.h"
#include "filter/filter_types.h"
#include "host/program_record.h"

namespace sablevox::bankgen {
namespace {

constexpr int kTuneSteps = 10;
constexpr const char* kTuneNames[kTuneSteps] = {"-2",   "-1", "0",    "+0.5", "+1",
                                                "+1.5", "+2", "+2.3", "+2.5", "+3"};

// The menus keep a doubled percent sign ("WV Pulse 25%%"); sources write one.
std::string singlePercent(const char* name) {
  std::string out;
  for (const char* c = name; *c != '\0'; ++c) {
    if (!(c[0] == '%' && c[1] == '%')) out += *c;
  }
  return out;
}

std::string_view trim(std::string_view s) {
  while (!s.empty() && std::isspace(static_cast<unsigned char>(s.front()))) s.remove_prefix(1);
  while (!s.empty() && std::isspace(static_cast<unsigned char>(s.back()))) s.remove_suffix(1);
  return s;
}

// The line without a comment: `#` outside quotes starts one.
std::string_view stripComment(std::string_view line) {
  bool quoted = false;
  for (size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"') quoted = !quoted;
    if (line[i] == '#' && !quoted) return line.substr(0, i);
  }
  return line;
}

// Reads a leading word (letters, digits, '-', '_') or a quoted text off `s`.
bool takeWord(std::string_view& s, std::string& word) {
  s = trim(s);
  size_t n = 0;
  while (n < s.size() && (std::isalnum(static_cast<unsigned char>(s[n])) || s[n] == '-' ||
                          s[n] == '_' || s[n] == '.')) {
    ++n;
  }
  if (n == 0) return false;
  word = std::string(s.substr(0, n));
  s.remove_prefix(n);
  return true;
}

bool takeQuoted(std::string_view& s, std::string& text) {
  s = trim(s);
  if (s.empty() || s.front() != '"') return false;
  const size_t end = s.find('"', 1);
  if (end == std::string_view::npos) return false;
  text = std::string(s.substr(1, end - 1));
  s.remove_prefix(end + 1);
  return true;
}

// 'text' in quotes, for messages.
std::string quote(std::string_view text) {
  std::string out = "'";
  out.append(text);
  out += '\'';
  return out;
}

std::array<float, kNumParams> defaultValues() {
  std::array<float, kNumParams> values{};
  for (int p = 0; p < kNumParams; ++p) values[p] = parameterInfo(p).defaultValue;
  return values;
}

// A parameter name that differs only in case, to suggest.
std::string nearName(std::string_view name) {
  for (int p = 0; p < kNumParams; ++p) {
    const std::string_view candidate = parameterInfo(p).name;
    if (candidate.size() == name.size() &&
        std::equal(name.begin(), name.end(), candidate.begin(), [](char a, char b) {
          return std::tolower(static_cast<unsigned char>(a)) ==
                 std::tolower(static_cast<unsigned char>(b));
        })) {
      return std::string(candidate);
    }
  }
  return {};
}

class Parser {
 public:
  Parser(const std::string& fileName, std::vector<std::string>& errors)
      : fileName_(fileName), errors_(errors) {}

  // A line holds a keyword line or one or more settings, split by ';'.
  void line(int number, std::string_view raw) {
    line_ = number;
    std::string_view s = stripComment(raw);
    bool quoted = false;
    size_t start = 0;
    for (size_t i = 0; i <= s.size(); ++i) {
      if (i < s.size() && s[i] == '"') quoted = !quoted;
      if (i == s.size() || (s[i] == ';' && !quoted)) {
        statement(trim(s.substr(start, i - start)));
        start = i + 1;
      }
    }
  }

  void statement(std::string_view s) {
    if (s.empty()) return;
    std::string word;
    std::string_view rest = s;
    if (!takeWord(rest, word)) return fail("expected a keyword or 'Name = value', got " + quote(s));
    if (rest.find('=') != std::string_view::npos && trim(rest).starts_with("=")) {
      return setting(word, trim(rest).substr(1));
    }
    if (word == "bank") return header(rest);
    if (!sawHeader_) return fail("the file must begin with: bank \"<bank name>\"");
    if (word == "template") return beginTemplate(rest);
    if (word == "program") return beginProgram(rest);
    fail("unknown keyword '" + word + "' (expected bank, template, program or 'Name = value')");
  }

  BankSource finish() {
    closeBlock();
    return std::move(bank_);
  }

 private:
  struct Block {
    bool open = false;
    bool isTemplate = false;
    std::string name;
    std::array<float, kNumParams> values{};
    std::set<int> keys;
    int line = 0;
  };

  void fail(const std::string& message) {
    errors_.push_back(fileName_ + ":" + std::to_string(line_) + ": " + message);
  }

  void header(std::string_view rest) {
    if (sawHeader_) return fail("a second bank line");
    sawHeader_ = true;
    if (!takeQuoted(rest, bank_.bankName) || !trim(rest).empty()) {
      fail("expected: bank \"<bank name>\"");
    }
  }

  // `like <template>` or `like "<program>"`, or nothing.
  bool startValues(std::string_view rest, std::array<float, kNumParams>& values) {
    values = defaultValues();
    std::string word;
    rest = trim(rest);
    if (rest.empty()) return true;
    if (!takeWord(rest, word) || word != "like") {
      fail("expected 'like <template>' or 'like \"<program>\"' after the name");
      return false;
    }
    std::string ref;
    if (takeQuoted(rest, ref)) {
      const auto found = programs_.find(ref);
      if (found == programs_.end()) {
        fail("no earlier program \"" + ref + "\" in this file");
        return false;
      }
      values = found->second;
    } else if (takeWord(rest, ref)) {
      const auto found = templates_.find(ref);
      if (found == templates_.end()) {
        fail("no template '" + ref + "' defined above");
        return false;
      }
      values = found->second;
    } else {
      fail("expected a template or a quoted program name after 'like'");
      return false;
    }
    if (!trim(rest).empty()) fail("unexpected text " + quote(trim(rest)));
    return true;
  }

  void beginTemplate(std::string_view rest) {
    closeBlock();
    std::string name;
    if (!takeWord(rest, name)) return fail("expected a template name");
    if (templates_.count(name) != 0) fail("template '" + name + "' is defined twice");
    block_ = Block{true, true, name, {}, {}, line_};
    startValues(rest, block_.values);
  }

  void beginProgram(std::string_view rest) {
    closeBlock();
    std::string name;
    if (!takeQuoted(rest, name)) return fail("expected a quoted program name");
    if (name.empty()) fail("a program needs a name");
    if (name.size() > kProgramNameSize - 1) {
      fail("program name \"" + name + "\" is " + std::to_string(name.size()) +
           " characters long; at most " + std::to_string(kProgramNameSize - 1) + " fit");
    }
    if (programs_.count(name) != 0) fail("program \"" + name + "\" appears twice in this bank");
    block_ = Block{true, false, name, {}, {}, line_};
    startValues(rest, block_.values);
  }

  void closeBlock() {
    if (!block_.open) return;
    if (block_.isTemplate) {
      templates_[block_.name] = block_.values;
    } else {
      programs_[block_.name] = block_.values;
      bank_.programs.push_back({block_.name, block_.values, block_.line});
    }
    block_.open = false;
  }

  void setting(const std::string& key, std::string_view valueText) {
    if (!block_.open) return fail("'" + key + "' stands outside a program or template");
    const int index = findParameter(key);
    if (index < 0) {
      const std::string near = nearName(key);
      return fail("unknown parameter '" + key + "'" +
                  (near.empty() ? std::string() : " (did you mean '" + near + "'?)"));
    }
    if (!block_.keys.insert(index).second) return fail("'" + key + "' is set twice");
    float value = 0.0f;
    if (valueOf(index, key, trim(valueText), value)) block_.values[index] = value;
  }

  bool valueOf(int index, const std::string& key, std::string_view text, float& value) {
    const ParameterInfo& info = parameterInfo(index);
    std::string choice;
    std::string_view rest = text;
    if (takeQuoted(rest, choice)) {
      if (!trim(rest).empty()) {
        fail("unexpected text after the value of '" + key + "'");
        return false;
      }
      if (info.kind == ParamKind::continuous) {
        fail("'" + key + "' takes a number from 0 to 1, not a choice name");
        return false;
      }
      value = choiceByName(index, choice);
      if (value < 0.0f) {
        fail("'" + choice + "' is not a choice of " + key);
        return false;
      }
      return true;
    }
    if (info.kind != ParamKind::continuous) {
      fail("'" + key + "' takes the quoted name of a choice, e.g. " + key + " = \"" +
           choiceName(index, 0) + "\"");
      return false;
    }
    const char* first = text.data();
    const char* last = text.data() + text.size();
    const auto [end, status] = std::from_chars(first, last, value);
    if (status != std::errc() || end != last) {
      fail(quote(text) + " is not a number (" + key + ")");
      return false;
    }
    if (!(value >= 0.0f && value <= 1.0f)) {
      fail(key + " = " + quote(text) + " lies outside 0..1");
      return false;
    }
    return true;
  }

  const std::string& fileName_;
  std::vector<std::string>& errors_;
  int line_ = 0;
  bool sawHeader_ = false;
  Block block_;
  std::map<std::string, std::array<float, kNumParams>> templates_;
  std::map<std::string, std::array<float, kNumParams>> programs_;
  BankSource bank_;
};

}  // namespace

float choiceByName(int index, std::string_view name) {
  if (index == kOsc1Tune || index == kOsc2Tune) {
    for (int k = 0; k < kTuneSteps; ++k) {
      // The middle of the step: truncation of value * 9.99 gives k.
      if (name == kTuneNames[k]) return (static_cast<float>(k) + 0.5f) / 9.99f;
    }
    return -1.0f;
  }
  if (index == kOsc1Wave || index == kOsc2Wave) {
    for (int i = 0; i < kWaveCount; ++i) {
      if (name == singlePercent(kWaveDescriptors[i].displayName)) return choiceValue(i);
    }
    return -1.0f;
  }
  if (index == kFiltType) {
    for (int i = 0; i < kFilterTypeCount; ++i) {
      if (name == kFilterTypes[i].name) return choiceValue(i);
    }
    return -1.0f;
  }
  const int choice = findChoice(index, name);
  return choice < 0 ? -1.0f : choiceValue(choice);
}

std::string choiceName(int index, int choice) {
  if (index == kOsc1Tune || index == kOsc2Tune) {
    return choice >= 0 && choice < kTuneSteps ? kTuneNames[choice] : "?";
  }
  if (index == kOsc1Wave || index == kOsc2Wave) {
    return choice >= 0 && choice < kWaveCount ? singlePercent(kWaveDescriptors[choice].displayName)
                                              : "?";
  }
  if (index == kFiltType) {
    return choice >= 0 && choice < kFilterTypeCount ? kFilterTypes[choice].name : "?";
  }
  const ParameterInfo& info = parameterInfo(index);
  return choice >= 0 && choice < info.choiceCount ? info.choices[choice] : "?";
}

std::string categoryOf(std::string_view name) {
  size_t n = 0;
  while (n < name.size() && std::isupper(static_cast<unsigned char>(name[n]))) ++n;
  if (n >= 2 && n <= 4 && n < name.size() && name[n] == ' ') return std::string(name.substr(0, n));
  return {};
}

BankSource parseBank(std::string_view text, const std::string& fileName,
                     std::vector<std::string>& errors) {
  Parser parser(fileName, errors);
  int number = 0;
  while (!text.empty()) {
    const size_t end = text.find('\n');
    parser.line(++number, text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return parser.finish();
}

}  // namespace sablevox::bankgen
