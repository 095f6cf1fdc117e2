// The routines against their formulas on short known inputs. Words are set
// by hand so that the expected values can be worked out on paper; the 1e-06
// input offset stays inside the tolerance.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

#include "filter/filter_routine.h"
#include "filter_test_support.h"
#include "host/numeric.h"

namespace sablevox {
namespace {

using test::newState;
using test::setWords;

void expectOutput(FilterRoutine routine, FilterState& state, std::vector<float> in,
                  std::vector<float> expected, double tolerance = 1e-5) {
  routine(in.data(), int(in.size()), state);
  for (size_t i = 0; i < in.size(); ++i) EXPECT_NEAR(in[i], expected[i], tolerance) << i;
}

// Stage 1: y = 0.5u + 0.25u1 + 0.5y1, giving 0.5, 0.5, 0.25, 0.125 for an impulse.
// Stage 2: z = v - 0.25z2.
std::unique_ptr<FilterState> pairState() {
  auto state = newState();
  setWords(state->set1, {0.5f, 0.25f, 0.0f, 0.5f, 0.0f});
  setWords(state->set2, {1.0f, 0.0f, 0.0f, 0.0f, -0.25f});
  state->gain = 2.0f;
  return state;
}

TEST(BiquadRoutines, ArrangeTheTwoStages) {
  auto state = pairState();
  expectOutput(filterSerial, *state, {1, 0, 0, 0}, {1, 1, 0.25f, 0});
  // Stage 2 keeps its own history: its input was stage 1's output.
  EXPECT_NEAR(state->hist2[0], state->hist1[2], 1e-6);
  EXPECT_NEAR(state->hist2[2], 0.0f, 1e-5);
  state = pairState();
  expectOutput(filterParallel, *state, {1, 0, 0, 0}, {3, 1, 0, 0.25f});
  state = pairState();
  expectOutput(filterPhaser, *state, {1, 0, 0, 0}, {2, 0, -0.25f, -0.25f});
  std::vector<float> none = {1.5f, -2e30f, 3.25f};
  filterNone(none.data(), 3, *state);
  EXPECT_EQ(none, (std::vector<float>{1.5f, -2e30f, 3.25f}));
}

TEST(BiquadRoutines, SyncieClipsEachHalfWaveOnOneSide) {
  auto state = newState();
  setWords(state->set1, {1, 0, 0, 0, 0});
  setWords(state->set2, {1, 0, 0, 0, 0});
  state->gain = 1.0f;
  const auto bend = [](float v) { return 500.0f * float(1.0 - fastExp(-v)); };
  expectOutput(filterSyncie, *state, {1000, -1000, 100}, {bend(2), -bend(2), bend(0.2f)}, 1e-2);
  // Far beyond the knee, on either side, the output settles at 500.
  expectOutput(filterSyncie, *state, {1e7f, -1e7f, -3e38f}, {500, -500, -500}, 1e-3);
}

TEST(StateVariableRoutines, FollowTheChamberlinLoop) {
  auto state = newState();
  setWords(state->set1, {0.5f, 1.0f, 1.0f, 2.0f, 3.0f});  // f, q, low, band, high mixes
  state->gain = 2.0f;                                     // at the input
  // low 0, 0.25, 0.3125; band 0.5, 0.125, -0.09375; high 1, -0.75, -0.4375.
  expectOutput(filterStateVariable, *state, {0.5f, 0, 0}, {4, -1.75f, -1.1875f});
  EXPECT_NEAR(state->set2[0], 0.3125f, 1e-5);

  state = newState();
  setWords(state->set1, {0.5f, 0.5f, 1.0f, 2.0f, 4.0f});
  state->gain = 1.0f;
  // Two passes; every clip sees a positive value and passes it: low 0 and
  // 0.25, band 0.5 and 0.75, high 1 and 0.5.
  expectOutput(filterStateVariableAnalog, *state, {1}, {1.09375f});
  EXPECT_NEAR(state->set2[1], 0.75f, 1e-5);
  // Downward the clip bends towards -200 per point: no overflow, however loud.
  std::vector<float> loud(64, -3e30f);
  filterStateVariableAnalog(loud.data(), 64, *state);
  for (float v : loud) EXPECT_TRUE(std::isfinite(v) && std::fabs(v) < 1e4f) << v;
}

TEST(LadderRoutines, FourStagesWithFeedback) {
  auto state = newState();
  setWords(state->set1, {0.5f, 0.0f, 0.0f, 0, 0, 0, 0, 1});  // p, k, res, taps
  state->gain = 16.0f;
  expectOutput(filterLadder, *state, {1, 0, 0, 0, 0, 0}, {1, 4, 6, 4, 1, 0}, 1e-4);
  // Taps and feedback: y0 of the second sample is -res * y4 of the first.
  state = newState();
  setWords(state->set1, {0.5f, 0.0f, 1.0f, 1, 0, 0, 0, 0});
  state->gain = 1.0f;
  expectOutput(filterLadder, *state, {1, 0}, {1, -0.0625f});
  // The pole's memory: k subtracts the stage's own past.
  state = newState();
  setWords(state->set1, {0.5f, 0.5f, 0.0f, 0, 1, 0, 0, 0});
  state->gain = 1.0f;
  expectOutput(filterLadder, *state, {1, 0, 0}, {0.5f, 0.25f, -0.125f});
}

TEST(LadderRoutines, NoisyLadderTremblesFromTheSharedGenerator) {
  // Without noise (g = 0) it is the plain ladder with p = (k + 1) / 2, out 1.5 y4.
  auto state = newState();
  setWords(state->set1, {0.0f, 0.0f, 0.0f, 0.0f});
  expectOutput(filterLadderNoisy, *state, {16, 0, 0, 0, 0}, {1.5f, 6, 9, 6, 1.5f}, 1e-4);
  // With noise, left and right records draw different numbers.
  auto left = newState(), right = newState();
  designFilter(63, 44100, 0.9f, 0.2f, *left);
  copyFilterSettings(*left, *right);
  std::vector<float> a(64, 1000.0f), b(64, 1000.0f);
  filterLadderNoisy(a.data(), 64, *left);
  filterLadderNoisy(b.data(), 64, *right);
  EXPECT_NE(a, b);
  EXPECT_NE(left->hist2[0], right->hist2[0]);
  const float pink = left->hist2[0];
  filterLadderNoisy(a.data(), 0, *left);
  EXPECT_EQ(left->hist2[0], pink);
}

TEST(ModulationRoutines, ResampleAveragesOverTheHold) {
  auto state = newState();
  setWords(state->set1, {3.0f, 1.0f / 3.0f});
  expectOutput(filterResample, *state, {1, 2, 3, 4, 5, 6}, {0, 0, 2, 2, 2, 5});
  setWords(state->set1, {1.0f, 1.0f});
  std::vector<float> in = {0.3f, -7.0f, 1e-3f};
  std::vector<float> out = in;
  filterResample(out.data(), 3, *state);
  EXPECT_EQ(out, in);
}

TEST(ModulationRoutines, AmIsAHalfSineAndARest) {
  auto state = newState();
  setWords(state->set1, {0.0625f, 0.0f});
  std::vector<float> x = {1.0f, -2.0f};
  expectOutput(filterAm, *state, x, {1.0f + 1e-6f, -2.0f + 1e-6f}, 0.0);
  state = newState();
  setWords(state->set1, {0.0625f, 1.0f});
  std::vector<float> ones(32, 1.0f);
  filterAm(ones.data(), 32, *state);
  for (int i = 0; i < 32; ++i) {
    const double sine = std::sin(2 * M_PI * (i % 16) / 16.0);
    EXPECT_NEAR(ones[i], sine > 0 ? sine : 0.000189, 2e-4) << i;
  }
  EXPECT_FLOAT_EQ(state->set2[0], 0.0f);
}

// FM with a line that holds its own index: the value read is the read position.
std::unique_ptr<FilterState> rampLineState(float depth, float lastDepth, float increment) {
  auto state = newState();
  for (int m = 0; m < kFilterLineLength; ++m) state->line[m] = float(m);
  setWords(state->set1, {increment, depth, 0.9f, 0.0f});
  setWords(state->set2, {20000.0f, 0.0f, lastDepth});
  return state;
}

TEST(FmRoutine, RampsTheDepthOncePerTick) {
  // Sine shape at phase 0: the delay is d + 1, d ramping from 0 to 64 over 16 samples.
  auto state = rampLineState(64.0f, 0.0f, 0.0f);
  std::vector<float> buffer(16, 0.0f);
  filterFm(buffer.data(), 16, *state);
  for (int i = 0; i < 16; ++i) EXPECT_NEAR(buffer[i], 20000 + i - (4 * i + 1), 1e-2) << i;
  EXPECT_EQ(state->set2[2], 64.0f);
  // The second pass of the tick finds the ramp done.
  std::vector<float> second(8, 0.0f);
  filterFm(second.data(), 8, *state);
  for (int i = 0; i < 8; ++i) EXPECT_NEAR(second[i], 20016 + i - 65, 1e-2) << i;
  // A pass of no samples still moves the depth on.
  state->set1[1] = 10.0f;
  filterFm(second.data(), 0, *state);
  EXPECT_EQ(state->set2[2], 10.0f);
}

TEST(FmRoutine, DelaySwingsByTheShape) {
  // Triangle, one period per 1024 samples, d = 3000: the delay runs between 1
  // and 6001 as 3000 a + 3001. Reads of cells written during the pass are skipped.
  auto state = rampLineState(3000.0f, 3000.0f, 1.0f / 1024.0f);
  state->set1[3] = 1.0f;
  std::vector<float> buffer(1024, 0.0f);
  filterFm(buffer.data(), 1024, *state);
  float longest = 0;
  for (int i = 0; i < 1024; ++i) {
    const double phase = i / 1024.0, tri = phase < 0.25   ? 4 * phase
                                           : phase < 0.75 ? 2 - 4 * phase
                                                          : 4 * phase - 4;
    const double delay = tri * 3000 + 3001;
    if (delay <= i + 2) continue;
    const float observed = float(20000 + i) - buffer[i];
    EXPECT_NEAR(observed, delay, 0.05) << i;
    longest = std::max(longest, observed);
  }
  EXPECT_NEAR(longest, 6001.0f, 0.05f);
}

TEST(FmRoutine, NoDepthIsATwoSampleDelayOfTheLowPass) {
  auto fm = newState(), svf = newState();
  designFilter(36, 44100, 0.0f, 0.4f, *fm);
  setWords(svf->set1, {fm->set1[2], 0.999f, 1.0f, 0.0f, 0.0f});
  svf->gain = 1.0f;
  test::Sawtooth saw(44100, 1000.0f);
  std::vector<float> in(200);
  for (float& v : in) v = saw.next();
  std::vector<float> out = in, low = in;
  filterFm(out.data(), 200, *fm);
  filterStateVariable(low.data(), 200, *svf);
  for (int i = 2; i < 200; ++i) EXPECT_EQ(out[i], low[i - 2]) << i;
}

// Clears write the line only up to the routine's mark, so the mark must lie
// beyond every cell written, also when the write index starts late (a record
// that another routine ran on) or wraps; a clear then leaves no word set.
TEST(FmRoutine, WrittenMarkCoversEveryCellItWrites) {
  for (const int start : {0, 5000, kFilterLineLength - 100}) {
    for (const bool reset : {false, true}) {
      auto state = newState();
      designFilter(36, 44100, 0.5f, 0.5f, *state);
      state->set2[0] = static_cast<float>(start);
      test::Sawtooth saw(44100, 300.0f);
      std::vector<float> buffer(256);
      for (int pass = 0; pass < 3; ++pass) {
        for (float& v : buffer) v = saw.next();
        filterFm(buffer.data(), 256, *state);
      }
      const float* line = state->line;
      const int last =
          int(std::find_if(std::make_reverse_iterator(line + kFilterLineLength),
                           std::make_reverse_iterator(line), [](float v) { return v != 0.0f; })
                  .base() -
              line);
      EXPECT_GT(last, 4) << start;
      EXPECT_LE(last, state->lineWritten) << start;
      EXPECT_EQ(state->lineWritten, start == 0 ? 769 : start == 5000 ? 5769 : kFilterLineLength);
      reset ? resetFilter(*state) : clearFilter(*state);
      EXPECT_TRUE(std::all_of(line, line + kFilterLineLength, [](float v) { return v == 0.0f; }));
      EXPECT_EQ(state->lineWritten, 0);
      if (!reset) {
        const float* w = test::words(*state);
        EXPECT_TRUE(std::all_of(w, w + test::kRecordWords, [](float v) { return v == 0.0f; }));
      }
    }
  }
}

// The running state carries a tick split over two render passes seamlessly.
TEST(FilterRoutines, TwoPassesOfOneTickMatchOnePass) {
  for (int step = 1; step < kFilterTypeCount; ++step) {
    if (step == 4) continue;  // the noisy ladder draws from the shared generator
    auto whole = newState();
    const FilterRoutine routine = test::designStep(step, 44100, 0.55f, 0.8f, *whole);
    test::Sawtooth saw(44100);
    std::vector<float> warm(300), a(110);
    for (float& v : warm) v = saw.next();
    for (float& v : a) v = saw.next();
    routine(warm.data(), 300, *whole);
    auto split = newState();
    *split = *whole;
    std::vector<float> b = a;
    routine(a.data(), 110, *whole);
    routine(b.data(), 40, *split);
    routine(b.data() + 40, 70, *split);
    if (whole->mode != 8.0f) {
      EXPECT_EQ(a, b) << kFilterTypes[step].name;
      continue;
    }
    // FM: with no ramp left the two passes agree to the rounding of the
    // depth interpolation, which depends on the pass length.
    for (int i = 0; i < 110; ++i) EXPECT_NEAR(a[i], b[i], 1.0f) << kFilterTypes[step].name;
  }
}

}  // namespace
}  // namespace sablevox
