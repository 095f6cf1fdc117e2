// Bit-exact regression renders: each case plays the demo phrase through the
// built plug-in and compares the checksum of every output sample with the one
// recorded when the case was made. A speed change must leave all of them as
// they are. Only fixed waves (the STA group) and explicit settings are used,
// so that new wave content and factory banks do not move the sums; no noise
// source or random LFO either, whose generator state is shared by the process.
//
// After an intended change of the sound, run with SABLEVOX_PRINT_SUMS=1 and
// copy the printed sums here.
#include <gtest/gtest.h>

#include <cinttypes>
#include <cstdio>
#include <cstdlib>

#include "regression/regression_render.h"

namespace sablevox::testing {
namespace {

using Sets = std::vector<std::string>;

// Two fixed waves, no modifier: the shared start of every case.
Sets base(Sets more = {}) {
  Sets sets = {"Osc1Wave=STA Saw", "Osc2Wave=STA Pulse", "Osc1Mod=off", "Osc2Mod=off"};
  sets.insert(sets.end(), more.begin(), more.end());
  return sets;
}

// Every choice of a parameter as consecutive segments.
std::vector<Sets> cycle(const std::string& name, std::initializer_list<const char*> choices) {
  std::vector<Sets> groups;
  for (const char* choice : choices) groups.push_back({name + "=" + choice});
  return groups;
}

struct Expected {
  RegressionCase c;
  uint64_t checksum;
};

const std::vector<Expected>& cases() {
  static const std::vector<Expected> all = {
      {{"ultra", 0, base()}, 0x0E9D78240BCC2FE5ull},
      {{"high", 1, base()}, 0x8E4BD49901791A85ull},
      {{"medium", 2, base()}, 0x7EF975DC4352B185ull},
      {{"low", 3, base()}, 0x39954FBD02E9F0F5ull},
      {{"sine_blocks_37", 2, base({"Osc1Wave=STA Sine", "Osc1Mod=Mod: spread"}), {}, 0.5, 37},
       0xA290A65217207B75ull},
      {{"unison_ultra", 0, base({"Fat=0.8", "Analog=0.3"})}, 0xE93B07A5A9F4185Eull},
      {{"unison_high", 1, base({"Fat=0.35"})}, 0xEB9E0B0B53CB8A05ull},
      {{"unison_medium", 2, base({"Fat=1"})}, 0x2D17AA4AB7F9A97Bull},
      {{"unison_low", 3, base({"Fat=0.6", "FiltType=LP Moog", "Reso=0.6"})}, 0x06433DA96B67ACB0ull},
      {{"drive_ultra", 0, base({"Drive=0.7"})}, 0x7C9953A82A805659ull},
      {{"drive_high", 1, base({"Drive=0.4", "Fat=0.5"})}, 0x3B9660E9A6310100ull},
      {{"drive_medium", 2, base({"Drive=1"})}, 0x911AFC7448889B7Dull},
      {{"drive_low", 3, base({"Drive=0.2"})}, 0x8E585B11822E0135ull},
      // All 38 filter types, a quarter second each, resonant, with the
      // envelope and the LFO moving the cutoff.
      {{"filters_a", 2,
        base({"Reso=0.7", "EnvFilVe=0.9", "LFODest=Cutoff", "LFOSend=0.8", "LFOType=Sin"}),
        cycle("FiltType", {"LP 30dB", "LP 12dB", "LP oct", "LP Moog Noisy", "HP 24dB", "HP 12dB",
                           "BP 18dB", "BP 9dB", "BP Para", "Notch", "Lo shelf", "Hi shelf",
                           "Phaser", "Vocals", "M-Shape", "Resample", "AM", "FM Sine", "FM Tri"}),
        0.22},
       0xF756317492F5CBE1ull},
      {{"filters_b", 1, base({"Reso=0.5", "Cutoff=0.6", "LFODest=Reso", "LFOSend=0.7", "Fat=0.4"}),
        cycle("FiltType",
              {"FM Saw", "FM Square", "LP Analog", "LP Moog", "LP Elliptic", "HP Elliptic",
               "HP Analog", "BP Analog", "BR Analog", "EQ Peak 1", "EQ Peak 2", "EQ Block",
               "Vocals2", "VOC A", "VOC U", "VOC E", "VOC I", "VOC O", "LP Syncie"}),
        0.22},
       0xB2308B8FEC6D76F0ull},
      // Every type again on a stereo voice (Fat), whose two channels some
      // routines run in one loop.
      {{"filters_stereo", 3, base({"Fat=0.3", "Reso=0.6", "EnvFilVe=0.8"}),
        cycle("FiltType",
              {"LP 30dB",     "LP 12dB",   "LP oct",    "LP Moog Noisy", "HP 24dB",   "HP 12dB",
               "BP 18dB",     "BP 9dB",    "BP Para",   "Notch",         "Lo shelf",  "Hi shelf",
               "Phaser",      "Vocals",    "M-Shape",   "Resample",      "AM",        "FM Sine",
               "FM Tri",      "FM Saw",    "FM Square", "LP Analog",     "LP Moog",   "LP Elliptic",
               "HP Elliptic", "HP Analog", "BP Analog", "BR Analog",     "EQ Peak 1", "EQ Peak 2",
               "EQ Block",    "Vocals2",   "VOC A",     "VOC U",         "VOC E",     "VOC I",
               "VOC O",       "LP Syncie"}),
        0.11},
       0xAA5F00FF457E391Full},
      // Type changes under 32 held and releasing voices, into and out of the
      // FM types, whose delay lines a change or a note start must clear.
      {{"filter_switch", 2, base({"Voices=32", "EnvVolR=0.8", "Reso=0.6", "EnvFilVe=0.8"}),
        cycle("FiltType",
              {"FM Sine", "LP Moog", "FM Saw", "FM Tri", "LP Moog Noisy", "FM Square", "BP Para",
               "FM Sine", "Resample", "AM", "FM Saw", "LP 12dB", "FM Tri", "Phaser"}),
        0.3},
       0x9E90BC9FDBBDF101ull},
      // The same on stereo voices in blocks that split ticks, with the voice
      // count falling and rising, so that voices come back to a new type.
      {{"filter_switch_stereo",
        1,
        base({"Voices=32", "EnvVolR=0.8", "Fat=0.4", "Reso=0.3"}),
        {{"FiltType=FM Square"},
         {"FiltType=LP Moog", "Voices=4"},
         {"FiltType=FM Sine"},
         {"Voices=32"},
         {"FiltType=HP 24dB"},
         {"FiltType=FM Saw", "Voices=8"},
         {"FiltType=LP Analog", "Voices=32"},
         {"FiltType=FM Tri"},
         {"FiltType=LP 30dB"},
         {"FiltType=FM Sine"}},
        0.37,
        100},
       0x5EDCB055255A6A47ull},
      {{"effects_a", 2, base(),
        cycle("EffType", {"Reverb A", "Reverb B", "Delay A", "Delay B", "Delay C", "Delay D",
                          "Chorus", "Ensemble", "Flanger"}),
        0.45},
       0x80B35F26C7C6905Bull},
      {{"effects_b", 2, base({"EffPar1=0.8", "EffPar2=0.2"}),
        cycle("EffType", {"Rotary", "Del+Rev A", "Del+Rev B", "Ens+Rev", "Surround",
                          "Stereo enhance", "RevHiEndA", "RevHiEndB", "RevHiEndC"}),
        0.45},
       0x65122A5C99266591ull},
      {{"arpeggiator", 1, base({"ArpType=Up oct", "ArpRhyt=|.|.|.|.|.|.|.|."})},
       0xDFE53B6CA78FB7BDull},
      {{"arp_down_gate", 2, base({"ArpType=Down 2oct", "ArpRhyt=|...|.|.|...|.|.", "Voices=4"})},
       0xB5689F6807954465ull},
      {{"glide_mono", 0, base({"GlMode=1 key", "GlTime=BPM", "Voices=1", "Drive=0.3"})},
       0x20B2535C52802BE5ull},
      {{"glide_poly", 2, base({"GlMode=2 keys", "GlTime=BPM * 4"})}, 0x99236179DC7BF925ull},
      {{"lfo_pitch_pan", 3,
        base({"LFOType=Tri 90°", "LFODest=Osc pitch", "LFOSend=0.9", "LFOSpeed=BPM"})},
       0x43FD68DE61692EF5ull},
      {{"heaviest", 0,
        base({"Fat=1", "Drive=0.8", "FiltType=LP Moog", "Reso=0.8", "EffType=Reverb A",
              "Voices=32"})},
       0xE570027C447184EBull},
      // The envelopes' edges, a few settings a segment: zero attack, decay and
      // release, full sustain, the shortest filter attack, keys let go in a
      // slow filter decay beside a faster, slower or equal release, and the
      // release pop.
      {{"envelope_edges",
        2,
        base({"FiltType=LP 12dB", "Cutoff=0.3", "EnvFilVe=1", "EnvFilSe=1", "EnvVolA=0",
              "EnvVolR=0", "EnvFiltA=0", "EnvFiltD=0", "EnvFiltR=0.01"}),
        {{"EnvVolA=0.3", "EnvVolS=1", "EnvVolR=0.5", "EnvFiltA=0.01", "EnvFiltD=0.9",
          "EnvFiltR=0.3"},
         {"EnvVolPo=1", "EnvVolR=0.4", "EnvFiltD=0.7", "EnvFiltR=0.9"},
         {"EnvVolPo=0", "EnvVolS=0.5", "EnvVolD=0.2", "EnvFiltA=0.02", "EnvFiltD=0.01"},
         {"EnvVolA=0", "EnvVolR=0", "EnvFiltS=0", "EnvFiltD=0.6", "EnvFiltR=0.6"}},
        0.8},
       0xAED3E90B27EA2AC1ull},
      // Every wave modifier, two a segment (one an oscillator), on waves
      // scanned through all their frames, so that the modifiers that vary
      // along the frames are heard.
      {{"modifiers",
        2,
        base({"Osc1Loop=+-+-+-", "Osc1LSp=8 Hz", "Osc2Loop=++++", "Osc2LSp=6 Hz"}),
        {{"Osc1Mod=Mix: X2", "Osc2Mod=Multi: Flange1"},
         {"Osc1Mod=Mix: X4", "Osc2Mod=Multi: Flange2"},
         {"Osc1Mod=Mix: Layer", "Osc2Mod=Multi: Hyper1"},
         {"Osc1Mod=Thin: Square", "Osc2Mod=Multi: Hyper2"},
         {"Osc1Mod=Thin: Bell", "Osc2Mod=Filt: LP down"},
         {"Osc1Mod=Thin: Warm", "Osc2Mod=Filt:LP up"},
         {"Osc1Mod=Mod: shrink", "Osc2Mod=Time: +16"},
         {"Osc1Mod=Mod: spread", "Osc2Mod=Time: +32"},
         {"Osc1Mod=Mod: up", "Osc2Mod=Time: +37"},
         {"Osc1Mod=Mod: down", "Osc2Mod=Time: +64"},
         {"Osc1Mod=Multi: 1", "Osc2Mod=Time: +107"},
         {"Osc1Mod=Multi: 2", "Osc2Mod=Sync"}},
        0.34},
       0xF16D44B3DDA73661ull},
      // Every LFO shape that draws no random values, one a segment, on the cutoff.
      {{"lfo_shapes", 3,
        base({"FiltType=LP 12dB", "Reso=0.5", "LFODest=Cutoff", "LFOSend=0.8", "LFOSpeed=BPM * 2"}),
        cycle("LFOType", {"static", "Tri", "Tri 90°", "Saw Up", "Saw Down", "Sin", "Cos", "Square",
                          "Impulse", "-_-_-___", "-_-_---_", "-___-_-_", "-__-__-_", "--_--_-_",
                          "\\___stop", "/\\___stop", "Tri free"}),
        0.25},
       0x1A90D2BB2BB6F711ull},
      // Every scan mode that draws no random values, one a segment, on a wave
      // whose frames close like a filter.
      {{"scan_modes", 1, base({"Osc1Mod=Filt: LP down", "Osc1LSp=BPM", "Osc2Wave=off"}),
        cycle("Osc1Loop", {"+-+-+-", "-+-+-+", "+ stop", "- stop", "+- stop", "-+ stop", "+50%-+-+",
                           "+25%-+-+", "+75%-+-+", "++++", "----", "static"}),
        0.35},
       0xA87FBA7B885DAF71ull},
  };
  return all;
}

class RegressionRender : public ::testing::TestWithParam<size_t> {};

TEST_P(RegressionRender, MatchesRecordedChecksum) {
  const Expected& e = cases()[GetParam()];
  const RegressionResult r = renderRegression(e.c);
  ASSERT_TRUE(r.error.empty()) << r.error;
  EXPECT_TRUE(r.finite);
  EXPECT_GT(r.peak, 0.01f) << "the render is silent";
  if (std::getenv("SABLEVOX_PRINT_SUMS") != nullptr) {
    std::printf("SUM %s 0x%016" PRIX64 "\n", e.c.name, r.checksum);
  }
  EXPECT_EQ(r.checksum, e.checksum) << e.c.name << ": 0x" << std::hex << r.checksum;
}

INSTANTIATE_TEST_SUITE_P(Cases, RegressionRender, ::testing::Range<size_t>(0, cases().size()),
                         [](const auto& info) { return std::string(cases()[info.param].c.name); });

}  // namespace
}  // namespace sablevox::testing
