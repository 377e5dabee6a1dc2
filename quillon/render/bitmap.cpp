// Sizing a bitmap and the conversions between its float samples and the line
// formats of callers: 8 and 16 bit integers scaled to 255 and 65535 and
// rounded to the nearest, 32 bit floats as they are.
#include "quillon/render/bitmap.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

namespace quillon::render {
namespace {

constexpr int32_t kChannelSizeBits = 0x30;
constexpr int32_t kChannelSize16 = 0x10;
constexpr int32_t kChannelSize32 = 0x20;
constexpr int32_t kLayoutBits = 0x0E;
constexpr int32_t kLayoutOne = 0x02;
constexpr int32_t kLayoutOneAgain = 0x08;
// A bitmap holds at most this many samples (1 GiB of floats).
constexpr size_t kMaxSamples = size_t{1} << 28;

float Clamped(float value) { return std::clamp(value, 0.0f, 1.0f); }

void StoreSample(float value, uint8_t* out, int32_t channelBytes) {
  if (channelBytes == 4) {
    std::memcpy(out, &value, sizeof(value));
  } else if (channelBytes == 2) {
    const auto whole = static_cast<uint16_t>(std::lround(Clamped(value) * 65535.0f));
    std::memcpy(out, &whole, sizeof(whole));
  } else {
    *out = static_cast<uint8_t>(std::lround(Clamped(value) * 255.0f));
  }
}

float LoadSample(const uint8_t* in, int32_t channelBytes) {
  if (channelBytes == 4) {
    float value = 0.0f;
    std::memcpy(&value, in, sizeof(value));
    return value;
  }
  if (channelBytes == 2) {
    uint16_t whole = 0;
    std::memcpy(&whole, in, sizeof(whole));
    return static_cast<float>(whole) / 65535.0f;
  }
  return static_cast<float>(*in) / 255.0f;
}

bool InRange(const Bitmap& bitmap, int32_t x, int32_t y, int32_t count) {
  return x >= 0 && y >= 0 && count >= 0 && y < bitmap.height && count <= bitmap.width - x;
}

// The bitmap's channel that a line channel reads: a grey line of a colour
// bitmap reads the mean of its colours; a colour line of a grey one its grey.
float ChannelValue(const float* pixel, int32_t bitmapChannels, int32_t lineChannels, int32_t channel) {
  if (bitmapChannels == lineChannels) return pixel[channel];
  if (bitmapChannels == 1) return pixel[0];
  return (pixel[0] + pixel[1] + pixel[2]) / 3.0f;
}

}  // namespace

int32_t ChannelBytesOfFormat(int32_t format) {
  switch (format & kChannelSizeBits) {
    case kChannelSize16:
      return 2;
    case kChannelSize32:
      return 4;
    default:
      return 1;
  }
}

int32_t ChannelsOfFormat(int32_t format) {
  const int32_t layout = format & kLayoutBits;
  return layout == kLayoutOne || layout == kLayoutOneAgain ? 1 : 3;
}

bool ResizeBitmap(Bitmap& bitmap, int32_t width, int32_t height, int32_t channels, int32_t channelBytes) {
  if (width < 1 || height < 1) return false;
  const size_t samples = static_cast<size_t>(width) * static_cast<size_t>(height) * static_cast<size_t>(channels);
  if (samples > kMaxSamples) return false;
  try {
    bitmap.samples.assign(samples, 0.0f);
  } catch (const std::bad_alloc&) {
    return false;
  }
  bitmap.width = width;
  bitmap.height = height;
  bitmap.channels = channels;
  bitmap.channelBytes = channelBytes;
  return true;
}

bool ReadLine(const Bitmap& bitmap, int32_t x, int32_t y, int32_t count, uint8_t* buffer, int32_t pixelBytes,
              int32_t format) {
  if (!buffer || !InRange(bitmap, x, y, count)) return false;
  const int32_t channels = ChannelsOfFormat(format);
  const int32_t channelBytes = ChannelBytesOfFormat(format);
  for (int32_t i = 0; i < count; ++i) {
    const float* shared = PixelAt(bitmap, x + i, y);
    float pixel[3];
    for (int32_t c = 0; c < bitmap.channels; ++c) pixel[c] = LoadShared(shared[c]);
    uint8_t* out = buffer + static_cast<ptrdiff_t>(i) * pixelBytes;
    for (int32_t c = 0; c < channels; ++c)
      StoreSample(ChannelValue(pixel, bitmap.channels, channels, c), out + c * channelBytes, channelBytes);
  }
  return true;
}

bool WriteLine(Bitmap& bitmap, int32_t x, int32_t y, int32_t count, const uint8_t* buffer, int32_t pixelBytes,
               int32_t format) {
  if (!buffer || !InRange(bitmap, x, y, count)) return false;
  const int32_t channels = ChannelsOfFormat(format);
  const int32_t channelBytes = ChannelBytesOfFormat(format);
  for (int32_t i = 0; i < count; ++i) {
    const uint8_t* in = buffer + static_cast<ptrdiff_t>(i) * pixelBytes;
    float line[3];
    for (int32_t c = 0; c < channels; ++c) line[c] = LoadSample(in + c * channelBytes, channelBytes);
    float* pixel = PixelAt(bitmap, x + i, y);
    for (int32_t c = 0; c < bitmap.channels; ++c) pixel[c] = ChannelValue(line, channels, bitmap.channels, c);
  }
  return true;
}

}  // namespace quillon::render
