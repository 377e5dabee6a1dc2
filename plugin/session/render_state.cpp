#include "plugin/session/render_state.h"

#include "plugin/engine/engine_tables.h"
#include "plugin/exporter/scene_ids.h"

namespace quillon {

bool GetRenderState(const RenderThread& render, bool* running, int32_t* result, double* progress, int32_t* stage) {
  if (running) *running = render.IsRunning();
  if (result) *result = render.renderResult;
  if (progress) *progress = render.progress;
  if (stage) *stage = render.renderStage;
  return true;
}

bool GetMissingAssets(const RenderThread& render, EngineString* text) {
  if (!render.bitmap || render.renderResult != kRenderResultAssetMissing) return true;
  DataValue assets{DataKind_Empty, 0, {0}};
  t_ORYOS_Bm->GetBitmapData(render.bitmap, &assets, kBitmapDataMissingAssets, nullptr);
  if (t_ORYOS_Gd->GetKind(&assets) == DataKind_String) {
    t_ORYOS_St->Release(text);
    *text = *t_ORYOS_Gd->GetString(&assets);
    t_ORYOS_St->Retain(text);
  }
  t_ORYOS_Gd->Free(&assets);
  return true;
}

}  // namespace quillon
