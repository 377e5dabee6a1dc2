// How the host lays out a text: each character of the source text gets its glyph's outline
// from the font file (found by its PostScript name through the system's font configuration;
// a font that is not installed is replaced by the system's default face, as the host shows
// text with a missing font) and a place on its line. Glyph outlines are the font's own: points in font units scaled by
// the size over the units per em, quadratic curves raised to cubic Bezier curves exactly
// (handles at two thirds of the way to the control point), y down as in layer space.
//
// Lines break at "\r". A line starts at x 0 (left), ends at x 0 (right) or is centred on
// x 0; the first baseline is at y 0 and each further line 1.2 x the size lower, the host's
// automatic leading. A character advances by its glyph's advance plus the tracking
// (thousandths of an em); the line's width for justification is the sum of those advances.
// The full justifications place every line as their last line is placed.
#pragma once

#include <string>
#include <vector>

#include "aehost/model/shape_contents.h"
#include "aehost/model/text_document.h"

namespace aehost {

struct LaidOutCharacter {
  std::string text;                 // the character, UTF-8
  double originX = 0.0;             // where its baseline starts, layer pixels
  double originY = 0.0;
  std::vector<PathShape> contours;  // closed, relative to the origin; none for a space or a break
};

// The characters of `document` laid out in order; false with the reason in `error` when no
// font can be found or read, or the text is not UTF-8.
bool LayOutText(const TextDocument& document, std::vector<LaidOutCharacter>* characters, std::string* error);

}  // namespace aehost
