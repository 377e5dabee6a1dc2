#pragma once
// Source text that changes over time: the text object gets a "Text" track with one key for each
// key of the host's Source Text, holding the text shown from then on. Text that an expression
// makes has no keys to read; it is sampled on every frame of the layer.
#include <string>

#include "plugin/exporter/ae_to_ory.h"
#include "plugin/exporter/time_map.h"

// The source text at `time` (composition time), UTF-8; empty when it cannot be read.
std::string SourceTextAt(AEGP_LayerH layer, const A_Time& time);

// The times at which the source text is read: each key's, or every frame of the layer when an
// expression makes the text; none when it does not vary. The status of the host calls that
// read the layer's time frame.
A_Err SourceTextKeyTimes(AEToOry& exporter, AEGP_LayerH layer, TimeMap* times);

// Adds the text track to `text` when the source text varies; the status of the host calls that
// read the layer's time frame, 0 otherwise.
A_Err ExportSourceTextTrack(AEToOry& exporter, AEGP_LayerH layer, BaseObject* text);
