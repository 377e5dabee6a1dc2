#pragma once
// The camera of a render's document, as a client changes it: a camera whose values the
// views' cameras take, or that is inserted and looked through, and the camera to look
// through chosen by its unique id.
#include <cstdint>
#include <string>

#include "plugin/engine/engine_ops.h"
#include "plugin/session/render_thread.h"

namespace quillon {

// Object types that a view can look through.
bool IsCameraObject(const SceneNode* node);

// With `insert`, `camera` moves into the document at the top and every view looks through
// it. Otherwise the cameras of the render view and the active view take its values, and
// lose a target they aimed at; `dirty` is set when anything differed. False when `camera`
// is no camera.
bool ApplyCamera(RenderThread& render, BaseObject* camera, bool insert);

// Channel __updc: the update's first object is the camera; ParamKey_UpdateData true
// inserts it.
void ApplyCameraUpdate(RenderThread& render, BaseDocument* update);

// The render view and the active view look through the camera with unique id `id` of
// application `applicationId`. True when such a camera was found; `dirty` is not touched.
bool SelectCameraById(RenderThread& render, int32_t applicationId, const std::string& id);

// Channel __upda: ParamKey_UpdateAppId names the application, the update's own unique id
// of it is the camera's.
void ApplyActiveCameraUpdate(RenderThread& render, BaseDocument* update);

// Objects of the engine's guide type (5136) below `first` lose their mode 2, as they must
// whenever the camera changes.
void ClearMode2(BaseObject* first);

}  // namespace quillon
