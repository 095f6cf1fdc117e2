// Notes from the user-interface thread: the hand-over queue, their effect at
// the next tick, and a two-thread run for the thread sanitizer.
#include <atomic>
#include <thread>

#include "notes_support.h"

namespace sablevox {
namespace {

using testing::NotesTest;

TEST(UiNoteQueueTest, FirstInFirstOutUntilFullThenDrops) {
  auto queue = std::make_unique<UiNoteQueue>();
  UiNote entry{};
  EXPECT_FALSE(queue->pop(entry));
  // Many rounds, so that the counters wrap around the ring several times.
  for (int round = 0; round < 5; ++round) {
    for (int i = 0; i < static_cast<int>(UiNoteQueue::kCapacity); ++i) {
      ASSERT_TRUE(queue->push({i % 2 == 0, i, round}));
    }
    EXPECT_EQ(queue->pending(), UiNoteQueue::kCapacity);
    EXPECT_FALSE(queue->push({true, 999, 0}));
    for (int i = 0; i < static_cast<int>(UiNoteQueue::kCapacity); ++i) {
      ASSERT_TRUE(queue->pop(entry));
      EXPECT_EQ(entry.note, i);
      EXPECT_EQ(entry.on, i % 2 == 0);
      EXPECT_EQ(entry.velocity, round);
    }
    EXPECT_FALSE(queue->pop(entry));
    EXPECT_EQ(queue->pending(), 0u);
  }
}

using UiNotesTest = NotesTest;

TEST_F(UiNotesTest, AKeyFromTheEditorSoundsAtTheNextTick) {
  engine->uiNoteOn(60, 96);
  EXPECT_EQ(voiceOf(60), -1);  // nothing touched from the calling thread
  EXPECT_FALSE(engine->keyDown[60]);
  render(engine->tickLength + 1);  // at most one tick away
  const int v = voiceOf(60);
  ASSERT_GE(v, 0);
  EXPECT_EQ(engine->voices[v].velocity, 96);
  EXPECT_EQ(engine->voices[v].gate, 1);

  engine->uiNoteOff(60);
  EXPECT_EQ(engine->voices[v].gate, 1);
  render(engine->tickLength + 1);
  EXPECT_EQ(engine->voices[v].gate, 0);
  EXPECT_FALSE(engine->keyDown[60]);
}

TEST_F(UiNotesTest, WithTheArpeggiatorOnKeysGoToItsTables) {
  engine->setParameter(kArpType, choiceValue(1));
  render(engine->tickLength + 1);
  engine->uiNoteOn(62, 96);
  render(engine->tickLength + 1);
  EXPECT_TRUE(engine->arpKeys[62]);
  EXPECT_TRUE(engine->arpHeldKeys[62]);
  EXPECT_EQ(engine->arpVelocity, 96);
}

// Keys from a second thread while the audio thread renders; under the
// thread sanitizer this must run without a report.
TEST_F(UiNotesTest, KeysFromAnotherThreadWhileBlocksRender) {
  std::atomic<bool> done{false};
  std::thread keyboard([&] {
    for (int i = 0; i < 3000; ++i) {
      // The test keeps every key: it waits for room rather than lose a key-up.
      while (engine->uiNotes.pending() > UiNoteQueue::kCapacity - 2) std::this_thread::yield();
      const int note = 36 + (i * 7) % 60;
      engine->uiNoteOn(note, 1 + i % 127);
      engine->uiNoteOff(note);
    }
    done = true;
  });
  int blocks = 0;
  while (!done) {
    render(256);
    ++blocks;
  }
  keyboard.join();
  render(engine->tickLength + 1);

  EXPECT_GT(blocks, 0);
  EXPECT_EQ(engine->uiNotes.pending(), 0u);
  for (bool down : engine->keyDown) ASSERT_FALSE(down);
  int played = 0;
  for (const Voice& voice : engine->voices) {
    EXPECT_EQ(voice.gate, 0);
    played += voice.note >= 36 ? 1 : 0;
  }
  EXPECT_GT(played, 0);
}

}  // namespace
}  // namespace sablevox
