#include "plugin/exporter/light_mapping.h"

namespace {
constexpr double kRadiansPerDegree = 0.017453292519943295;
constexpr int32_t kSceneSpot = 1;
constexpr int32_t kScenePoint = 0;
constexpr int32_t kSceneDistant = 4;
constexpr int32_t kFalloffSmooth = 2;
constexpr int32_t kFalloffInverseSquare = 3;
constexpr int32_t kSceneFalloffNone = 0;
constexpr int32_t kSceneFalloffSmooth = 8;
constexpr int32_t kSceneFalloffInverseSquare = 10;
}  // namespace

int32_t SceneLightType(AEGP_LightType kind) {
  if (kind == AEGP_LightType_SPOT) return kSceneSpot;
  if (kind == AEGP_LightType_POINT) return kScenePoint;
  return kSceneDistant;
}

int32_t SceneFalloff(int32_t falloffKind) {
  if (falloffKind == kFalloffSmooth) return kSceneFalloffSmooth;
  if (falloffKind == kFalloffInverseSquare) return kSceneFalloffInverseSquare;
  return kSceneFalloffNone;
}

double OuterConeAngle(double angleDegrees) { return angleDegrees * kRadiansPerDegree; }

double InnerConeAngle(double angleDegrees, double featherPercent) {
  return (1.0 - featherPercent / 100.0) * angleDegrees * kRadiansPerDegree;
}
