#pragma once
// The views of a render's document, as a client changes them.
#include "plugin/engine/engine_ops.h"
#include "plugin/session/render_thread.h"

namespace quillon {

// The render view and the active view take the values of `view` and go on looking through
// the camera the render view looked through. A view that is one of the two is not copied
// onto itself. False when the document lacks either view; `dirty` is not touched.
bool CopyViewValues(RenderThread& render, BaseView* view);

// Channel __updd: the update's first view.
void ApplyViewUpdate(RenderThread& render, BaseDocument* update);

}  // namespace quillon
