#include "plugin/session/view_update.h"

#include "plugin/engine/engine_tables.h"

namespace quillon {

bool CopyViewValues(RenderThread& render, BaseView* view) {
  BaseView* renderView = t_ORYOS_Bd->GetRenderView(render.document);
  BaseView* activeView = t_ORYOS_Bd->GetActiveView(render.document);
  if (!view || !renderView || !activeView) return false;
  BaseObject* camera = t_ORYOS_Br->GetSceneCamera(renderView, render.document);
  // What a view holds besides the camera it looks through is its own editor camera.
  BaseObject* values = t_ORYOS_Br->GetViewCamera(view);
  for (BaseView* target : {renderView, activeView}) {
    BaseObject* editorCamera = t_ORYOS_Br->GetViewCamera(target);
    if (target != view && values && editorCamera) t_ORYOS_At->CopyNodeTo(values, editorCamera, 0, 0);
    t_ORYOS_Br->SetSceneCamera(target, camera, 0);
  }
  return true;
}

void ApplyViewUpdate(RenderThread& render, BaseDocument* update) {
  CopyViewValues(render, t_ORYOS_Bd->GetViewAt(update, 0));
}

}  // namespace quillon
