#include "plugin/exporter/ae_to_ory.h"

#include <algorithm>

#include "plugin/exporter/camera_export.h"
#include "plugin/exporter/exporter_host.h"
#include "plugin/exporter/layer_walk.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/exporter/scene_params.h"
#include "plugin/text/encodings.h"

namespace {

// Render settings of the document: the active ones, else the first, else new ones.
RenderData* DocumentRenderSettings(BaseDocument* document) {
  if (RenderData* active = t_ORYOS_Bd->GetActiveSettings(document)) return active;
  if (RenderData* first = t_ORYOS_Bd->GetFirstSettings(document)) return first;
  RenderData* settings = t_ORYOS_Bd->AllocRenderData();
  if (settings) t_ORYOS_Bd->InsertSettings(document, settings);
  return settings;
}

}  // namespace

AEToOry::AEToOry() = default;
AEToOry::~AEToOry() = default;

bool AEToOry::Init(CTI* frame, BaseDocument* doc, const Filename& target, const EngineString& project) {
  if (!frame) return false;
  if (!doc) {
    frame->AddError(45, "Exporter failed, target document is NULL.");
    return false;
  }
  if (ToUtf8(project).empty()) {
    frame->AddError(45, "Exporter failed, After Effects project name is empty.");
    return false;
  }
  cti = frame;
  document = doc;
  targetLeaf = LeafOf(target);
  projectName = ToUtf8(project);
  documentPending = true;
  found2dLayers = foundLayersToExport = foundCamera = foundTextLayers = exportTextAsPlanes = false;
  totalLayers = layerCounter = 0;
  cti->OpenProgress(DecodeUtf8("Exporting " + projectName));
  return true;
}

bool AEToOry::SetTarget(const Filename& target) {
  if (!IsFilled(target)) {
    if (cti) cti->AddError(45, "Exporter failed, target name is empty.");
    return false;
  }
  targetLeaf = LeafOf(target);
  return true;
}

bool AEToOry::PushComp(AEGP_CompH comp, AEGP_LayerH layer, BaseObject* node, uint32_t layerIndex) {
  compStack.push_back(CompStackEntry{layer, comp, node, layerIndex, 0.0});
  return SetUpComp(compStack.back().comp);
}

bool AEToOry::PopComp() {
  compStack.pop_back();
  if (!compStack.empty() && compStack.back().comp) SetUpComp(compStack.back().comp);
  return true;
}

bool AEToOry::SetUpComp(AEGP_CompH comp) {
  if (!comp) return false;
  A_FpLong rate = 0.0;
  A_Err err = CompSuite19()->AEGP_GetCompFramerate(comp, &rate);
  fps = static_cast<int32_t>(rate + 0.5);
  if (!err) err = CompSuite19()->AEGP_GetCompDisplayStartTime(comp, &compStart);
  if (!err) err = CompSuite19()->AEGP_GetCompFrameDuration(comp, &frameDuration);
  if (err) return false;
  AEGP_ItemH item = nullptr;
  CompSuite19()->AEGP_GetItemFromComp(comp, &item);
  if (!item) return false;

  // A composition that exists answers these; what a failure leaves behind is not used.
  A_long width = 0, height = 0;
  A_Time duration{0, 1};
  A_Ratio ratio{1, 1};
  err = ItemSuite13()->AEGP_GetItemDimensions(item, &width, &height);
  if (!err) err = ItemSuite13()->AEGP_GetItemDuration(item, &duration);
  if (!err) ItemSuite13()->AEGP_GetItemPixelAspectRatio(item, &ratio);

  pixelAspect = static_cast<double>(ratio.num) / static_cast<double>(ratio.den);
  const double filmAspect = static_cast<double>(width) / static_cast<double>(height) * pixelAspect;
  firstFrame = FrameOf(FromAeTime(compStart.value, compStart.scale), fps);
  frameCount = FrameOf(FromAeTime(duration.value, duration.scale), fps);
  const BaseTime startTime(firstFrame, fps);
  const BaseTime endTime = Add(startTime, BaseTime(frameCount - 1, fps));

  // Only the exported composition, the first one set up, describes the document.
  if (!documentPending) return true;
  documentPending = false;
  SetInt32Param(document, DocParam_Fps, fps);
  SetTimeParam(document, DocParam_MaxTime, endTime);
  SetTimeParam(document, DocParam_LoopMaxTime, endTime);
  SetTimeParam(document, DocParam_MinTime, startTime);
  SetTimeParam(document, DocParam_LoopMinTime, startTime);

  RenderData* settings = DocumentRenderSettings(document);
  if (!settings) return false;
  SetFloatParam(settings, RenderParam_FrameRate, rate);
  SetFloatParam(settings, RenderParam_Width, width);
  SetFloatParam(settings, RenderParam_Height, height);
  SetTimeParam(settings, RenderParam_FrameFrom, startTime);
  SetTimeParam(settings, RenderParam_FrameTo, endTime);
  SetFloatParam(settings, RenderParam_PixelAspect, pixelAspect);
  SetFloatParam(settings, RenderParam_FilmAspect, filmAspect);
  SetInt32Param(settings, RenderParam_FrameSequence, 2);
  return true;
}

AEGP_LayerH AEToOry::TopLayer() const { return compStack.empty() ? nullptr : compStack.back().layer; }
AEGP_CompH AEToOry::TopComp() const { return compStack.empty() ? nullptr : compStack.back().comp; }
BaseObject* AEToOry::TopNode() const { return compStack.empty() ? nullptr : compStack.back().node; }
double AEToOry::TopZOffset() const { return compStack.empty() ? 0.0 : compStack.back().zOffset; }

void AEToOry::AddZOffset(double step) {
  if (!compStack.empty()) compStack.back().zOffset += step;
}

bool AEToOry::CompSize(int32_t* width, int32_t* height) {
  *width = 0;
  *height = 0;
  if (!TopComp()) return false;
  AEGP_ItemH item = nullptr;
  CompSuite19()->AEGP_GetItemFromComp(TopComp(), &item);
  if (!item) return false;
  A_long w = 0, h = 0;
  if (!ItemSuite13()->AEGP_GetItemDimensions(item, &w, &h)) {
    *width = w;
    *height = h;
  }
  return true;
}

bool AEToOry::Scan(AEGP_CompH comp, AEGP_LayerH layer, uint32_t layerIndex) {
  layerUses = 0;
  if (!PushComp(comp, layer, nullptr, layerIndex)) return false;
  const bool walked = Walk(*this, layer, nullptr, WalkMode::scan);
  PopComp();
  return walked;
}

bool AEToOry::ExportLayers(AEGP_CompH comp, AEGP_LayerH layer, BaseObject* node, uint32_t layerIndex) {
  if (!layer) {
    // The scan after the user's answers alone sets the divisor of the progress.
    if (!Scan(comp, nullptr, layerIndex)) return false;
    totalLayers = layerCounter;
    layerCounter = 0;
  }
  if (!PushComp(comp, layer, node, layerIndex)) return false;
  const bool walked = Walk(*this, layer, nullptr, WalkMode::create);
  PopComp();
  return walked;
}

bool AEToOry::ExportRest(AEGP_CompH comp, AEGP_LayerH layer, BaseObject* node, uint32_t layerIndex) {
  if (!PushComp(comp, layer, node, layerIndex)) return false;
  const bool walked = Walk(*this, layer, node, WalkMode::link);
  // A scene always has a camera: without a camera layer anywhere, After Effects' own view.
  if (!layer && !foundCamera) AddDefaultCamera(*this);
  PopComp();
  return walked;
}

void AEToOry::ReportProgress() {
  if (totalLayers == 0) return;
  cti->Progress(static_cast<double>(layerCounter) / static_cast<double>(totalLayers) * 100.0);
}

int32_t AEToOry::ReportSubProgress(int32_t step, int32_t steps) {
  if (totalLayers != 0 && steps != 0) {
    const double a = static_cast<double>(layerCounter) / totalLayers;
    const double b = static_cast<double>(layerCounter + 1) / totalLayers;
    cti->Progress(a * 100.0 + (b * 100.0 - a * 100.0) / steps * step);
  }
  return cti->GetAbortCode();
}
