// Mask outlines as the suites hand them out: a mask stream of a layer's mask, and outline
// values read from it, which the mask outline and the path data suites read. An outline value
// lives until its stream value is disposed, and takes the segment lengths prepared on it along.
#pragma once

#include "aehost/core/stream_ref.h"

namespace aehost {

// The outline stream of a mask handle; refuses any other mask stream.
A_Err NewMaskStream(const char* call, AEGP_MaskRefH maskH, AEGP_MaskStream which, AEGP_StreamRefH* streamPH);

// A new outline value holding `shape`.
AEGP_MaskOutlineValH NewOutlineValue(const PathShape& shape);

// Whether a stream value owns an outline: by its stream while that lives, else by what it holds.
bool OwnsOutline(const StreamRef* ref, const AEGP_StreamValue2& value);

// Disposes an outline value with the segment lengths prepared on it; false when it was gone.
bool DisposeOutlineValue(AEGP_MaskOutlineValH outlineH);

}  // namespace aehost
