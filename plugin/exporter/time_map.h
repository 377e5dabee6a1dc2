#pragma once
// The list of times at which something is read from After Effects, each paired with the time
// its key will have in the document. The document counts whole frames of its own rounded rate
// while After Effects is asked at multiples of its own frame duration, so at 29.97 frames per
// second frame 300 stands at 10 s in the document and at about 10.01 s in After Effects.
#include <map>

#include "plugin/engine/engine_values.h"
#include "sdk/ae_types.h"

// Ordered by value; equal fractions (times are kept reduced) are one entry.
using TimeMap = std::map<BaseTime, A_Time>;

// numerator / denominator as doubles, 0 when the denominator is 0.
double TimeRatio(const BaseTime& t);
double TimeRatio(const A_Time& t);

// Frame `frame` of a composition of `fps` whole frames a second and the given frame duration.
// A second insertion of the same document time replaces the host time.
void InsertFrame(TimeMap* times, int32_t frame, int32_t fps, const A_Time& frameDuration);

// A keyframe time of After Effects, which becomes the document time as it stands.
void InsertHostTime(TimeMap* times, const A_Time& t);
