// Writing the program listing from the parsed bank sources.
#include "bank_listing.h"

#include <map>
#include <sstream>

#include "bank_set.h"

namespace sablevox::bankgen {
namespace {

std::string choiceOf(const SourceProgram& program, int index) {
  const ParameterInfo& info = parameterInfo(index);
  return choiceName(index, steppedIndex(program.values[index], info.steps));
}

// Table cells may not hold a bar; the rhythm names are made of them.
std::string cell(std::string text) {
  std::string out;
  for (char c : text) out += c == '|' ? std::string("\\|") : std::string(1, c);
  return out;
}

std::string oscillator(const SourceProgram& program, int wave, int mod) {
  if (steppedIndex(program.values[wave], 85) == 0) return "-";
  std::string text = choiceOf(program, wave);
  if (steppedIndex(program.values[mod], 25) != 0) text += " / " + choiceOf(program, mod);
  return text;
}

std::string arpeggio(const SourceProgram& program) {
  if (steppedIndex(program.values[kArpType], 23) == 0) return "-";
  return choiceOf(program, kArpType) + " `" + choiceOf(program, kArpRhyt) + "`";
}

std::string lfo(const SourceProgram& program) {
  if (steppedIndex(program.values[kLFODest], 9) == 0) return "-";
  return choiceOf(program, kLFOType) + " > " + choiceOf(program, kLFODest);
}

}  // namespace

std::string programListing(const std::vector<BankSource>& banks) {
  std::ostringstream out;
  out << "# Factory programs\n\n"
      << "Generated from the bank sources in `data/banks/` by `sablevox_bankgen`; do not edit.\n"
      << "To regenerate after changing a bank file:\n\n"
      << "    ninja -C build sablevox_bankgen\n"
      << "    build/tools/bankgen/sablevox_bankgen --listing docs/programs.md\n\n"
      << "## How the banks are made\n\n"
      << "Each bank is one text file: `factory-a.txt`, `factory-b.txt`, `factory-c.txt` (50\n"
      << "programs; its other 78 places stay empty) and `abstracts.txt`. A program is a name of\n"
      << "at most 23 characters and the parameters that differ from the default record, by\n"
      << "parameter name; stepped parameters take the name of the choice as the editor shows\n"
      << "it (`FiltType = \"LP Moog\"`), continuous ones a number from 0 to 1, the tunes their\n"
      << "octave text (`Osc1Tune = \"+1\"` is the key's own pitch). `template` blocks are\n"
      << "starting points that programs name with `like`. The build compiles the files into\n"
      << "the stored records; any misspelt name, value out of range, overlong name or\n"
      << "repeated setting stops it with file and line.\n\n"
      << "Levels: every program is levelled by its loudest case, played as a musician\n"
      << "would: major triads on C2, C3, C4 and C5 and single notes C1 to C7, at velocity\n"
      << "100 and 127, each under eight random states (oscillator phases, scan starts, LFO\n"
      << "values) with the wave tables ready. In every case its peak is at most -1 dBFS\n"
      << "(levelled to -2) and its DC below 0.5 % of full scale; its loudness (the loudest\n"
      << "400 ms, RMS) lies within 6 dB of -20 dBFS, and the programs of a category within\n"
      << "10 dB of each other. `build/tools/levels/sablevox-levels` measures all of it\n"
      << "(about 11 minutes of one core) and names the programs outside; after a change of\n"
      << "the waves or the sound, run it with `--report report.tsv` and let\n"
      << "`tools/bankgen/level_banks.py report.tsv` move the Volume of the programs that\n"
      << "drifted (Volume is the voice's last gain and changes nothing else). The test\n"
      << "`sablevox_bank_render_tests` plays four of these cases for each program and\n"
      << "holds the same bars.\n\n"
      << "Categories: SYN synthesizers, PAD pads, STR strings, BAS basses, LEA leads, KEY\n"
      << "keyboards, ORG organs, PLK plucked and struck, BRS brass and reeds, ARP arpeggios\n"
      << "and SEQ sequences (hold the keys), ATM atmospheres, VOC voices, FX effects, DRM\n"
      << "drums; in Abstracts also SCN wave scans, MOD wave modifiers, FMF and AM the FM\n"
      << "and AM filters, RHY rhythmic LFOs and TEX textures.\n\n"
      << "## The programs\n\n"
      << "Numbers are the program numbers a host sends (0 to 127). Osc columns show the\n"
      << "wave and, after a slash, its modifier; LFO shows shape and destination.\n\n";
  std::map<std::string, int> categories;
  for (const BankSource& bank : banks) {
    for (const SourceProgram& program : bank.programs) ++categories[categoryOf(program.name)];
  }
  out << "Categories:";
  for (const auto& [category, count] : categories) {
    out << ' ' << (category.empty() ? "(none)" : category) << ' ' << count << ';';
  }
  out << "\n";
  for (size_t b = 0; b < banks.size() && b < std::size(kBankFiles); ++b) {
    out << "\n### Bank " << b + 1 << ": " << kBankFiles[b].bankName << "\n\n"
        << "| No. | Name | Cat. | Osc 1 | Osc 2 | Filter | Effect | Arp | LFO |\n"
        << "|---|---|---|---|---|---|---|---|---|\n";
    int number = 0;
    for (const SourceProgram& p : banks[b].programs) {
      out << "| " << number++ << " | " << cell(p.name) << " | " << categoryOf(p.name) << " | "
          << cell(oscillator(p, kOsc1Wave, kOsc1Mod)) << " | "
          << cell(oscillator(p, kOsc2Wave, kOsc2Mod)) << " | " << cell(choiceOf(p, kFiltType))
          << " | " << cell(choiceOf(p, kEffType)) << " | " << cell(arpeggio(p)) << " | "
          << cell(lfo(p)) << " |\n";
    }
    if (number < kNumPrograms) {
      out << "\nPlaces " << number << " to " << kNumPrograms - 1 << " are empty.\n";
    }
  }
  return out.str();
}

}  // namespace sablevox::bankgen
