#pragma once
// Text as character outlines: every character of a text layer becomes a spline of its own in
// the form the host has laid out, filled by an extrusion and stroked by a sweep, each with the
// layer's fill or stroke material. Under the layer's null, for character "H" at index 0 of
// layer L:
//
//   H(0)            extrusion, fill material        H(0)-Stroke       sweep, stroke material
//     H(0) Spline                                     L-H(0)-StrokeTextOutline
//                                                     H(0) Spline (instance of the fill's spline,
//                                                                  or the spline itself unfilled)
//
// A character whose letter changes at an index is another object ("Hi" to "Ho" makes i(1) and
// o(1)); an index past the text is "XXX". The splines get a point level animation key at every
// time a character's transform changes (the frames on both sides of the change), at every key
// of the source text and of the layer's scale; a still text gets one form at the frame where
// the layer's scale is nearest 100 percent. A character without contours at a time (a space)
// is switched off there by an "Enabled" key of 0.
#include "plugin/exporter/ae_to_ory.h"

// Fills the layer's null `object`. 4, with the error recorded, when an object is missing; the
// status of a failed host call otherwise, or the code of a cancel.
A_Err ExportTextLayerPlanes(AEToOry& exporter, AEGP_LayerH layer, BaseObject* object);
