#include "plugin/session/output_settings.h"

#include "plugin/engine/engine_tables.h"
#include "plugin/exporter/scene_ids.h"
#include "plugin/session/render_settings.h"

namespace quillon {

namespace {

void SetSettingsTime(ParamContainer* settings, int32_t id, const BaseTime& time) {
  DataValue value{DataKind_Empty, 0, {0}};
  t_ORYOS_Gd->SetTime(&value, &time);
  t_ORYOS_Bc->SetDataAt(settings, id, &value);
  t_ORYOS_Gd->Free(&value);
}

double AtLeastOnePixel(double side) { return side > 0.0 ? side : 1.0; }

}  // namespace

void SetFrameRange(ParamContainer* settings, int32_t sequence, double rate, const BaseTime& from, const BaseTime& to,
                   int32_t value) {
  t_ORYOS_Bc->SetInt32(settings, RenderParam_FrameSequence, sequence);
  SetSettingsFloat(settings, RenderParam_FrameRate, rate);
  SetSettingsTime(settings, RenderParam_FrameFrom, from);
  SetSettingsTime(settings, RenderParam_FrameTo, to);
  t_ORYOS_Bc->SetInt32(settings, kRenderSettingFrameRangeValue, value);
}

void SetOutputSize(ParamContainer* settings, double width, double height, double pixelAspect, double filmAspect) {
  SetSettingsFloat(settings, RenderParam_Width, AtLeastOnePixel(width));
  SetSettingsFloat(settings, RenderParam_Height, AtLeastOnePixel(height));
  SetSettingsFloat(settings, RenderParam_PixelAspect, pixelAspect);
  SetSettingsFloat(settings, RenderParam_FilmAspect, filmAspect);
}

}  // namespace quillon
