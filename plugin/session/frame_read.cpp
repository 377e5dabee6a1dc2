#include "plugin/session/frame_read.h"

#include <cstring>

#include "plugin/engine/engine_tables.h"
#include "plugin/session/frame_formats.h"

namespace quillon {

namespace {

struct ReadRequest {
  bool layer = false;  // from the layer (a, b) of the picture
  int32_t a = 0;
  int32_t b = 0;
  bool changes = false;   // runs that differ instead of whole lines
  bool copyRuns = false;  // changes: each run goes into previousFrame after its call
};

// Counts a read in for the life of the scope; the last read out destroys the contents of
// a render that was closed meanwhile.
class ReaderScope {
 public:
  explicit ReaderScope(RenderThread& render) : render_(render) {
    SpinLockScope lock(render_.stateLock);
    ++render_.readers;
  }
  ~ReaderScope() {
    SpinLockScope lock(render_.stateLock);
    if (--render_.readers == 0 && render_.closePending) {
      render_.DestroyContents();
      render_.closePending = false;
    }
  }
  ReaderScope(const ReaderScope&) = delete;
  ReaderScope& operator=(const ReaderScope&) = delete;

 private:
  RenderThread& render_;
};

bool BuffersFitBitmap(const RenderThread& render) {
  if (!render.lineBuffer || !render.previousFrame || !render.bitmap) return false;
  const int32_t width = t_ORYOS_Bm->GetBitmapWidth(render.bitmap);
  const int32_t height = t_ORYOS_Bm->GetBitmapHeight(render.bitmap);
  return width != 0 && height != 0 && width == render.width && height == render.height;
}

// Reads line y of the colours and, when there is one, of the alpha channel into lineBuffer.
void ReadLine(RenderThread& render, const Bitmap* source, const Bitmap* alpha, int32_t y) {
  const FrameFormats formats = FrameFormatsFor(render.bytesPerChannel);
  const auto pixelBytes = static_cast<int32_t>(PixelBytes(render.bytesPerChannel));
  t_ORYOS_Bm->ReadBitmapLine(source, 0, y, render.width, render.lineBuffer, pixelBytes, formats.colourFormat, 1, 0);
  if (alpha) {
    t_ORYOS_Bm->ReadBitmapLine(alpha, 0, y, render.width, render.lineBuffer + render.bytesPerChannel * 3, pixelBytes,
                               formats.alphaFormat, 0, 0);
  }
}

void HandOutChanges(RenderThread& render, const ReadRequest& request, int32_t y, uint8_t* previous,
                    FrameLineCallback callback, void* refcon) {
  const std::size_t pixelBytes = PixelBytes(render.bytesPerChannel);
  int32_t x = 0;
  int32_t count = 0;
  while (NextChangedRun(render.lineBuffer, previous, render.width, pixelBytes, &x, &count)) {
    const std::size_t offset = static_cast<std::size_t>(x) * pixelBytes;
    callback(refcon, x, y, count, render.bytesPerChannel, render.lineBuffer + offset);
    if (request.copyRuns)
      std::memcpy(previous + offset, render.lineBuffer + offset, static_cast<std::size_t>(count) * pixelBytes);
    x += count;
  }
}

bool ReadPixels(RenderThread& render, const ReadRequest& request, FrameLineCallback callback, void* refcon,
                bool* running) {
  ReaderScope reader(render);
  if (!BuffersFitBitmap(render)) return false;
  if (running) *running = render.IsRunning();
  Bitmap* source = render.bitmap;
  Bitmap* alpha = nullptr;
  if (request.layer) {
    if (Bitmap* layer = t_ORYOS_Bm->GetLayerBitmap(render.bitmap, request.a, request.b)) source = layer;
    alpha = t_ORYOS_Bm->GetAlphaChannel(source);
    if (!alpha) alpha = t_ORYOS_Bm->GetAlphaChannel(render.bitmap);
  } else {
    alpha = t_ORYOS_Bm->GetAlphaChannel(source);
  }
  const std::size_t lineBytes = LineBytes(render.width, render.bytesPerChannel);
  for (int32_t y = 0; y < render.height; ++y) {
    ReadLine(render, source, alpha, y);
    uint8_t* previous = render.previousFrame + static_cast<std::size_t>(y) * lineBytes;
    if (request.changes) {
      HandOutChanges(render, request, y, previous, callback, refcon);
    } else {
      std::memcpy(previous, render.lineBuffer, lineBytes);
      callback(refcon, 0, y, render.width, render.bytesPerChannel, render.lineBuffer);
    }
  }
  return true;
}

}  // namespace

bool NextChangedRun(const uint8_t* line, const uint8_t* previous, int32_t width, std::size_t pixelBytes, int32_t* x,
                    int32_t* count) {
  auto differs = [&](int32_t at) {
    const std::size_t offset = static_cast<std::size_t>(at) * pixelBytes;
    return std::memcmp(line + offset, previous + offset, pixelBytes) != 0;
  };
  int32_t start = *x;
  while (start < width && !differs(start)) ++start;
  if (start >= width) return false;
  int32_t end = start + 1;
  while (end < width && differs(end)) ++end;
  *x = start;
  *count = end - start;
  return true;
}

bool ReadFrame(RenderThread& render, FrameLineCallback callback, void* refcon, bool* running) {
  return ReadPixels(render, {}, callback, refcon, running);
}

bool ReadLayerFrame(RenderThread& render, int32_t a, int32_t b, FrameLineCallback callback, void* refcon,
                    bool* running) {
  return ReadPixels(render, {.layer = true, .a = a, .b = b}, callback, refcon, running);
}

bool ReadFrameChanges(RenderThread& render, FrameLineCallback callback, void* refcon, bool* running) {
  return ReadPixels(render, {.changes = true}, callback, refcon, running);
}

bool ReadLayerFrameChanges(RenderThread& render, int32_t a, int32_t b, FrameLineCallback callback, void* refcon,
                           bool* running) {
  return ReadPixels(render, {.layer = true, .a = a, .b = b, .changes = true, .copyRuns = true}, callback, refcon,
                    running);
}

}  // namespace quillon
