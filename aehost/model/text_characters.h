// The characters of a text layer at a time as the host hands them out: the layout of the
// source text shown then (text_layout.h), each character with its transform and its outline.
//
// The space of the outlines. The exporter places a text layer's characters under a null that
// carries the layer's position and rotation with its scale forced to 1, and subtracts the
// null's position from every outline point. So an outline point is the character's point in
// layer space taken through the layer's anchor point, scale and position, but not its
// rotation: from (x, y) to ((x - anchor x) * scale x + position x, (y - anchor y) * scale y +
// position y), y down. The null then turns and places it as the layer does.
#pragma once

#include <string>
#include <vector>

#include "aehost/model/project.h"
#include "aehost/model/shape_contents.h"

namespace aehost {

struct TextCharacter {
  std::string text;                // the character, UTF-8; "\r" for a line break
  Matrix4 transform;               // from the character's glyph space to layer space
  std::array<std::array<double, 3>, 3> plane{};  // the same in the plane: rows x, y, translation
  std::vector<PathShape> outline;  // in the space of the outlines, y down
};

// The characters of text layer `layer` of `comp` at layer time `layerTime`; false with the
// reason in `error` when the text cannot be laid out.
bool TextCharactersAt(const Project& project, const Item& comp, const Layer& layer, double layerTime,
                      std::vector<TextCharacter>* characters, std::string* error);

}  // namespace aehost
