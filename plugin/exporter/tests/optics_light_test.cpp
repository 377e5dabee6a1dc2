// The light's mapping against values worked out by hand from degrees, percent and the
// scene's kinds.
#include <gtest/gtest.h>

#include "plugin/exporter/light_mapping.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

TEST(OpticsLightType, SpotPointAndTheRest) {
  EXPECT_EQ(SceneLightType(AEGP_LightType_SPOT), 1);
  EXPECT_EQ(SceneLightType(AEGP_LightType_POINT), 0);
  EXPECT_EQ(SceneLightType(AEGP_LightType_PARALLEL), 4);
  EXPECT_EQ(SceneLightType(AEGP_LightType_AMBIENT), 4);
  EXPECT_EQ(SceneLightType(AEGP_LightType_NONE), 4);
}

TEST(OpticsLightFalloff, KindsOfFalloff) {
  EXPECT_EQ(SceneFalloff(1), 0);
  EXPECT_EQ(SceneFalloff(2), 8);
  EXPECT_EQ(SceneFalloff(3), 10);
  EXPECT_EQ(SceneFalloff(0), 0);
  EXPECT_EQ(SceneFalloff(4), 0);
}

TEST(OpticsLightCone, AngleAndFeather) {
  EXPECT_NEAR(OuterConeAngle(90.0), kPi / 2.0, 1e-15);
  EXPECT_NEAR(InnerConeAngle(90.0, 50.0), kPi / 4.0, 1e-15);
  EXPECT_DOUBLE_EQ(InnerConeAngle(90.0, 100.0), 0.0);
  EXPECT_DOUBLE_EQ(InnerConeAngle(90.0, 0.0), OuterConeAngle(90.0));
}

TEST(OpticsLightIntensity, HundredPercentIsHalfAndKeysAgreeClosely) {
  EXPECT_NEAR(100.0 * kIntensityScale, 0.5, 1e-7);
  EXPECT_NE(100.0 * kIntensityScale, 100.0 / kIntensityKeyDivisor);
  EXPECT_DOUBLE_EQ(200.0 / kIntensityKeyDivisor, 1.0);
}

}  // namespace
