#pragma once
// Live text: a text layer becomes scene objects that keep it text, with its font, size,
// tracking and alignment. Below the layer's null a fill is an extrusion of the text object
// and a stroke a sweep of the text's outline, each with a material of its colour; with both,
// the sweep holds an instance of the text, and the two lie apart in depth so that the
// scene draws them in the order the host does (children in the order of their making; each
// goes in first among its siblings):
//
//   L (null)                     L (null)                      L (null)
//     L-Extrude  fill colour       L-Sweep  stroke colour        L-Extrude  fill colour
//       L-Text                       L-Text                        L-Text
//                                    L-TextOutline               L-Sweep  stroke colour
//   filled                         stroked                         L-TextOutline
//                                                                  L-Text (instance of L-Text)
//                                                                filled and stroked
//
// A text that runs along a mask also gets the mask's spline "L-Path" under the null and an
// "L-Deformer" under the text (text_path.h); source text with keys gives the text a "Text"
// track (source_text_track.h). The text's animators are not read: what else is written is
// the text as it stands at the composition's start.
#include "plugin/exporter/ae_to_ory.h"

// Fills the layer's null `object`; 0 when done, also for text that is neither filled nor
// stroked (the null stays empty). 4, with the error recorded, when an object is missing.
A_Err ExportTextObject(AEToOry& exporter, AEGP_LayerH layer, BaseObject* object);

// Moves `object` along z by `dz`.
void MoveInDepth(BaseObject* object, double dz);

// The sweep needs the text too, which already hangs under the extrusion: an instance of it
// behind the sweep's first child (the outline), standing where `text` stands. 4, with the
// error recorded, when the instance cannot be made.
A_Err AddTextInstance(AEToOry& exporter, BaseObject* sweep, BaseObject* text);
