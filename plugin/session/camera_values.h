#pragma once
// A caller sets the camera of a render's document by values: place, turn and lens.
#include <cstdint>

#include "plugin/engine/engine_ops.h"
#include "plugin/session/render_thread.h"

namespace quillon {

struct CameraValues {
  Vector position;
  Vector rotation;
  float focalLength = 0.0f;
  float aperture = 0.0f;
  float third = 0.0f;  // the camera's parameter 1000
  int32_t projection = 0;
};

// The cameras of the render view and the active view take the values; with `makeNew` each
// view first gets a new camera behind the last top-level object. Animation of those values
// and the engine's camera tag 5629 go, and with `makeNew` a target the camera aimed at.
// `dirty` is set, and the last render's result cleared, when anything changed. False
// without a document, without either view or without a camera to set.
bool SetCameraValues(RenderThread& render, const CameraValues& values, bool makeNew);

}  // namespace quillon
