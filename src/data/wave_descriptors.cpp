// The 85 rows of the wave descriptor table, in wave index order. Names stay
// exactly as the menus have always shown them, doubled percent signs included.
#include "data/wave_descriptors.h"

namespace sablevox {

// clang-format off
const WaveDescriptor kWaveDescriptors[kWaveCount] = {
    {"WvSaw.mf", "off", 3, 7, 0, 1.0f, 0, 0.0f},  // 0
    {"WvSaw.mf", "STA Noise", 3, 7, 0, 1.0f, 0, 0.0f},  // 1
    {"WvSaw.mf", "STA Saw", 3, 7, 0, 1.0f, 0, 0.0f},  // 2
    {"WvSquare.mf", "STA Pulse", 3, 7, 0, 1.0f, 0, 0.0f},  // 3
    {"WvSine.mf", "STA Sine", 3, 7, 2, 1.0f, 0, 0.0f},  // 4
    {"WvPeek.mf", "STA Peek", 3, 7, 0, 0.4f, 0, 0.0f},  // 5
    {"WvCombPulse2.mf", "STA Comb", 3, 7, -2, 0.5f, 0, 0.0f},  // 6
    {"WvPlatine2.mf", "STA Platine", 3, 7, -1, 0.5f, 2, 0.5f},  // 7
    {"ElPulsePWM.mf", "EL PWM", 3, 12, 0, 1.0f, 0, 0.0f},  // 8
    {"ElPulseBi.mf", "EL Multisqu", 3, 12, 0, 1.0f, 0, 0.0f},  // 9
    {"ElSawAlpha2x.mf", "EL Beta 2x", 3, 14, 0, 1.0f, 0, 0.0f},  // 10
    {"ElSawAlpha4x.mf", "EL Beta 4x", 3, 14, 0, 1.0f, 0, 0.0f},  // 11
    {"ElSawMulti.mf", "EL Multisaw", 3, 9, 0, 1.0f, 0, 0.0f},  // 12
    {"ElSawFlange1.mf", "EL Flange 1", 3, 10, 0, 1.5f, 0, 0.0f},  // 13
    {"ElSawFlange3.mf", "EL Flange 2", 3, 6, 0, 2.0f, 0, 0.0f},  // 14
    {"ElSawSync.mf", "EL Synced", 5, 7, -1, 1.0f, 0, 0.0f},  // 15
    {"ElPDPeek.mf", "PD Peek", 4, 7, -1, 1.5f, 0, 0.0f},  // 16
    {"ElPDSquare.mf", "PD Squ", 4, 7, -1, 1.5f, 0, 0.0f},  // 17
    {"ElPDSaw.mf", "PD Saw", 4, 7, -1, 1.5f, 0, 0.0f},  // 18
    {"FxSineRand.mf", "SO Sines", 3, 6, 0, 1.0f, 0, 0.0f},  // 19
    {"FxSineRand2.mf", "SO Ambie 1", 3, 6, 0, 1.5f, 0, 0.0f},  // 20
    {"ElFlange.mf", "SO Ambie 2", 3, 4, 0, 1.5f, 0, 0.0f},  // 21
    {"FxPlaktons.mf", "SO Digital", 1, 9, -1, 1.0f, 0, 0.0f},  // 22
    {"OrMorph3.mf", "SO Morph", 8, 8, 0, 1.0f, 2, 0.5f},  // 23
    {"OrMulti.mf", "SO Multi", 8, 8, -1, 0.75f, 0, 0.0f},  // 24
    {"OrPlatine.mf", "SO Platine", 3, 7, -2, 0.3f, 0, 0.0f},  // 25
    {"ElFeedsyn.mf", "SO Fedsyn", 8, 11, 0, 1.0f, 1, 0.66f},  // 26
    {"ElAcidbass.mf", "SO Lava", 4, 9, -2, 1.0f, 2, 0.1f},  // 27
    {"ElSiaou.mf", "SO Siaou", 8, 5, -2, 0.75f, 0, 0.0f},  // 28
    {"OtDidge1.mf", "OT Didge", 3, 6, -2, 2.0f, 0, 0.0f},  // 29
    {"OtFlute.mf", "OT Flute", 8, 9, 1, 2.0f, 0, 0.0f},  // 30
    {"BrSax1.mf", "BR Sax", 8, 8, 0, 1.5f, 0, 0.0f},  // 31
    {"BrTrumpet1.mf", "BR Trump 1", 8, 10, 1, 1.0f, 0, 0.0f},  // 32
    {"BrTrumpet2.mf", "BR Trump 2", 8, 7, 1, 1.0f, 0, 0.0f},  // 33
    {"OrChurch.mf", "OR Church", 8, 6, -1, 1.0f, 2, 0.33f},  // 34
    {"OrClicks.mf", "OR Clicks", 8, 11, 0, 1.5f, 1, 0.33f},  // 35
    {"OrHammond.mf", "OR Hammon", 8, 9, 0, 2.0f, 2, 0.66f},  // 36
    {"OrClean.mf", "OR Tremolo", 1, 25, 0, 0.3f, 0, 0.0f},  // 37
    {"OrPizzi.mf", "OR Orgicat", 4, 11, 0, 1.0f, 1, 0.5f},  // 38
    {"GtSlap1.mf", "GT Slap 1", 4, 12, -1, 1.5f, 0, 0.0f},  // 39
    {"GtSlap2.mf", "GT Slap 2", 4, 10, -1, 1.5f, 0, 0.0f},  // 40
    {"GtSitarDrone.mf", "GT Sitar", 8, 7, 0, 1.0f, 2, 1.0f},  // 41
    {"GtSaz2.mf", "GT Saz", 8, 7, 0, 1.0f, 2, 1.0f},  // 42
    {"PiLow.mf", "PI Piano 1", 4, 28, 0, 0.75f, 2, 0.25f},  // 43
    {"Pi1.mf", "PI Piano 2", 4, 28, 0, 1.0f, 2, 0.33f},  // 44
    {"PiHarpsichord.mf", "PI Harpsich", 4, 9, 0, 1.0f, 2, 1.0f},  // 45
    {"PeTransv2.mf", "PE Bowl 1", 4, 7, -1, 1.0f, 0, 0.0f},  // 46
    {"PeBell1.mf", "PE Bell", 4, 8, 0, 1.0f, 2, 0.33f},  // 47
    {"PeMarimba.mf", "PE Marimba", 4, 12, 1, 2.0f, 2, 0.5f},  // 48
    {"VoElectronic.mf", "VO Electro", 4, 7, -1, 1.5f, 0, 0.0f},  // 49
    {"VoSynthesizer.mf", "VO Synth", 4, 7, -1, 1.5f, 0, 0.0f},  // 50
    {"VoVocoder.mf", "VO Vocod", 4, 8, -1, 1.5f, 0, 0.0f},  // 51
    {"VoMusic.mf", "VO Music", 4, 8, -1, 1.5f, 0, 0.0f},  // 52
    {"VoWeAreTheRobots.mf", "VO We a...", 4, 6, -1, 1.5f, 0, 0.0f},  // 53
    {"VoLetTheBeat.mf", "VO Let...", 4, 6, -1, 1.5f, 0, 0.0f},  // 54
    {"VoComputerVoice.mf", "VO I am...", 4, 6, -1, 1.5f, 0, 0.0f},  // 55
    {"VoWelcome.mf", "VO Wel...", 4, 8, -1, 1.5f, 0, 0.0f},  // 56
    {"VoDl17.mf", "VO Dloop 1", 11, 18, -1, 2.0f, 1, 0.5f},  // 57
    {"VoDl3.mf", "VO Dloop 2", 11, 18, -1, 2.0f, 2, 0.5f},  // 58
    {"WvPulse1.mf", "WV Pulse 25%%", 3, 7, 0, 0.8f, 0, 0.0f},  // 59
    {"WvCombPulse3.mf", "WV Pulse 12%%", 3, 7, 0, 0.6f, 0, 0.0f},  // 60
    {"WvComb2.mf", "WV Comb 2", 3, 7, -1, 0.5f, 0, 0.0f},  // 61
    {"WvSawIO.mf", "WV SawIO", 3, 7, -1, 0.5f, 0, 0.0f},  // 62
    {"WvAhh.mf", "WV Ohh", 3, 7, 1, 1.0f, 0, 0.0f},  // 63
    {"ElSquMulti.mf", "EL Squ Multi 2", 3, 9, 0, 1.0f, 0, 0.0f},  // 64
    {"ElSquFlange1.mf", "EL Squ Flange", 3, 9, 0, 1.0f, 0, 0.0f},  // 65
    {"ElSawAlpha3x.mf", "EL Alpha 3x", 3, 14, 0, 1.0f, 0, 0.0f},  // 66
    {"ElSquPWMdbl.mf", "EL PWM Double", 3, 9, 0, 1.0f, 0, 0.0f},  // 67
    {"ElPeekSine.mf", "PD PeekSine", 4, 7, -1, 1.0f, 0, 0.0f},  // 68
    {"ElSawFlange2.mf", "EL Flange 3", 3, 7, 0, 2.0f, 0, 0.0f},  // 69
    {"FxSineRand1.mf", "SO Ambie 3", 3, 6, -1, 1.5f, 0, 0.0f},  // 70
    {"ElSawAlien.mf", "SO Ambie 4", 3, 7, -1, 1.0f, 0, 0.0f},  // 71
    {"FxRandom.mf", "SO Electro 2", 3, 2, -2, 0.5f, 0, 0.0f},  // 72
    {"ElBeaum.mf", "SO Beaum", 8, 7, -1, 1.5f, 0, 0.0f},  // 73
    {"BrTrumpet5.mf", "BR Trumpet2", 8, 8, 1, 1.0f, 0, 0.0f},  // 74
    {"OrSawCl.mf", "OR Ice EX", 3, 8, 0, 0.75f, 0, 0.0f},  // 75
    {"PeDrumPipe.mf", "PE Drumpipe", 4, 9, -1, 1.0f, 0, 0.0f},  // 76
    {"VoBreakBeat.mf", "VO Breakbeat", 4, 8, -1, 1.5f, 0, 0.0f},  // 77
    {"VoMelody.mf", "VO Melody", 4, 8, -1, 1.5f, 0, 0.0f},  // 78
    {"VoSoundIsMy.mf", "VO Sound is...", 4, 6, -1, 1.5f, 0, 0.0f},  // 79
    {"VoMaximumVelocity.mf", "VO Maximum...", 4, 6, -1, 1.5f, 0, 0.0f},  // 80
    {"VoVirtualReality.mf", "VO Virtual...", 4, 6, -1, 1.5f, 0, 0.0f},  // 81
    {"VoSexDrugs.mf", "VO Sex Drugs...", 4, 6, -1, 1.5f, 0, 0.0f},  // 82
    {"VoDl8.mf", "VO Drumloop 3", 11, 18, -1, 2.0f, 2, 0.5f},  // 83
    {"VoDl1.mf", "VO Drumloop 4", 11, 18, -1, 2.0f, 2, 0.5f},  // 84
};
// clang-format on

}  // namespace sablevox
