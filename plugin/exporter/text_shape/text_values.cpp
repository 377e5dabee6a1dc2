#include "plugin/exporter/text_shape/text_values.h"

double OutlineWidth(double strokeWidth) { return strokeWidth * kTwoThirdsSingle; }

double StrokeDepthOffset(double strokeWidth) { return strokeWidth * kTwoThirdsSingle + 0.5; }

double SceneTracking(int32_t tracking) { return static_cast<double>(static_cast<float>(tracking) * 0.075f); }

std::optional<int32_t> SceneAlignment(int32_t justification) {
  switch (justification) {
    case 7213:  // left
    case 7216:  // full, last line left
      return 0;
    case 7214:  // right
    case 7217:  // full, last line right
      return 2;
    case 7215:  // centre
    case 7218:  // full, last line centre
    case 7219:  // full, last line full
      return 1;
    default: return std::nullopt;
  }
}
