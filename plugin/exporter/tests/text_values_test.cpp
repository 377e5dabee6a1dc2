// The numbers of live text, worked out by hand in single precision: 0.075f is
// 0.0750000029802322, two thirds in single precision 0.666666686534881.
#include <gtest/gtest.h>

#include "plugin/exporter/text_shape/text_values.h"

namespace {

TEST(TextValues, StrokeUnderFillOfWidthThree) {
  EXPECT_EQ(kTwoThirdsSingle, 0.6666666865348816);
  EXPECT_EQ(StrokeDepthOffset(3.0), 2.5000000596046448);
  EXPECT_EQ(OutlineWidth(3.0), 2.0000000596046448);
}

TEST(TextValues, TrackingIsFormedInSinglePrecision) {
  EXPECT_EQ(SceneTracking(25), 1.8750001192092896);
  EXPECT_EQ(SceneTracking(-50), -3.750000238418579);
  EXPECT_EQ(SceneTracking(0), 0.0);
}

struct AlignmentCase {
  int32_t justification;
  std::optional<int32_t> alignment;
};

class Alignments : public ::testing::TestWithParam<AlignmentCase> {};

TEST_P(Alignments, FollowTheHostsJustification) {
  EXPECT_EQ(SceneAlignment(GetParam().justification), GetParam().alignment);
}

INSTANTIATE_TEST_SUITE_P(Cases, Alignments,
                         ::testing::Values(AlignmentCase{7213, 0}, AlignmentCase{7216, 0}, AlignmentCase{7214, 2},
                                           AlignmentCase{7217, 2}, AlignmentCase{7215, 1}, AlignmentCase{7218, 1},
                                           AlignmentCase{7219, 1}, AlignmentCase{7212, std::nullopt},
                                           AlignmentCase{7220, std::nullopt}, AlignmentCase{0, std::nullopt}));

}  // namespace
