#pragma once
// Helpers that write the frame range and the output size into a render settings
// container; they need no session and run on any container of render settings.
#include <cstdint>

#include "plugin/engine/engine_ops.h"
#include "plugin/engine/engine_values.h"

namespace quillon {

// Render setting that accompanies the frame range.
constexpr int32_t kRenderSettingFrameRangeValue = 5019;

void SetFrameRange(ParamContainer* settings, int32_t sequence, double rate, const BaseTime& from, const BaseTime& to,
                   int32_t value);

// A width or height not above 0 is written as 1, so that the frame always has a pixel.
void SetOutputSize(ParamContainer* settings, double width, double height, double pixelAspect, double filmAspect);

}  // namespace quillon
