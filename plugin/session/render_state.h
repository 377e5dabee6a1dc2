#pragma once
// What a caller may ask of a render at any time, without stopping it.
#include <cstdint>

#include "plugin/session/render_thread.h"

namespace quillon {

// Fills whatever is asked for: whether the thread runs, the last result, the progress
// (0 to 1) and stage of the engine's progress report. True.
bool GetRenderState(const RenderThread& render, bool* running, int32_t* result, double* progress, int32_t* stage);

// The list of assets that the last render missed, when it ended for that reason; `text`
// is left alone otherwise. True also when there is nothing to give.
bool GetMissingAssets(const RenderThread& render, EngineString* text);

}  // namespace quillon
