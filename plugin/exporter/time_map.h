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

// Frame `frame` of a composition of `fps` whole frames a second and the given frame duration,
// which stands at document frame `firstFrame` + `frame`: a composition whose display starts at
// frame 300 has its frame 0 at the document's first frame, 300, where the document's range
// begins. A second insertion of the same document time replaces the host time.
void InsertFrame(TimeMap* times, int32_t frame, int32_t firstFrame, int32_t fps, const A_Time& frameDuration);

// A keyframe time of After Effects, which becomes the document time as it stands.
void InsertHostTime(TimeMap* times, const A_Time& t);

// Frames `first` to `last`, both included; empty when `last` is below `first`.
struct FrameSpan {
  int32_t first = 0;
  int32_t last = -1;
};

// The frames at which After Effects shows a layer: those whose time lies at or after the in
// point and before the out point (in + duration), frames being multiples of `frameDuration`.
// Worked exactly on the host's times, so that an in point between two frames (1 s at 29.97
// frames per second lies between frames 29 and 30) starts at the next frame, and the frame at
// the out point, which shows the layer no more, is left out.
FrameSpan LayerFrameSpan(const A_Time& in, const A_Time& duration, const A_Time& frameDuration);

// The frames that show the animation between two key times `low` and `high` (seconds of After
// Effects): from the last frame at or before `low` to the first at or after `high`. A key
// between two frames thus brings in the frame after it, which is the first to show the key's
// value, and the frame before it, which still shows the value before. Key times within a
// millionth of a frame of a frame count as on it. Empty when `low` is above `high`.
FrameSpan FramesAroundKeys(double low, double high, const A_Time& frameDuration);
