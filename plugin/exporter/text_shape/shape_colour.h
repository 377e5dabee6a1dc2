#pragma once
// The colour of one item of a shape layer on the material of its extrude object: the colour at
// the layer's first frame as the material's colour and alpha, and, where it changes between
// frames, keys on both sides of each change in four tracks. The host gives one colour an item,
// fill or stroke alike; a gradient arrives as that one colour.
#include "plugin/exporter/ae_to_ory.h"

// False when there is no layer or no material; a failing host call leaves the colour as far as
// it was written.
bool ExportShapeColour(AEToOry& exporter, AEGP_LayerH layer, int32_t itemIndex, BaseObject* extrude);
