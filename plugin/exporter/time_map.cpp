#include "plugin/exporter/time_map.h"

#include <cmath>

double TimeRatio(const BaseTime& t) { return t.denominator == 0.0 ? 0.0 : t.numerator / t.denominator; }

double TimeRatio(const A_Time& t) {
  return t.scale == 0 ? 0.0 : static_cast<double>(t.value) / static_cast<double>(t.scale);
}

void InsertFrame(TimeMap* times, int32_t frame, int32_t firstFrame, int32_t fps, const A_Time& frameDuration) {
  A_Time hostTime;
  hostTime.value = frame * frameDuration.value;
  hostTime.scale = frameDuration.scale;
  // Frames mostly arrive in order; the hint makes that a constant step.
  times->insert_or_assign(times->end(), BaseTime(firstFrame + frame, fps), hostTime);
}

void InsertHostTime(TimeMap* times, const A_Time& t) {
  times->insert_or_assign(FromAeTime(t.value, t.scale), t);
}

namespace {

// Products of three host numbers (32 bits each) need 96 bits.
using Wide = __int128;

// The smallest whole number not below n / d, for d > 0.
Wide CeilDiv(Wide n, Wide d) { return n / d + (n % d > 0 ? 1 : 0); }

}  // namespace

FrameSpan LayerFrameSpan(const A_Time& in, const A_Time& duration, const A_Time& frameDuration) {
  if (frameDuration.value <= 0 || frameDuration.scale == 0 || in.scale == 0 || duration.scale == 0) return {};
  // Frame f lies at f * fv / fs; in = a / b, out = (a e + c b) / (b e) with duration c / e.
  const Wide fv = frameDuration.value, fs = frameDuration.scale;
  const Wide a = in.value, b = in.scale, c = duration.value, e = duration.scale;
  const Wide first = CeilDiv(a * fs, b * fv);
  const Wide last = CeilDiv((a * e + c * b) * fs, b * e * fv) - 1;
  return FrameSpan{static_cast<int32_t>(first), static_cast<int32_t>(last)};
}

FrameSpan FramesAroundKeys(double low, double high, const A_Time& frameDuration) {
  const double frame = TimeRatio(frameDuration);
  if (low > high || frame <= 0.0) return {};
  constexpr double kOnFrame = 1e-6;
  return FrameSpan{static_cast<int32_t>(std::floor(low / frame + kOnFrame)),
                   static_cast<int32_t>(std::ceil(high / frame - kOnFrame))};
}
