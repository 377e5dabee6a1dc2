#pragma once
// The render settings a session reads and changes: the parameter set of a document's
// active render settings node.
#include "plugin/engine/engine_ops.h"

// Null when the document has no active render settings.
ParamContainer* ActiveSettingsOf(BaseDocument* document);

double GetSettingsFloat(const ParamContainer* settings, int32_t id);
void SetSettingsFloat(ParamContainer* settings, int32_t id, double value);
