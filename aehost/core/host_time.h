// Times and ratios between the suites (A_Time, A_Ratio) and the model (seconds).
#pragma once

#include "aehost/model/project.h"
#include "sdk/ae_types.h"

namespace aehost {

// The scale of times the host gives for things of a composition: one frame
// is 100 units, so fractional rates such as 29.97 stay exact.
A_u_long CompTimeScale(const Item& comp);
// The scale of times with no composition (marker durations, footage): exact
// for frames of 24, 25, 30, 50, 60 and 29.97 frames per second.
constexpr A_u_long kDefaultTimeScale = 30000;

// Times beyond what a 32-bit count carries stop at its ends.
A_Time ToATime(double seconds, A_u_long scale);
// False when the scale is 0.
bool ToSeconds(const A_Time& time, double* seconds);

// Over a million; values beyond what 32 bits carry stop at its ends.
A_Ratio ToRatio(double value);
// False when the denominator is 0.
bool FromRatio(const A_Ratio& ratio, double* value);

}  // namespace aehost
