#include "plugin/exporter/time_map.h"

double TimeRatio(const BaseTime& t) { return t.denominator == 0.0 ? 0.0 : t.numerator / t.denominator; }

double TimeRatio(const A_Time& t) {
  return t.scale == 0 ? 0.0 : static_cast<double>(t.value) / static_cast<double>(t.scale);
}

void InsertFrame(TimeMap* times, int32_t frame, int32_t fps, const A_Time& frameDuration) {
  A_Time hostTime;
  hostTime.value = frame * frameDuration.value;
  hostTime.scale = frameDuration.scale;
  // Frames mostly arrive in order; the hint makes that a constant step.
  times->insert_or_assign(times->end(), BaseTime(frame, fps), hostTime);
}

void InsertHostTime(TimeMap* times, const A_Time& t) {
  times->insert_or_assign(FromAeTime(t.value, t.scale), t);
}
