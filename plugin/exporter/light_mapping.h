#pragma once
// How the kinds and settings of After Effects lights read in scene terms. After Effects gives
// percentages and degrees; the scene takes fractions and radians.
#include <cstdint>

#include "sdk/ae_enums.h"

// 0.01 rounded to single precision: the static values of percentages are scaled by this, their
// keys are divided by a whole 100, so the two differ in the last digits.
constexpr double kPercentScale = 0.009999999776482582;
// An intensity of 100 % is half the scene's full light.
constexpr double kIntensityScale = kPercentScale * 0.5;
// Divisors of the keys of intensity and shadow darkness.
constexpr double kIntensityKeyDivisor = 200.0;
constexpr double kShadowKeyDivisor = 100.0;

// The scene's light type: spot 1, point 0, and 4 for parallel, ambient and anything else.
int32_t SceneLightType(AEGP_LightType kind);


// The scene's falloff: 8 for smooth (2), 10 for inverse square clamped (3), else 0 (none).
int32_t SceneFalloff(int32_t falloffKind);

// The cone: After Effects' cone angle is the full angle, like the scene's outer angle; the
// feather in percent narrows the inner angle from the outer one down to nothing.
double OuterConeAngle(double angleDegrees);
double InnerConeAngle(double angleDegrees, double featherPercent);
