#include "plugin/session/render_thread.h"

#include "plugin/engine/engine_tables.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/session/render_result_text.h"
#include "plugin/session/render_settings.h"

namespace quillon {

namespace {

// Render settings: true renders with flags 3 instead of 1.
constexpr int32_t kRenderSettingFlagsThree = 8500;

void StoreProgress(double value, int32_t stage, void* object) {
  if (!object) return;
  auto* render = static_cast<RenderThread*>(object);
  render->progress = value;
  render->renderStage = stage;
}

// The list of what a render missed, as the bitmap keeps it after the render.
void PrintMissingAssets(const Bitmap* bitmap) {
  DataValue assets{DataKind_Empty, 0, {0}};
  t_ORYOS_Bm->GetBitmapData(bitmap, &assets, kBitmapDataMissingAssets, nullptr);
  if (t_ORYOS_Gd->GetKind(&assets) == DataKind_String) {
    t_ORYOS_Ge->ConsolePrint(("Missing Assets:\n" + ToUtf8(*t_ORYOS_Gd->GetString(&assets))).c_str());
  }
  t_ORYOS_Gd->Free(&assets);
}

// Documents are freed on the engine's main thread.
void FreeDocumentJob(void* document) { t_ORYOS_Ge->FreeDocument(static_cast<BaseDocument*>(document)); }

}  // namespace

RenderThread::~RenderThread() {
  // The render reads this record; it must end before the record goes.
  End(true);
}

void RenderThread::Main() {
  if (!document) return;
  const ParamContainer* settings = ActiveSettingsOf(document);
  if (bitmap && settings) {
    const int32_t flags = t_ORYOS_Bc->GetBool(settings, kRenderSettingFlagsThree, false) ? 3 : 1;
    renderResult = t_ORYOS_Ge->RenderDocument(document, 0, &StoreProgress, this, bitmap, settings, flags, handle, 0);
  }
  if (renderResult == kRenderResultAssetMissing) PrintMissingAssets(bitmap);
  if (renderResult != kRenderResultOk) t_ORYOS_Ge->ConsolePrint(RenderResultText(renderResult).c_str());
  if (!keepCaches) t_ORYOS_Ge->FlushCaches();
  // Also a failed or stopped render counts as done: only a change renders again.
  dirty = false;
}

void RenderThread::StopThread() {
  SpinLockScope lock(stopLock);
  End(true);
}

void RenderThread::FreeDocument() {
  if (document) t_ORYOS_St->ExecuteOnMainThread(&FreeDocumentJob, document, kJobWaitNoLimit);
  document = nullptr;
}

void RenderThread::FreeDocumentLater() {
  if (document) t_ORYOS_St->ExecuteOnMainThread(&FreeDocumentJob, document, kJobNoWait);
  document = nullptr;
}

void RenderThread::DestroyContents() {
  t_ORYOS_Ge->FlushCaches();
  if (bitmap) t_ORYOS_Bm->FreeBitmap(bitmap);
  bitmap = nullptr;
  if (document) t_ORYOS_Bl->FreeNode(document);
  document = nullptr;
  delete[] previousFrame;
  previousFrame = nullptr;
  delete[] lineBuffer;
  lineBuffer = nullptr;
  sessionOpen = false;
  for (auto& [name, file] : textures) t_ORYOS_Fn->FilenameFree(&file);
  textures.clear();
}

}  // namespace quillon
