#pragma once
// The render settings of a render's document, as a client replaces them.
#include "plugin/engine/engine_ops.h"
#include "plugin/session/render_thread.h"

namespace quillon {

// `fresh` (outside any list, or taken out of its own) becomes the document's active render
// settings in place of the current ones, which are freed. With `keepChildren` the children
// of the current settings move below it in place of its own. The link 10001 of the current
// settings carries over. `dirty` is set.
void ReplaceRenderSettings(RenderThread& render, RenderData* fresh, bool keepChildren);

// Channel __updr: the update's active settings, unless they hold what the current ones
// hold; ParamKey_UpdateData true keeps the current children.
void ApplyRenderSettingsUpdate(RenderThread& render, BaseDocument* update);

}  // namespace quillon
