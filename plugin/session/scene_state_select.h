#pragma once
// Choosing the current scene state of a render's document by the marker of the state.
#include <cstdint>

#include "plugin/session/render_thread.h"

namespace quillon {

// `data` holds the 16 bytes of a state's marker. Makes that state current unless it is;
// `dirty` is set when it was not. False for another length, without an open document or
// when no state has the marker.
bool SelectSceneState(RenderThread& render, const void* data, int64_t size);

}  // namespace quillon
