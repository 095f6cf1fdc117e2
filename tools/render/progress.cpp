// Progress bar and summary text.
#include "render/progress.h"

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
  const ChannelLevels left = measureLevels(*summary.left);
  const ChannelLevels right = measureLevels(*summary.right);
  const double seconds = static_cast<double>(summary.left->size()) / summary.sampleRate;
  char text[256];
  std::snprintf(text, sizeof text,
                ": %.2f s, %d Hz, %s; peak %s / %s dBFS; RMS %s / %s dBFS (L / R); ", seconds,
                summary.sampleRate, summary.format.c_str(), decibelText(left.peakDb).c_str(),
                decibelText(right.peakDb).c_str(), decibelText(left.rmsDb).c_str(),
                decibelText(right.rmsDb).c_str());
  std::string clipped;
  if (summary.integerSamples) {
    int64_t count = 0;
    for (const auto* channel : {summary.left, summary.right}) {
      for (float sample : *channel) count += std::fabs(sample) > 1.0f ? 1 : 0;
    }
    if (count > 0) clipped = std::to_string(count) + " samples clipped; ";
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
