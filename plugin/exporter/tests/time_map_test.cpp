#include "plugin/exporter/time_map.h"

#include <gtest/gtest.h>

namespace {

TEST(TimeMap, FramesKeepTheirNumberAtAFractionalRate) {
  // 29.97 frames a second: After Effects' frame lasts 1001/30000 s, the document counts 30.
  TimeMap times;
  InsertFrame(&times, 300, 30, A_Time{1001, 30000});
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
  InsertFrame(&times, 15, 10, A_Time{1, 10});  // 1.5 s again, host time replaced
  ASSERT_EQ(times.size(), 2u);
  EXPECT_DOUBLE_EQ(TimeRatio(times.begin()->first), 0.25);
  EXPECT_DOUBLE_EQ(TimeRatio(times.rbegin()->first), 1.5);
  EXPECT_EQ(times.rbegin()->second.value, 15);
  EXPECT_EQ(times.rbegin()->second.scale, 10u);
}

TEST(TimeMap, RatioOfAnEmptyScaleIsZero) {
  EXPECT_EQ(TimeRatio(A_Time{5, 0}), 0.0);
  EXPECT_DOUBLE_EQ(TimeRatio(A_Time{-3, 4}), -0.75);
}

}  // namespace
