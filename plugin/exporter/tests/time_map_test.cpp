#include "plugin/exporter/time_map.h"

#include <gtest/gtest.h>

namespace {

TEST(TimeMap, FramesKeepTheirNumberAtAFractionalRate) {
  // 29.97 frames a second: After Effects' frame lasts 1001/30000 s, the document counts 30.
  TimeMap times;
  InsertFrame(&times, 300, 0, 30, A_Time{1001, 30000});
  ASSERT_EQ(times.size(), 1u);
  const auto& [docTime, hostTime] = *times.begin();
  EXPECT_EQ(docTime.numerator, 10.0);
  EXPECT_EQ(docTime.denominator, 1.0);
  EXPECT_EQ(hostTime.value, 300300);
  EXPECT_EQ(hostTime.scale, 30000u);
}

TEST(TimeMap, OrderedByValueAndEqualFractionsMerge) {
  TimeMap times;
  InsertHostTime(&times, A_Time{3, 2});   // 1.5 s
  InsertHostTime(&times, A_Time{1, 4});   // 0.25 s
  InsertFrame(&times, 15, 0, 10, A_Time{1, 10});  // 1.5 s again, host time replaced
  ASSERT_EQ(times.size(), 2u);
  EXPECT_DOUBLE_EQ(TimeRatio(times.begin()->first), 0.25);
  EXPECT_DOUBLE_EQ(TimeRatio(times.rbegin()->first), 1.5);
  EXPECT_EQ(times.rbegin()->second.value, 15);
  EXPECT_EQ(times.rbegin()->second.scale, 10u);
}

TEST(TimeMap, AFrameStandsWhereTheDocumentShowsIt) {
  // A composition whose display starts at 10 s, at 25 fps: the document runs from frame 250,
  // and the composition's frame 5 (0.2 s in After Effects) is the document's frame 255.
  TimeMap times;
  InsertFrame(&times, 5, 250, 25, A_Time{1, 25});
  ASSERT_EQ(times.size(), 1u);
  EXPECT_EQ(times.begin()->first, BaseTime(255, 25));
  EXPECT_EQ(times.begin()->second.value, 5);
  EXPECT_EQ(times.begin()->second.scale, 25u);
}

TEST(TimeMap, RatioOfAnEmptyScaleIsZero) {
  EXPECT_EQ(TimeRatio(A_Time{5, 0}), 0.0);
  EXPECT_DOUBLE_EQ(TimeRatio(A_Time{-3, 4}), -0.75);
}

// Frame f of 29.97 fps lies at f * 1001 / 30000 s: frame 29 at 0.9676 s, 30 at 1.001 s,
// 44 at 1.4681 s, 45 at 1.5015 s.
constexpr A_Time kNtscFrame{1001, 30000};

TEST(LayerFrameSpan, FramesFromTheInPointUpToTheOutPoint) {
  // 25 fps, in point 1 s, half a second long: frames 25 (1 s) to 37 (1.48 s); the out point
  // 1.5 s lies at frame 37.5.
  FrameSpan span = LayerFrameSpan(A_Time{1, 1}, A_Time{1, 2}, A_Time{1, 25});
  EXPECT_EQ(span.first, 25);
  EXPECT_EQ(span.last, 37);
  // The whole of a 2 s composition at 25 fps: frames 0 to 49; frame 50 lies at the end, where
  // the layer is no longer shown.
  span = LayerFrameSpan(A_Time{0, 1}, A_Time{2, 1}, A_Time{1, 25});
  EXPECT_EQ(span.first, 0);
  EXPECT_EQ(span.last, 49);
  // An in point on a frame counts that frame: 2 s at 25 fps, with another time scale.
  span = LayerFrameSpan(A_Time{5000, 2500}, A_Time{100, 2500}, A_Time{100, 2500});
  EXPECT_EQ(span.first, 50);
  EXPECT_EQ(span.last, 50);
}

TEST(LayerFrameSpan, AnInPointBetweenFramesStartsAtTheNextFrame) {
  // 1 s at 29.97 fps lies between frames 29 and 30; 1.5 s between 44 and 45.
  FrameSpan span = LayerFrameSpan(A_Time{1, 1}, A_Time{1, 2}, kNtscFrame);
  EXPECT_EQ(span.first, 30);
  EXPECT_EQ(span.last, 44);
  // In point on frame 30 exactly (1.001 s), five frames long: frames 30 to 34.
  span = LayerFrameSpan(A_Time{30030, 30000}, A_Time{5005, 30000}, kNtscFrame);
  EXPECT_EQ(span.first, 30);
  EXPECT_EQ(span.last, 34);
  // A layer that starts before the composition: in point -0.1 s, 0.2 s long, at 10 fps:
  // frames -1 (-0.1 s) and 0; frame 1 lies at the out point 0.1 s.
  span = LayerFrameSpan(A_Time{-1, 10}, A_Time{2, 10}, A_Time{1, 10});
  EXPECT_EQ(span.first, -1);
  EXPECT_EQ(span.last, 0);
}

TEST(FramesAroundKeys, FromTheFrameBeforeTheFirstKeyToTheFrameAfterTheLast) {
  // Keys on frames 10 (0.4 s) and 25 (1 s) at 25 fps: just those frames and the ones between.
  FrameSpan span = FramesAroundKeys(0.4, 1.0, A_Time{1, 25});
  EXPECT_EQ(span.first, 10);
  EXPECT_EQ(span.last, 25);
  // Keys at 1 s and 1.5 s at 29.97 fps lie at frames 29.97 and 44.955: frames 29 to 45.
  span = FramesAroundKeys(1.0, 1.5, kNtscFrame);
  EXPECT_EQ(span.first, 29);
  EXPECT_EQ(span.last, 45);
  // Keys on frames 10 and 40 at 29.97 fps, 10 * 1001 / 30000 s and 40 * 1001 / 30000 s, whose
  // quotient by the frame duration is not exactly whole in doubles: still frames 10 to 40.
  span = FramesAroundKeys(10 * 1001 / 30000.0, 40 * 1001 / 30000.0, kNtscFrame);
  EXPECT_EQ(span.first, 10);
  EXPECT_EQ(span.last, 40);
  // No keys: no frames.
  span = FramesAroundKeys(1.0, 0.0, A_Time{1, 25});
  EXPECT_LT(span.last, span.first);
}

TEST(LayerFrameSpan, NoFrameDurationGivesNoFrames) {
  const FrameSpan span = LayerFrameSpan(A_Time{0, 1}, A_Time{2, 1}, A_Time{0, 1});
  EXPECT_LT(span.last, span.first);
}

}  // namespace
