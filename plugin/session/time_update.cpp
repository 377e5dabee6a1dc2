#include "plugin/session/time_update.h"

#include <cmath>

#include "plugin/engine/engine_tables.h"
#include "plugin/exporter/scene_params.h"

namespace quillon {

namespace {

bool SameMoment(const BaseTime& a, const BaseTime& b) {
  if (a.numerator == b.numerator && a.denominator == b.denominator) return true;
  return std::floor(a.numerator * b.denominator) == std::floor(b.numerator * a.denominator);
}

}  // namespace

void SetDocumentTime(RenderThread& render, const BaseTime& time) {
  SetTimeParam(render.document, DocParam_Time, time);
  render.dirty = true;
}

void ApplyTimeUpdate(RenderThread& render, BaseDocument* update) {
  const BaseTime* wanted = t_ORYOS_Bd->GetDocumentTime(update);
  const BaseTime* current = t_ORYOS_Bd->GetDocumentTime(render.document);
  if (!wanted || !current || SameMoment(*wanted, *current)) return;
  SetDocumentTime(render, *wanted);
}

}  // namespace quillon
