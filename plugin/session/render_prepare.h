#pragma once
// Setting a render up: the bitmap and the read buffers of a size and depth, and the start
// of the render thread when the picture is out of date.
#include <cstdint>

#include "plugin/session/render_thread.h"

namespace quillon {

// Makes the bitmap and buffers of `width` x `height` at `bytesPerChannel`, and writes the
// size into the document's render settings. With `check`, a render that is not dirty and
// already has that size, depth and option keeps everything and gives true. False without a
// document, while a read holds buffers that would have to change, or when memory runs out
// (the record may then be left without buffers; the next call makes them again).
bool SetUpBitmap(RenderThread& render, int32_t width, int32_t height, bool option6014, int32_t bytesPerChannel,
                 bool check);

// Renders the document again unless the last picture is still good. False while a
// preparation step runs, when the bitmap cannot be set up or the thread cannot start.
bool PrepareRender(RenderThread& render, int32_t width, int32_t height, int32_t bytesPerChannel, bool option6014,
                   bool normalPriority);

}  // namespace quillon
