#include "plugin/session/render_prepare.h"

#include <cstring>
#include <new>

#include "plugin/engine/engine_tables.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/session/frame_formats.h"
#include "plugin/session/render_settings.h"

namespace quillon {

namespace {

// Render settings: handed to the alpha channel, and an option that a caller may only turn off.
constexpr int32_t kRenderSettingStraightAlpha = 5038;
constexpr int32_t kRenderSettingOption6014 = 6014;

bool MatchesSetUp(const RenderThread& render, const ParamContainer* settings, int32_t width, int32_t height,
                  bool option6014, int32_t bytesPerChannel) {
  return GetSettingsFloat(settings, RenderParam_Width) == width &&
         GetSettingsFloat(settings, RenderParam_Height) == height &&
         t_ORYOS_Bc->GetBool(settings, kRenderSettingOption6014, false) == option6014 &&
         render.bytesPerChannel == bytesPerChannel;
}

bool BuffersInUse(RenderThread& render) {
  SpinLockScope lock(render.stateLock);
  return render.lineBuffer && render.readers > 0;
}

void FreeBuffers(RenderThread& render) {
  delete[] render.previousFrame;
  render.previousFrame = nullptr;
  delete[] render.lineBuffer;
  render.lineBuffer = nullptr;
}

void WriteSize(ParamContainer* settings, int32_t width, int32_t height, bool option6014) {
  SetSettingsFloat(settings, RenderParam_Width, width);
  SetSettingsFloat(settings, RenderParam_Height, height);
  // The option is only ever turned off here, never on.
  if (t_ORYOS_Bc->GetBool(settings, kRenderSettingOption6014, false) && !option6014)
    t_ORYOS_Bc->SetBool(settings, kRenderSettingOption6014, false);
}

bool MakeBitmap(RenderThread& render, const ParamContainer* settings, int32_t width, int32_t height,
                int32_t bytesPerChannel) {
  if (render.bitmap) t_ORYOS_Bm->FreeBitmap(render.bitmap);
  render.bitmap = t_ORYOS_Bm->AllocBitmapSized(width, height, FrameFormatsFor(bytesPerChannel).bitmapDepth);
  if (!render.bitmap) return false;
  render.bytesPerChannel = bytesPerChannel;
  return t_ORYOS_Bm->AddAlphaChannel(render.bitmap, 1,
                                     t_ORYOS_Bc->GetBool(settings, kRenderSettingStraightAlpha, false)) != nullptr;
}

bool MakeBuffers(RenderThread& render, int32_t width, int32_t height, int32_t bytesPerChannel) {
  const std::size_t line = LineBytes(width, bytesPerChannel);
  render.previousFrame = new (std::nothrow) uint8_t[line * static_cast<std::size_t>(height)];
  render.lineBuffer = new (std::nothrow) uint8_t[line];
  return render.previousFrame && render.lineBuffer;
}

}  // namespace

bool SetUpBitmap(RenderThread& render, int32_t width, int32_t height, bool option6014, int32_t bytesPerChannel,
                 bool check) {
  if (!render.document || width < 1 || height < 1 || bytesPerChannel < 1) return false;
  ParamContainer* settings = ActiveSettingsOf(render.document);
  if (!settings) return false;
  if (!render.dirty && check) {
    if (!MatchesSetUp(render, settings, width, height, option6014, bytesPerChannel)) render.dirty = true;
    if (!render.dirty) return true;
  }
  if (BuffersInUse(render)) return false;
  FreeBuffers(render);
  WriteSize(settings, width, height, option6014);
  if (!MakeBitmap(render, settings, width, height, bytesPerChannel)) return false;
  if (!MakeBuffers(render, width, height, bytesPerChannel)) return false;
  render.width = width;
  render.height = height;
  render.renderResult = kRenderResultOk;
  return true;
}

bool PrepareRender(RenderThread& render, int32_t width, int32_t height, int32_t bytesPerChannel, bool option6014,
                   bool normalPriority) {
  {
    SpinLockScope lock(render.stateLock);
    if (render.busy) return false;
  }
  render.StopThread();
  if (!SetUpBitmap(render, width, height, option6014, bytesPerChannel, true)) return false;
  if (!render.dirty) return true;  // the last picture is still good
  if (!render.Start(kThreadStartRender, normalPriority ? kThreadPriorityNormal : kThreadPriorityLow)) return false;
  // The first read of changes then reports every pixel that is not black and clear.
  std::memset(render.previousFrame, 0, LineBytes(render.width, render.bytesPerChannel) *
                                           static_cast<std::size_t>(render.height));
  return true;
}

}  // namespace quillon
