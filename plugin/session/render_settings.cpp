#include "plugin/session/render_settings.h"

#include "plugin/engine/engine_tables.h"
#include "plugin/exporter/scene_ids.h"

ParamContainer* ActiveSettingsOf(BaseDocument* document) {
  RenderData* settings = t_ORYOS_Bd->GetActiveSettings(document);
  return settings ? t_ORYOS_Bl->GetDataInstance(settings) : nullptr;
}

double GetSettingsFloat(const ParamContainer* settings, int32_t id) { return t_ORYOS_Bc->GetFloat(settings, id, 0.0); }

void SetSettingsFloat(ParamContainer* settings, int32_t id, double value) {
  DataValue number{DataKind_Float, 0, {0}};
  number.payload.float64 = value;
  t_ORYOS_Bc->SetDataAt(settings, id, &number);
}
