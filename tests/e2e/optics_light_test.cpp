// End to end: light layers through `aehost export` and `orytool dump --json`. Expected values
// are worked out here from the conventions: After Effects gives intensity and shadow darkness
// in percent, colours from 0 to 1, the cone angle as the full angle in degrees and its feather
// in percent of it; the scene takes an intensity of 100 % as 0.5, fractions, and radians.
// Static values are scaled by 0.01 in single precision (0.009999999776482582), keys are divided
// by whole numbers, so both are checked against their own arithmetic.
#include <cmath>

#include "tests/e2e/optics_scene.h"

namespace {

using namespace optics_test;

constexpr double kPi = 3.14159265358979323846;
constexpr double kSinglePercent = 0.009999999776482582;

class LightExport : public SceneTest {
 protected:
  Json::Value ExportExample() {
    return ExportAndDump(std::string(QAE_EXAMPLES_DIR) + "/lights.json", "Lights", workDir_);
  }
};

TEST_F(LightExport, EveryKindOfLightBecomesASceneLight) {
  const Json::Value dump = ExportExample();
  EXPECT_EQ(ObjectsOfType(dump, "ObjectType_Light").size(), 4u);
  const struct {
    const char* name;
    int type;
  } kinds[] = {{"Spot", 1}, {"Bulb", 0}, {"Sun", 4}, {"Fill", 4}};
  for (const auto& kind : kinds) {
    const Json::Value* light = ObjectNamed(dump, kind.name);
    ASSERT_NE(light, nullptr) << kind.name;
    EXPECT_EQ(IntParam(*light, "LightParam_Type"), kind.type) << kind.name;
  }
  // A spot and a parallel light that look at their point of interest follow a target; a point
  // light has no direction, and the ambient one does not auto-orient.
  EXPECT_NE(ObjectNamed(dump, "Spot.Target"), nullptr);
  EXPECT_NE(ObjectNamed(dump, "Sun.Target"), nullptr);
  EXPECT_EQ(ObjectNamed(dump, "Bulb.Target"), nullptr);
  EXPECT_EQ(ObjectNamed(dump, "Fill.Target"), nullptr);
}

TEST_F(LightExport, SpotLightSettingsAndTheirTracks) {
  const Json::Value dump = ExportExample();
  const Json::Value* spot = ObjectNamed(dump, "Spot");
  ASSERT_NE(spot, nullptr);
  // Intensity from 100 % at 0 s to 200 % at 1 s.
  EXPECT_DOUBLE_EQ(FloatParam(*spot, "LightParam_Intensity"), 100.0 * kSinglePercent * 0.5);
  const Json::Value* intensity = Track(*spot, "Intensity");
  ASSERT_NE(intensity, nullptr);
  EXPECT_NEAR(KeyAt(*intensity, 0, 25), 0.5, 1e-12);
  EXPECT_NEAR(KeyAt(*intensity, 10, 25), 140.0 / 200.0, 1e-12);
  EXPECT_NEAR(KeyAt(*intensity, 25, 25), 1.0, 1e-12);

  EXPECT_EQ(IntParam(*spot, "LightParam_Shadow"), 1);
  EXPECT_DOUBLE_EQ(FloatParam(*spot, "LightParam_ShadowDensity"), 80.0 * kSinglePercent);
  EXPECT_EQ(Track(*spot, "Shadow Density"), nullptr);

  // Cone 90 degrees, feather 50 % at the start: outer pi/2, inner pi/4. The feather alone moves,
  // to 100 % at 1 s, where the inner angle closes.
  EXPECT_NEAR(FloatParam(*spot, "LightParam_OuterAngle"), kPi / 2.0, 1e-12);
  EXPECT_NEAR(FloatParam(*spot, "LightParam_InnerAngle"), kPi / 4.0, 1e-12);
  const Json::Value* inner = Track(*spot, "Inner Angle");
  ASSERT_NE(inner, nullptr);
  EXPECT_NEAR(KeyAt(*inner, 0, 25), kPi / 4.0, 1e-12);
  EXPECT_NEAR(KeyAt(*inner, 5, 25), (1.0 - 60.0 / 100.0) * kPi / 2.0, 1e-12);
  EXPECT_NEAR(KeyAt(*inner, 25, 25), 0.0, 1e-12);
  // The outer angle does not move: any keys it keeps say pi/2.
  if (const Json::Value* outer = Track(*spot, "Outer Angle")) {
    for (const Json::Value& key : (*outer)["curve"]["keys"]) EXPECT_NEAR(key["value"].asDouble(), kPi / 2.0, 1e-12);
  }

  // Smooth falloff from 100 with a distance of 500 growing to 1000 at 1 s: the outer radius is
  // where the light ends, start plus distance, also in every key.
  EXPECT_EQ(IntParam(*spot, "LightParam_Falloff"), 8);
  EXPECT_DOUBLE_EQ(FloatParam(*spot, "LightParam_InnerRadius"), 100.0);
  EXPECT_DOUBLE_EQ(FloatParam(*spot, "LightParam_OuterRadius"), 600.0);
  const Json::Value* outerRadius = Track(*spot, "Radius/Decay");
  ASSERT_NE(outerRadius, nullptr);
  EXPECT_NEAR(KeyAt(*outerRadius, 0, 25), 600.0, 1e-9);
  EXPECT_NEAR(KeyAt(*outerRadius, 5, 25), 100.0 + 600.0, 1e-9);
  EXPECT_NEAR(KeyAt(*outerRadius, 25, 25), 1100.0, 1e-9);
  EXPECT_EQ(Track(*spot, "Inner Radius"), nullptr);
}

TEST_F(LightExport, AnimatedColourGoesToThreeComponentTracks) {
  const Json::Value dump = ExportExample();
  const Json::Value* spot = ObjectNamed(dump, "Spot");
  ASSERT_NE(spot, nullptr);
  EXPECT_EQ(VectorParam(*spot, "LightParam_Color"), (std::vector<double>{1.0, 0.0, 0.0}));
  // Red to blue over 2 s (50 frames), in a straight line.
  const Json::Value* red = Track(*spot, "Color.R");
  const Json::Value* blue = Track(*spot, "Color.B");
  ASSERT_NE(red, nullptr);
  ASSERT_NE(blue, nullptr);
  EXPECT_NEAR(KeyAt(*red, 10, 25), 0.8, 1e-9);
  EXPECT_NEAR(KeyAt(*blue, 10, 25), 0.2, 1e-9);
  EXPECT_NEAR(KeyAt(*red, 40, 25), 0.2, 1e-9);
  // Its path is the green, red or blue component of the colour vector.
  EXPECT_EQ((*red)["path"][0][0].asInt(), 90000);
  EXPECT_EQ((*red)["path"][1][0].asInt(), 1000);
  EXPECT_EQ((*blue)["path"][1][0].asInt(), 1002);

  const Json::Value* bulb = ObjectNamed(dump, "Bulb");
  ASSERT_NE(bulb, nullptr);
  const Json::Value* green = Track(*bulb, "Color.G");
  ASSERT_NE(green, nullptr);
  EXPECT_NEAR(KeyAt(*green, 25, 25), 0.75, 1e-9);
}

TEST_F(LightExport, PointLightHasNoConeAndAClampedFalloff) {
  const Json::Value dump = ExportExample();
  const Json::Value* bulb = ObjectNamed(dump, "Bulb");
  ASSERT_NE(bulb, nullptr);
  EXPECT_EQ(Param(*bulb, "LightParam_OuterAngle"), nullptr);
  EXPECT_EQ(Param(*bulb, "LightParam_InnerAngle"), nullptr);
  EXPECT_DOUBLE_EQ(FloatParam(*bulb, "LightParam_Intensity"), 150.0 * kSinglePercent * 0.5);
  EXPECT_EQ(IntParam(*bulb, "LightParam_Falloff"), 10);
  EXPECT_DOUBLE_EQ(FloatParam(*bulb, "LightParam_InnerRadius"), 50.0);
  EXPECT_DOUBLE_EQ(FloatParam(*bulb, "LightParam_OuterRadius"), 350.0);
  // It moves: its place is baked like that of any layer.
  EXPECT_NE(Track(*bulb, "Position X"), nullptr);
}

TEST_F(LightExport, WithoutFalloffNoRadiusIsWritten) {
  const Json::Value dump = ExportExample();
  const Json::Value* sun = ObjectNamed(dump, "Sun");
  ASSERT_NE(sun, nullptr);
  EXPECT_EQ(IntParam(*sun, "LightParam_Falloff"), 0);
  EXPECT_EQ(Param(*sun, "LightParam_InnerRadius"), nullptr);
  EXPECT_EQ(Param(*sun, "LightParam_OuterRadius"), nullptr);
  // Its intensity, 40 % to 80 % over 2 s, keyed by division by 200.
  const Json::Value* intensity = Track(*sun, "Intensity");
  ASSERT_NE(intensity, nullptr);
  EXPECT_NEAR(KeyAt(*intensity, 25, 25), 60.0 / 200.0, 1e-12);
}

TEST_F(LightExport, FeatherEdgesAndKeysOfTheFalloffStartAlone) {
  // Feather 0: the inner angle equals the outer. Keys on the falloff's start alone give the
  // inner radius a track, but the outer radius only its static sum.
  const std::string text = R"({"format": "aehost-project", "version": 1, "path": "/p/optics.aep",
    "comps": [{"id": 1, "name": "Main", "width": 1000, "height": 1000, "frameRate": 10, "duration": 1,
      "layers": [{"id": 1, "name": "Hard", "type": "light",
        "light": {"type": "spot", "coneAngle": 60, "coneFeather": 0, "falloff": 2, "falloffDistance": 200,
                  "radius": {"keys": [{"time": 0, "value": 0}, {"time": 0.5, "value": 50}]}}}]}]})";
  const Json::Value dump = ExportAndDump(WriteProject(workDir_, text), "Main", workDir_);
  const Json::Value* light = ObjectNamed(dump, "Hard");
  ASSERT_NE(light, nullptr);
  EXPECT_NEAR(FloatParam(*light, "LightParam_OuterAngle"), kPi / 3.0, 1e-12);
  EXPECT_NEAR(FloatParam(*light, "LightParam_InnerAngle"), kPi / 3.0, 1e-12);
  EXPECT_EQ(Track(*light, "Inner Angle"), nullptr);
  EXPECT_DOUBLE_EQ(FloatParam(*light, "LightParam_InnerRadius"), 0.0);
  EXPECT_DOUBLE_EQ(FloatParam(*light, "LightParam_OuterRadius"), 200.0);
  const Json::Value* innerRadius = Track(*light, "Inner Radius");
  ASSERT_NE(innerRadius, nullptr);
  EXPECT_NEAR(KeyAt(*innerRadius, 3, 10), 30.0, 1e-9);
  EXPECT_EQ(Track(*light, "Radius/Decay"), nullptr);
}

// A spot light with an orientation of its own turns by its matrix, not towards a target.
TEST_F(LightExport, AnOrientedSpotLightHasNoTarget) {
  const std::string text = R"({"format": "aehost-project", "version": 1, "path": "/p/optics.aep",
    "comps": [{"id": 1, "name": "Main", "width": 1000, "height": 1000, "frameRate": 10, "duration": 1,
      "layers": [{"id": 1, "name": "Aimed", "type": "light", "light": {"type": "spot"}},
                 {"id": 2, "name": "Tilted", "type": "light", "light": {"type": "spot"},
                  "transform": {"orientation": [10, 0, 0]}}]}]})";
  const Json::Value dump = ExportAndDump(WriteProject(workDir_, text), "Main", workDir_);
  EXPECT_NE(ObjectNamed(dump, "Aimed.Target"), nullptr);
  EXPECT_EQ(ObjectNamed(dump, "Tilted.Target"), nullptr);
  const Json::Value* tilted = ObjectNamed(dump, "Tilted");
  ASSERT_NE(tilted, nullptr);
  EXPECT_EQ(TargetRef(*tilted), "");
}

}  // namespace
