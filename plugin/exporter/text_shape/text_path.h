#pragma once
// Text on a path: the mask a text follows becomes a spline "L-Path" under the layer's null,
// animated point by point when the mask's shape has keys, and a deformer "L-Deformer" under
// the text binds the text to it. The deformer's offset is the text's "First Margin" as a
// fraction of the path's length, keyed when the margin is. The mask's form and length come
// through the host's suites; which mask and the margins through the path option scripts.
#include "plugin/exporter/ae_to_ory.h"

// The spline of the mask that the layer's text follows, made under `holder`; null when the
// text follows no mask, or when its point level animation cannot be made (the error is in the
// list then, and the spline stays in the document as far as it was written).
BaseObject* ConvertTextPathMask(AEToOry& exporter, AEGP_LayerH layer, BaseObject* holder);

// The length of the path the text follows at `time` (composition time), summed over its
// segments; 0 when there is no such path or the host does not give it.
double GetTextPathLength(AEToOry& exporter, AEGP_LayerH layer, const A_Time& time);

// The deformer under `text` that lays it along `pathSpline`.
void ExportTextPathDeformer(AEToOry& exporter, AEGP_LayerH layer, BaseObject* text, BaseObject* pathSpline);
