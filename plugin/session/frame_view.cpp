#include "plugin/session/frame_view.h"

#include "plugin/engine/engine_tables.h"

namespace quillon {

namespace {

// The camera the render looks through: the render view's scene camera, or else the
// view's own camera.
BaseObject* RenderCameraOf(const BaseDocument* document) {
  BaseView* view = t_ORYOS_Bd->GetRenderView(document);
  if (!view) return nullptr;
  BaseObject* camera = t_ORYOS_Br->GetSceneCamera(view, document);
  return camera ? camera : t_ORYOS_Br->GetViewCamera(view);
}

}  // namespace

bool FrameView(RenderThread& render, int32_t mode, Vector* position, Vector* rotation) {
  if (!render.sessionOpen || !render.document) return true;
  render.StopThread();
  t_ORYOS_Ge->FrameCamera(render.document, mode);
  render.dirty = true;
  const BaseObject* camera = RenderCameraOf(render.document);
  if (!camera) return true;
  if (position) t_ORYOS_Bo->GetAbsolutePosition(camera, position);
  if (rotation) t_ORYOS_Bo->GetAbsoluteRotation(camera, rotation);
  return true;
}

}  // namespace quillon
