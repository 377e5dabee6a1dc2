#pragma once
// Bounds of the export walk. The walk enters a precomposition at every layer that uses it, and
// that is how it must be: each use becomes objects of its own. A project in which each of a few
// dozen compositions uses the next one twice therefore asks for more objects than there are
// atoms to hold them, and a parent chain or a stack of precompositions thousands deep asks the
// walk for a recursion that the stack cannot hold. The scan, which runs before the user is
// asked anything, counts and measures what the later walks would do and ends the export with a
// message naming the bound as soon as one is passed. The plug-in is the honest place for it:
// the host serves each call cheaply, and only the walk knows that it multiplies them.
#include <cstdint>

#include "plugin/exporter/ae_to_ory.h"

// Layers visited by one walk, each use of a precomposition counting its layers again.
constexpr uint64_t kMaxLayerUses = 100000;
// Precompositions inside each other, and parents above one layer.
constexpr uint32_t kMaxNesting = 256;

// In the scan, for each layer of the composition on top of the stack: throws A_Err_STRUCT
// after AddError with the bound that the layer passes.
void CheckWalkBounds(AEToOry& exporter, AEGP_LayerH layer);
