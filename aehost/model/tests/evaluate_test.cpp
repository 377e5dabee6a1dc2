// Stream values of layers: defaults, legality, layer time and expressions.
#include <gtest/gtest.h>

#include "aehost/model/evaluate.h"
#include "model_fixture.h"

namespace aehost {
namespace {

// Removes any evaluator a test installed, so that tests stay independent.
struct EvaluatorGuard {
  ~EvaluatorGuard() { SetExpressionEvaluator(nullptr); }
};

TEST(StreamDefaults, NewLayersSitAtTheMiddleOfTheComposition) {
  SmallProject p;
  Layer& solid = p.Solid();
  const Value anchor = EvaluateStream(p.project, *p.comp, solid, LayerStream::AnchorPoint, 0.0);
  const Value position = EvaluateStream(p.project, *p.comp, solid, LayerStream::Position, 0.0);
  EXPECT_EQ(anchor, V(20, 10, 0));
  EXPECT_EQ(position, V(100, 50, 0));
  EXPECT_EQ(EvaluateStream(p.project, *p.comp, solid, LayerStream::Scale, 0.0), V(100, 100, 100));
  EXPECT_EQ(EvaluateStream(p.project, *p.comp, solid, LayerStream::Opacity, 0.0)[0], 100.0);
}

TEST(StreamDefaults, CamerasStandAtTheDefaultDistance) {
  SmallProject p;
  Layer& camera = AddCameraLayer(p.project, *p.comp, "Camera", 100, 50);
  // 50 mm on 36 mm film: zoom = 200 * 50 / 36
  const double zoom = 200.0 * 50.0 / 36.0;
  EXPECT_DOUBLE_EQ(EvaluateStream(p.project, *p.comp, camera, LayerStream::Zoom, 0.0)[0], zoom);
  EXPECT_EQ(EvaluateStream(p.project, *p.comp, camera, LayerStream::Position, 0.0),
            V(100, 50, -zoom));
}

TEST(StreamLegality, DependsOnTheKindOfLayer) {
  SmallProject p;
  Layer& solid = p.Solid();
  Layer& camera = AddCameraLayer(p.project, *p.comp, "Camera", 100, 50);
  Layer& light = AddLightLayer(p.project, *p.comp, "Light", 100, 50);
  EXPECT_TRUE(IsStreamLegal(solid, LayerStream::Scale));
  EXPECT_FALSE(IsStreamLegal(solid, LayerStream::Zoom));
  EXPECT_FALSE(IsStreamLegal(camera, LayerStream::Scale));
  EXPECT_TRUE(IsStreamLegal(camera, LayerStream::AnchorPoint));
  camera.switches.autoOrient = AutoOrient::Off;
  EXPECT_FALSE(IsStreamLegal(camera, LayerStream::AnchorPoint));
  EXPECT_TRUE(IsStreamLegal(light, LayerStream::ConeAngle));
  light.light.type = LightType::Point;
  EXPECT_FALSE(IsStreamLegal(light, LayerStream::ConeAngle));
  EXPECT_FALSE(IsStreamLegal(light, LayerStream::AnchorPoint));
  EXPECT_TRUE(IsStreamLegal(light, LayerStream::FalloffDistance));
  light.light.type = LightType::Ambient;
  EXPECT_FALSE(IsStreamLegal(light, LayerStream::Position));
  EXPECT_TRUE(IsStreamLegal(light, LayerStream::Intensity));
}

TEST(StreamTime, KeysStandInLayerTime) {
  SmallProject p;
  Layer& solid = p.Solid();
  solid.startTime = 1.0;
  solid.stretch = 2.0;
  Stream& opacity = EnsureStream(p.project, *p.comp, solid, LayerStream::Opacity);
  AddKeyframe(opacity, 0.0, V(0));
  AddKeyframe(opacity, 1.0, V(10));
  // Composition time 2 is layer time (2 - 1) / 2 = 0.5.
  EXPECT_DOUBLE_EQ(EvaluateStream(p.project, *p.comp, solid, LayerStream::Opacity, 2.0)[0], 5.0);
}

TEST(StreamExpressions, RunThroughTheInstalledEvaluator) {
  EvaluatorGuard guard;
  SmallProject p;
  Layer& solid = p.Solid();
  Stream& opacity = EnsureStream(p.project, *p.comp, solid, LayerStream::Opacity);
  opacity.value = V(40);
  opacity.expression = "value / 2 + time";
  SetExpressionEvaluator([&](const ExpressionCall& call, Value* out, std::string*) {
    EXPECT_EQ(call.layer, &solid);
    EXPECT_EQ(call.streamId, LayerStream::Opacity);
    *out = V(call.value[0] / 2 + call.time);
    return true;
  });
  EXPECT_DOUBLE_EQ(EvaluateStream(p.project, *p.comp, solid, LayerStream::Opacity, 3.0)[0], 23.0);
  EXPECT_DOUBLE_EQ(
      EvaluateStream(p.project, *p.comp, solid, LayerStream::Opacity, 3.0, true)[0], 40.0);
  opacity.expressionEnabled = false;
  EXPECT_DOUBLE_EQ(EvaluateStream(p.project, *p.comp, solid, LayerStream::Opacity, 3.0)[0], 40.0);
}

TEST(StreamExpressions, AFailureKeepsTheValueAndSaysWhy) {
  EvaluatorGuard guard;
  SmallProject p;
  Layer& solid = p.Solid();
  Stream& opacity = EnsureStream(p.project, *p.comp, solid, LayerStream::Opacity);
  opacity.value = V(40);
  opacity.expression = "nonsense(";
  std::string error;
  EXPECT_DOUBLE_EQ(
      EvaluateStream(p.project, *p.comp, solid, LayerStream::Opacity, 0.0, false, &error)[0],
      40.0);
  EXPECT_EQ(error, "no expression engine is installed");
  SetExpressionEvaluator([](const ExpressionCall&, Value*, std::string* why) {
    *why = "SyntaxError";
    return false;
  });
  EXPECT_DOUBLE_EQ(
      EvaluateStream(p.project, *p.comp, solid, LayerStream::Opacity, 0.0, false, &error)[0],
      40.0);
  EXPECT_EQ(error, "SyntaxError");
}

TEST(StreamTimeVarying, KeysOrAnExpression) {
  Stream stream;
  EXPECT_FALSE(IsTimeVarying(stream));
  AddKeyframe(stream, 0.0, V(1));
  EXPECT_FALSE(IsTimeVarying(stream));
  AddKeyframe(stream, 1.0, V(2));
  EXPECT_TRUE(IsTimeVarying(stream));
  Stream expression;
  expression.expression = "time";
  EXPECT_TRUE(IsTimeVarying(expression));
}

}  // namespace
}  // namespace aehost
