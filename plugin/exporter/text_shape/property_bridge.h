#pragma once
// The script property bridge: one property of one layer read by running a query script in
// the host (script_queries.h) and parsing its reply (reply_parsing.h). Nothing is cached:
// two reads are two runs. No reader reports anything; a reply that does not come gives the
// reader's default (false, 0, 0.0, an empty text) and the export goes on with it.
#include <string>

#include "plugin/exporter/ae_to_ory.h"
#include "plugin/exporter/text_shape/reply_parsing.h"

// The reply of the template run for `layer`, as the bytes up to the first zero; empty when
// the layer's index, the run or the reply's memory fails.
std::string QueryLayerScript(AEToOry& exporter, AEGP_LayerH layer, const std::string& scriptTemplate);

// Readers of the layer's text document.
bool IsTextFilled(AEToOry& exporter, AEGP_LayerH layer);
bool IsTextStroked(AEToOry& exporter, AEGP_LayerH layer);
bool IsStrokeOverFill(AEToOry& exporter, AEGP_LayerH layer);
double GetTextStrokeWidth(AEToOry& exporter, AEGP_LayerH layer);
int GetTextFontSize(AEToOry& exporter, AEGP_LayerH layer);  // a fractional size loses its fraction
int GetTextTracking(AEToOry& exporter, AEGP_LayerH layer);
int GetTextJustification(AEToOry& exporter, AEGP_LayerH layer);  // the host's ParagraphJustification
double GetTextHorizontalScale(AEToOry& exporter, AEGP_LayerH layer);
double GetTextVerticalScale(AEToOry& exporter, AEGP_LayerH layer);
// The font's PostScript name, UTF-8.
std::string GetTextFont(AEToOry& exporter, AEGP_LayerH layer);
// The fill or stroke colour, at `time` when one is given; false (and `colour` untouched) when
// the reply holds no colour.
bool GetTextColour(AEToOry& exporter, AEGP_LayerH layer, bool stroke, const BaseTime* time, TextColour* colour);

// Readers of the layer's path options, for text that follows a mask.
bool GetTextPathMaskIndex(AEToOry& exporter, AEGP_LayerH layer, int* maskIndex);
// `path` is `value` or a valueAtTime path (BuildPropertyPath).
double GetPathMarginValue(AEToOry& exporter, AEGP_LayerH layer, bool first, const std::string& path);
// Seconds of the key, keys numbered from 1.
double GetPathMarginKeyTime(AEToOry& exporter, AEGP_LayerH layer, bool first, int keyNumber);
int GetPathMarginNumKeys(AEToOry& exporter, AEGP_LayerH layer, bool first);
