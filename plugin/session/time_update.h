#pragma once
// The time of a render's document, as a client moves it.
#include "plugin/engine/engine_ops.h"
#include "plugin/session/render_thread.h"

namespace quillon {

// Sets the document's time; `dirty` is set.
void SetDocumentTime(RenderThread& render, const BaseTime& time);

// Channel __updt: the document takes the update's time unless it is the same moment
// (also when written as another fraction).
void ApplyTimeUpdate(RenderThread& render, BaseDocument* update);

}  // namespace quillon
