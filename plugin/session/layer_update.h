#pragma once
// Which scene layers of a render's document are switched on, as a client chooses them.
#include <cstdint>
#include <functional>
#include <vector>

#include "plugin/engine/engine_ops.h"
#include "plugin/session/render_thread.h"

namespace quillon {

// The layer at `index` counting the layer tree depth-first from 0 (a layer, its children,
// then its next sibling); null beyond the last or for a negative index.
SceneLayer* LayerAtIndex(BaseDocument* document, int32_t index);

// Switches every layer off, then the chosen ones on (seen and rendered) in the order of
// the list, which ends at the first that `layerAt` does not find; objects on no layer are
// shown or hidden by `objectsWithoutLayerVisible`, except where the document had them
// hidden before the session first changed them. True when a layer was switched on.
// `dirty` is left to the caller.
bool SwitchLayers(BaseDocument* document, int32_t count, bool objectsWithoutLayerVisible,
                  const std::function<SceneLayer*(int32_t)>& layerAt);

// Channel __updl: the list under ParamKey_UpdateData holds the count (1000), the flag for
// objects on no layer (1001, default true) and the layer indices from 2000, -1 ending them.
// `dirty` is set, also for an empty list.
void ApplyLayerUpdate(RenderThread& render, BaseDocument* update);

// The same with the layers given by their markers; `dirty` is set when a layer was
// switched on.
bool SwitchLayersByMarker(RenderThread& render, const std::vector<NodeMarker>& markers,
                          bool objectsWithoutLayerVisible);

}  // namespace quillon
