// The camera's arithmetic against values worked out by hand: a lens whose zoom is half the
// composition's width sees a right angle; 36 mm are 102.04724409448819 points (36 * 72 / 25.4).
#include <gtest/gtest.h>

#include <cmath>

#include "plugin/exporter/camera_optics.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kPointsFor36mm = 36.0 * 72.0 / 25.4;

TEST(OpticsFieldOfView, ZoomHalfTheWidthIsARightAngle) {
  EXPECT_NEAR(FieldOfView(960.0, 1920, 1.0), kPi / 2.0, 1e-15);
  // A zoom as long as the width: 2 atan(1/2).
  EXPECT_NEAR(FieldOfView(1920.0, 1920, 1.0), 0.9272952180016122, 1e-15);
}

TEST(OpticsFieldOfView, WidePixelsShortenTheZoom) {
  // Pixels twice as wide: zoom 960 counts as 480, so tan(fov / 2) = 960 / 480.
  EXPECT_NEAR(FieldOfView(960.0, 1920, 2.0), 2.0 * std::atan(2.0), 1e-15);
  EXPECT_GT(FieldOfView(960.0, 1920, 2.0), FieldOfView(960.0, 1920, 1.0));
}

TEST(OpticsFilmWidth, EachWayOfMeasuring) {
  EXPECT_NEAR(FilmWidth(kPointsFor36mm, AEGP_FilmSizeUnits_HORIZONTAL, 1920, 1080), 36.0, 1e-12);
  // 102.05 points, 36 mm rounded to two places of points.
  EXPECT_NEAR(FilmWidth(102.05, AEGP_FilmSizeUnits_HORIZONTAL, 1920, 1080), 36.001, 1e-3);
  // Measured vertically on a 2:1 picture, the width is twice the film height.
  EXPECT_NEAR(FilmWidth(kPointsFor36mm, AEGP_FilmSizeUnits_VERTICAL, 2000, 1000), 72.0, 1e-12);
  // Diagonally on a 4:3 picture the 3-4-5 triangle gives a width of 4/5 of the diagonal.
  EXPECT_NEAR(FilmWidth(kPointsFor36mm, AEGP_FilmSizeUnits_DIAGONAL, 400, 300), 28.8, 1e-12);
  EXPECT_DOUBLE_EQ(FilmWidth(kPointsFor36mm, AEGP_FilmSizeUnits_NONE, 1920, 1080), 36.0);
  EXPECT_DOUBLE_EQ(FilmWidth(10.0, 7, 1920, 1080), 36.0);
}

// Sizes whose millimetres come out one unit in the last place apart when 25.4 / 72 is folded
// into one factor first; the bits are those of size * 25.4 / 72 worked out left to right.
TEST(OpticsMillimetres, MultipliedThenDivided) {
  EXPECT_EQ(FilmWidth(100.0, AEGP_FilmSizeUnits_HORIZONTAL, 1920, 1080), 0x1.1a38e38e38e39p+5);
  EXPECT_EQ(FilmWidth(1234.0, AEGP_FilmSizeUnits_HORIZONTAL, 1920, 1080), 0x1.b353e93e93e94p+8);
  EXPECT_EQ(SceneFocusDistance(100.0), 0x1.8ffe596555555p+6);
  EXPECT_EQ(SceneFocusDistance(1234.0), 0x1.347eba1108889p+10);
}

TEST(OpticsFocus, StaticValueAndKeysAgree) {
  // The factor is not quite 1, and the key divisor is its inverse.
  EXPECT_NEAR(SceneFocusDistance(1.0), 0.9999838789304096, 1e-15);
  EXPECT_NEAR(SceneFocusDistance(1500.0), 1500.0 / kFocusKeyDivisor, 1e-9);
}

}  // namespace
