#pragma once
// How the session asks the engine for pixels of a depth: four channels to a pixel (the
// three colours, then alpha), `bytesPerChannel` bytes to a channel.
#include <cstddef>
#include <cstdint>

struct FrameFormats {
  int32_t bitmapDepth;   // for AllocBitmapSized
  int32_t colourFormat;  // for ReadBitmapLine of the colours
  int32_t alphaFormat;   // for ReadBitmapLine of the alpha channel
};

// The formats of 1, 2 or 4 bytes a channel; any other number reads as 1.
FrameFormats FrameFormatsFor(int32_t bytesPerChannel);

// Bytes of a pixel and of a line, `width` pixels.
inline std::size_t PixelBytes(int32_t bytesPerChannel) { return static_cast<std::size_t>(bytesPerChannel) * 4; }
inline std::size_t LineBytes(int32_t width, int32_t bytesPerChannel) {
  return static_cast<std::size_t>(width) * PixelBytes(bytesPerChannel);
}
