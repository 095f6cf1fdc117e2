// Progress bar and summary text.
#include "render/progress.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "render/audio_file.h"

namespace sablevox::render {
namespace {

constexpr int kBarWidth = 40;

std::string decibelText(double db) {
  if (!std::isfinite(db)) return "-inf";
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", db);
  return text;
}

}  // namespace

ProgressBar::ProgressBar(std::ostream& out, bool enabled, int64_t total)
    : out_(out), enabled_(enabled && total > 0), total_(total) {}

void ProgressBar::update(int64_t done) {
  if (!enabled_) return;
  const int percent = static_cast<int>(done * 100 / total_);
  if (percent == shownPercent_) return;
  shownPercent_ = percent;
  const int filled = percent * kBarWidth / 100;
  out_ << "\r[" << std::string(static_cast<size_t>(filled), '#')
       << std::string(static_cast<size_t>(kBarWidth - filled), '.') << "] " << percent << '%'
       << std::flush;
}

void ProgressBar::finish() {
  if (enabled_) out_ << '\r' << std::string(kBarWidth + 8, ' ') << '\r' << std::flush;
}

std::string summaryLine(const RenderSummary& summary) {
  const double seconds = static_cast<double>(summary.frames) / summary.sampleRate;
  char text[256];
  std::snprintf(text, sizeof text,
                ": %.2f s, %d Hz, %s; peak %s / %s dBFS; RMS %s / %s dBFS (L / R); ", seconds,
                summary.sampleRate, summary.format.c_str(),
                decibelText(summary.left.peakDb).c_str(), decibelText(summary.right.peakDb).c_str(),
                decibelText(summary.left.rmsDb).c_str(), decibelText(summary.right.rmsDb).c_str());
  std::string clipped;
  if (summary.integerSamples && summary.beyondFullScale > 0) {
    // The gain that brings the peak to -1 dBFS, rounded down to a whole dB.
    const double peak = std::max(summary.left.peakDb, summary.right.peakDb);
    const int gain = static_cast<int>(std::floor(-1.0 - peak));
    clipped = std::to_string(summary.beyondFullScale) + " samples clipped (try --gain " +
              std::to_string(gain) + ", --normalize, or --ignore-cc 7 if the file sets the " +
              "volume); ";
  }
  char speed[64];
  if (summary.renderSeconds > 0.0) {
    std::snprintf(speed, sizeof speed, "%.1fx real time", seconds / summary.renderSeconds);
  } else {
    std::snprintf(speed, sizeof speed, "real time factor not measurable");
  }
  return summary.path + text + clipped + speed;
}

}  // namespace sablevox::render
