#pragma once
// A shape layer as the host has evaluated it: a null with the layer's transform and, for each
// item the host draws, an extrude object holding one spline of the item's contours, with point
// level animation where the form changes, and a material of the item's colour
// (shape_colour.h). The exporter does not walk the layer's groups: whatever the host evaluates
// into a contour is exported as one.
#include "plugin/exporter/ae_to_ory.h"

// 0 on success; a non-zero result ends the layer walk.
A_Err ExportShapeLayer(AEToOry& exporter, AEGP_LayerH layer);
