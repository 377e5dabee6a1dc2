#pragma once
// Handing a render's pixels to a caller, line by line, also while the render runs: in
// whole lines, or as the runs of pixels that differ from the copy of the last frame handed
// out (`previousFrame`). A read neither stops nor waits for the render; `running` says
// whether the picture is still being made.
#include <cstddef>
#include <cstdint>

#include "plugin/session/render_thread.h"

// Gets `count` pixels of line `y` from pixel `x`, four channels of `bytesPerChannel` bytes
// each (red, green, blue, alpha). The pixels are valid during the call only.
using FrameLineCallback = void (*)(void* refcon, int32_t x, int32_t y, int32_t count, int32_t bytesPerChannel,
                                   const uint8_t* pixels);

namespace quillon {

// Each line whole; the lines are copied into previousFrame.
bool ReadFrame(RenderThread& render, FrameLineCallback callback, void* refcon, bool* running);
// The same from a layer (a, b) of the picture, or the picture when it has no such layer.
bool ReadLayerFrame(RenderThread& render, int32_t a, int32_t b, FrameLineCallback callback, void* refcon,
                    bool* running);
// The runs that differ from previousFrame, which stays as it is.
bool ReadFrameChanges(RenderThread& render, FrameLineCallback callback, void* refcon, bool* running);
// The runs that differ from previousFrame, each copied in after its call.
bool ReadLayerFrameChanges(RenderThread& render, int32_t a, int32_t b, FrameLineCallback callback, void* refcon,
                           bool* running);

// The next run of pixels of `line` that differ from `previous`, at or after pixel `*x`:
// true with its start in `*x` and its length in `*count`; false when the rest of the line
// is equal. `width` pixels of `pixelBytes` bytes each.
bool NextChangedRun(const uint8_t* line, const uint8_t* previous, int32_t width, std::size_t pixelBytes, int32_t* x,
                    int32_t* count);

}  // namespace quillon
