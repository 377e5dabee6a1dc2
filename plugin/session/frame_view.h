#pragma once
// Framing the scene: the render view's camera moves so that it sees everything, and the
// caller learns where it went.
#include <cstdint>

#include "plugin/session/render_thread.h"

namespace quillon {

// Stops the render, frames the document's camera by the engine's `mode` and marks the
// picture out of date; `position` and `rotation` get the camera's world position and
// rotation (radians). True without an open document or without a camera, with nothing
// filled then.
bool FrameView(RenderThread& render, int32_t mode, Vector* position, Vector* rotation);

}  // namespace quillon
