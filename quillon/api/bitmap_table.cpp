// Table Bm: bitmaps that renders draw into and that callers read line by line
// or save, and pictures that callers send in.
#include <new>

#include "files/replace_file.h"
#include "quillon/api/tables.h"
#include "quillon/model/memory_file.h"
#include "quillon/model/value.h"
#include "quillon/render/bitmap.h"
#include "quillon/render/png_file.h"

namespace quillon {
namespace {

using render::ChannelBytesOfFormat;
using render::ChannelsOfFormat;

Bitmap* AllocBitmap() { return new (std::nothrow) Bitmap(); }

void FreeBitmap(Bitmap* bitmap) { delete bitmap; }

int32_t GetBitmapWidth(const Bitmap* bitmap) { return bitmap ? bitmap->width : 0; }
int32_t GetBitmapHeight(const Bitmap* bitmap) { return bitmap ? bitmap->height : 0; }

// A bitmap of 32-bit floats is written with 16 bits a channel, the most a PNG holds.
int32_t SaveBitmap(const Bitmap* bitmap, const Filename* file, int32_t kind, const ParamContainer*, int32_t flags) {
  if (!bitmap || !file || kind != kBitmapSavePng) return 0;
  const int32_t bits = (flags & (kBitmapSave16 | kBitmapSave32)) ? 16 : 8;
  const Bitmap* alpha = (flags & kBitmapSaveAlpha) ? bitmap->alpha.get() : nullptr;
  std::string bytes;
  std::string error;
  if (!render::EncodePng(*bitmap, alpha, bits, &bytes, &error)) return 0;
  // A memory file (SetMemoryWrite) takes the bytes; any other path is replaced whole.
  if (const std::shared_ptr<MemoryBuffer> memory = MemoryOf(*file)) {
    memory->bytes.assign(bytes.begin(), bytes.end());
    return 1;
  }
  return qae::files::ReplaceFileContent(PathOf(*file), bytes, &error) ? 1 : 0;
}

// The straight flag is accepted for every caller: coverage is whole pixels, so
// straight and premultiplied colours are the same picture.
Bitmap* AddAlphaChannel(Bitmap* bitmap, int32_t, bool) {
  if (!bitmap || bitmap->width < 1) return nullptr;
  if (bitmap->alpha) return bitmap->alpha.get();
  auto alpha = std::unique_ptr<Bitmap>(new (std::nothrow) Bitmap());
  if (!alpha || !render::ResizeBitmap(*alpha, bitmap->width, bitmap->height, 1, bitmap->channelBytes)) return nullptr;
  bitmap->alpha = std::move(alpha);
  return bitmap->alpha.get();
}

Bitmap* GetAlphaChannel(const Bitmap* bitmap) { return bitmap ? bitmap->alpha.get() : nullptr; }

Bitmap* AllocBitmapSized(int32_t width, int32_t height, int32_t depth) {
  auto bitmap = std::unique_ptr<Bitmap>(new (std::nothrow) Bitmap());
  if (!bitmap ||
      !render::ResizeBitmap(*bitmap, width, height, ChannelsOfFormat(depth), ChannelBytesOfFormat(depth)))
    return nullptr;
  return bitmap.release();
}

Bitmap* GetLayerBitmap(Bitmap*, int32_t, int32_t) { return nullptr; }

void ReadBitmapLine(const Bitmap* bitmap, int32_t x, int32_t y, int32_t count, void* buffer, int32_t pixelBytes,
                    int32_t format, int32_t, int32_t) {
  if (bitmap) render::ReadLine(*bitmap, x, y, count, static_cast<uint8_t*>(buffer), pixelBytes, format);
}

bool GetBitmapData(const Bitmap* bitmap, DataValue* out, int32_t id, const DataValue* fallback) {
  if (!out) return false;
  const bool found = bitmap && id == kBitmapDataMissingAssets && !bitmap->missingAssets.empty();
  if (found) {
    SetText(*out, FromUtf8(bitmap->missingAssets));
  } else if (fallback) {
    CopyData(*out, *fallback);
  } else {
    FreeData(*out);
  }
  return found;
}

// Bits a pixel name the channels and their size together.
int32_t InitBitmap(Bitmap* bitmap, int32_t width, int32_t height, int32_t bits, int32_t) {
  if (!bitmap) return 0;
  int32_t channels = 0;
  int32_t channelBytes = 0;
  switch (bits) {
    case 8: channels = 1, channelBytes = 1; break;
    case 16: channels = 1, channelBytes = 2; break;
    case 32: channels = 1, channelBytes = 4; break;
    case 24: channels = 3, channelBytes = 1; break;
    case 48: channels = 3, channelBytes = 2; break;
    case 96: channels = 3, channelBytes = 4; break;
    default: return 0;
  }
  if (!render::ResizeBitmap(*bitmap, width, height, channels, channelBytes)) return 0;
  bitmap->alpha.reset();
  return 1;
}

bool WriteBitmapLine(Bitmap* bitmap, int32_t x, int32_t y, int32_t count, const void* buffer, int32_t pixelBytes,
                     int32_t format, int32_t) {
  return bitmap && render::WriteLine(*bitmap, x, y, count, static_cast<const uint8_t*>(buffer), pixelBytes, format);
}

}  // namespace

const ORYOS_Bm& BmTable() {
  static const ORYOS_Bm table{.AllocBitmap = AllocBitmap,
                              .FreeBitmap = FreeBitmap,
                              .GetBitmapWidth = GetBitmapWidth,
                              .GetBitmapHeight = GetBitmapHeight,
                              .SaveBitmap = SaveBitmap,
                              .AddAlphaChannel = AddAlphaChannel,
                              .GetAlphaChannel = GetAlphaChannel,
                              .AllocBitmapSized = AllocBitmapSized,
                              .GetLayerBitmap = GetLayerBitmap,
                              .ReadBitmapLine = ReadBitmapLine,
                              .GetBitmapData = GetBitmapData,
                              .InitBitmap = InitBitmap,
                              .WriteBitmapLine = WriteBitmapLine};
  return table;
}

}  // namespace quillon
