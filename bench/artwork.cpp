// links: sablevox_editor
// Decoding the embedded PNG pictures of one main panel (a skin, both key
// images, the handles, the light and the button): the editor does this once
// at its first open, so it must stay well under a frame's time.
#include "editor/artwork.h"

#include <benchmark/benchmark.h>

#include "editor/layout.h"

namespace {

using namespace sablevox::editor;

void BM_DecodeMainPanelBitmaps(benchmark::State& state) {
  const int wanted[] = {bitmap::kSkinBase + 3, bitmap::kWhiteKeys,   bitmap::kBlackKeys,
                        bitmap::kSmallHandle,  bitmap::kLargeHandle, bitmap::kLight,
                        bitmap::kSmallButton};
  for (auto _ : state) {
    for (const EmbeddedPicture& p : embeddedPictures()) {
      for (int id : wanted) {
        if (p.id == id && p.scale == state.range(0))
          benchmark::DoNotOptimize(decodePicture(p).data());
      }
    }
  }
}
BENCHMARK(BM_DecodeMainPanelBitmaps)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

// All nineteen pictures at the scale of the argument.
void BM_DecodeEveryBitmap(benchmark::State& state) {
  for (auto _ : state) {
    for (const EmbeddedPicture& p : embeddedPictures()) {
      if (p.scale == state.range(0)) benchmark::DoNotOptimize(decodePicture(p).data());
    }
  }
}
BENCHMARK(BM_DecodeEveryBitmap)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

}  // namespace
