#include "plugin/session/frame_formats.h"

#include "plugin/engine/engine_ops.h"

FrameFormats FrameFormatsFor(int32_t bytesPerChannel) {
  switch (bytesPerChannel) {
    case 2: return {kBitmapDepth16, kLineFormatRgb16, kLineFormatAlpha16};
    case 4: return {kBitmapDepth32, kLineFormatRgb32, kLineFormatAlpha32};
    default: return {kBitmapDepth8, kLineFormatRgb8, kLineFormatAlpha8};
  }
}
