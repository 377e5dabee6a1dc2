#pragma once
// The font of a live text object: the layer's font, which the host names by PostScript name,
// described as the engine's font library wants it (family, weight, italic flag, character
// set), from the system's font catalogue (platform/font_catalog.h).
#include "plugin/exporter/ae_to_ory.h"

// Writes the font description of the layer's text as parameter TextParam_Font of `text`. A
// font the catalogue does not know is described by its PostScript name alone; when the
// engine cannot make a font value the parameter stays unwritten.
void WriteFontDescription(AEToOry& exporter, AEGP_LayerH layer, BaseObject* text);
