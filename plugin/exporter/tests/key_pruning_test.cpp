#include "plugin/exporter/key_pruning.h"

#include <gtest/gtest.h>

namespace {

std::vector<int32_t> RedundantOf(const std::vector<double>& values) {
  return RedundantKeys(static_cast<int32_t>(values.size()),
                       [&](int32_t a, int32_t b) { return FloatKeysMatch(values[a], values[b]); });
}

TEST(KeyPruning, HoldKeepsTheStepOfOneFrame) {
  // A hold at frame 10 and the next key at frame 20: frames 10..19 equal, frame 20 new.
  std::vector<double> values(11, 5.0);
  values[10] = 8.0;
  // Keys 1..8 (frames 11..18) go; frames 10, 19 and 20 stay.
  EXPECT_EQ(RedundantOf(values), (std::vector<int32_t>{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(KeyPruning, LinearMotionKeepsEveryKey) {
  std::vector<double> values;
  for (int i = 0; i <= 10; ++i) values.push_back(100.0 + 3.0 * i);
  EXPECT_TRUE(RedundantOf(values).empty());
}

TEST(KeyPruning, ConstantRunKeepsFirstAndLast) {
  EXPECT_EQ(RedundantOf({2.0, 2.0, 2.0, 2.0}), (std::vector<int32_t>{1, 2}));
}

TEST(KeyPruning, NeighboursAreComparedAsTheyWereBeforeRemoval) {
  // Key 2 sits between 1.0 and 1.0 once key 1 is gone, but its original neighbour is 1.0 too;
  // key 3 has 2.0 after it and must stay.
  EXPECT_EQ(RedundantOf({1.0, 1.0, 1.0, 1.0, 2.0}), (std::vector<int32_t>{1, 2}));
}

TEST(KeyPruning, ToleranceIsSinglePrecisionMicro) {
  EXPECT_TRUE(FloatKeysMatch(1.0, 1.0 + 9e-7));
  EXPECT_FALSE(FloatKeysMatch(1.0, 1.0 + 1.1e-6));
  EXPECT_EQ(RedundantOf({0.0, 5e-7, 0.0}), (std::vector<int32_t>{1}));
}

TEST(KeyPruning, TooShortForAnyRemoval) {
  EXPECT_TRUE(RedundantOf({}).empty());
  EXPECT_TRUE(RedundantOf({1.0}).empty());
  EXPECT_TRUE(RedundantOf({1.0, 1.0}).empty());
}

TEST(KeyPruning, StaticTracks) {
  EXPECT_TRUE(TrackIsStatic(0, false));
  EXPECT_TRUE(TrackIsStatic(1, false));
  EXPECT_TRUE(TrackIsStatic(2, true));
  EXPECT_FALSE(TrackIsStatic(2, false));
  EXPECT_FALSE(TrackIsStatic(3, true));
}

}  // namespace
