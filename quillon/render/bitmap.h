// A picture of the engine: width x height pixels of one channel (grey or alpha)
// or three (red, green, blue), kept as floats whatever the depth the caller
// asked for, with an optional alpha bitmap of the same size beside it. The
// depth says how lines are handed out when the caller gives no format of its
// own, and what a saved file holds.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct Bitmap {
  int32_t width = 0;
  int32_t height = 0;
  int32_t channels = 3;      // 1 or 3
  int32_t channelBytes = 1;  // 1, 2 or 4 (float)
  std::vector<float> samples;  // row after row from the top, channel after channel
  std::unique_ptr<Bitmap> alpha;
  // What the last render could not find, one asset a line; empty when nothing was missing.
  std::string missingAssets;
};

namespace quillon::render {

// Bytes of one channel by the 0x30 bits of a depth or line format: 1, 2 or 4.
int32_t ChannelBytesOfFormat(int32_t format);
// Channels of a line format or depth: 1 for grey and alpha, else 3.
int32_t ChannelsOfFormat(int32_t format);

// Sizes a bitmap: false (and the bitmap left as it was) for a size below 1,
// or more samples than memory can hold.
bool ResizeBitmap(Bitmap& bitmap, int32_t width, int32_t height, int32_t channels, int32_t channelBytes);

// The pixel (x, y) of bitmap's samples; channel c of it is [c].
inline float* PixelAt(Bitmap& bitmap, int32_t x, int32_t y) {
  return bitmap.samples.data() + (static_cast<size_t>(y) * static_cast<size_t>(bitmap.width) + static_cast<size_t>(x)) *
                                     static_cast<size_t>(bitmap.channels);
}
inline const float* PixelAt(const Bitmap& bitmap, int32_t x, int32_t y) {
  return PixelAt(const_cast<Bitmap&>(bitmap), x, y);
}

// A render writes the samples of its bitmap while callers read lines of it:
// those samples are read and written as one relaxed atomic access each, so
// that a reader sees every sample either before or after its write.
inline float LoadShared(const float& sample) {
  return std::atomic_ref<float>(const_cast<float&>(sample)).load(std::memory_order_relaxed);
}
inline void StoreShared(float& sample, float value) {
  std::atomic_ref<float>(sample).store(value, std::memory_order_relaxed);
}

// Converts count pixels of line y from x to bytes in format, one every
// pixelBytes bytes. False (nothing written) when the range is outside the bitmap.
bool ReadLine(const Bitmap& bitmap, int32_t x, int32_t y, int32_t count, uint8_t* buffer, int32_t pixelBytes,
              int32_t format);
// The reverse: count pixels in format from buffer into line y from x.
bool WriteLine(Bitmap& bitmap, int32_t x, int32_t y, int32_t count, const uint8_t* buffer, int32_t pixelBytes,
               int32_t format);

}  // namespace quillon::render
