// Moving the render camera back along its line of sight until it sees every
// face of the document, keeping its turn.
#pragma once

#include "quillon/model/document.h"

namespace quillon::render {

// The camera of RenderCameraOf is placed so that the sphere around the faces'
// bounding box fits the narrower field of view of the active render
// settings' frame (a parallel camera: in front of the sphere). Without a
// camera or faces nothing moves; false then.
bool FrameRenderCamera(Document& document);

}  // namespace quillon::render
