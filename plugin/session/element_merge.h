#pragma once
// Merging a difference into a render's document by unique ids: an element of the update
// whose id the document knows takes the place of its twin, with what linked to the twin
// now linking to it; an element named "---delete" takes its twin away; a material named
// "---XMATLINK" stands for its twin, and what links to it is pointed at the twin; anything
// else is inserted as new.
#include <cstdint>
#include <vector>

#include "plugin/engine/engine_ops.h"
#include "plugin/session/unique_id_map.h"

namespace quillon {

// Merges the top-level objects and materials of `update` into `target` by the unique ids
// of application `applicationId`; an element's children travel with it. False for null
// arguments or when memory ran out, with what was merged so far kept.
bool MergeDifference(int32_t applicationId, BaseDocument* update, BaseDocument* target);

// Merges `first` and its next siblings into `target`; what lies below an element travels
// with it. `pairs` gets each placeholder material with the element it stands for.
bool MergeElements(UniqueIdMap& map, int32_t applicationId, SceneNode* first, BaseDocument* target,
                   std::vector<NodePair>& pairs);

}  // namespace quillon
