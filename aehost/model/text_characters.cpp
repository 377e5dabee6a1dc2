#include "aehost/model/text_characters.h"

#include "aehost/model/evaluate.h"
#include "aehost/model/text_layout.h"
#include "aehost/model/transform.h"

namespace aehost {

namespace {

// The layout of the document last laid out: an export asks for the same text at every frame
// and for every character, and a layout reads the font file.
bool CachedLayout(const TextDocument& document, const std::vector<LaidOutCharacter>** layout, std::string* error) {
  static TextDocument lastDocument;
  static std::vector<LaidOutCharacter> lastLayout;
  static bool valid = false;
  if (!valid || !(document == lastDocument)) {
    valid = false;
    if (!LayOutText(document, &lastLayout, error)) return false;
    lastDocument = document;
    valid = true;
  }
  *layout = &lastLayout;
  return true;
}

// Layer space to the space of the outlines: anchor point, scale and position, no rotation.
struct OutlineSpace {
  double anchorX = 0.0, anchorY = 0.0;
  double scaleX = 1.0, scaleY = 1.0;
  double positionX = 0.0, positionY = 0.0;
};

OutlineSpace OutlineSpaceAt(const Project& project, const Item& comp, const Layer& layer, double compTime) {
  const Value anchor = EvaluateStream(project, comp, layer, LayerStream::AnchorPoint, compTime);
  const Value scale = EvaluateStream(project, comp, layer, LayerStream::Scale, compTime);
  const Value position = LayerPosition(project, comp, layer, compTime);
  return {anchor[0], anchor[1], scale[0] / 100.0, scale[1] / 100.0, position[0], position[1]};
}

// A glyph contour through the character's transform and into the space of the outlines; the
// handles, being relative, take the linear part alone.
PathShape PlaceContour(const PathShape& glyph, const Matrix4& m, const OutlineSpace& space) {
  PathShape placed = glyph;
  auto linear = [&](double x, double y, double* outX, double* outY) {
    *outX = (x * m.m[0][0] + y * m.m[1][0]) * space.scaleX;
    *outY = (x * m.m[0][1] + y * m.m[1][1]) * space.scaleY;
  };
  for (PathVertex& v : placed.vertices) {
    const double x = v.x * m.m[0][0] + v.y * m.m[1][0] + m.m[3][0];
    const double y = v.x * m.m[0][1] + v.y * m.m[1][1] + m.m[3][1];
    v.x = (x - space.anchorX) * space.scaleX + space.positionX;
    v.y = (y - space.anchorY) * space.scaleY + space.positionY;
    linear(v.inX, v.inY, &v.inX, &v.inY);
    linear(v.outX, v.outY, &v.outX, &v.outY);
  }
  return placed;
}

std::array<std::array<double, 3>, 3> InThePlane(const Matrix4& m) {
  return {{{m.m[0][0], m.m[0][1], 0.0}, {m.m[1][0], m.m[1][1], 0.0}, {m.m[3][0], m.m[3][1], 1.0}}};
}

}  // namespace

bool TextCharactersAt(const Project& project, const Item& comp, const Layer& layer, double layerTime,
                      std::vector<TextCharacter>* characters, std::string* error) {
  characters->clear();
  const std::vector<LaidOutCharacter>* layout = nullptr;
  if (!CachedLayout(TextDocumentAt(layer.text, layerTime), &layout, error)) return false;
  const double compTime = LayerTimeToCompTime(layer, layerTime);
  const OutlineSpace space = OutlineSpaceAt(project, comp, layer, compTime);
  for (std::size_t i = 0; i < layout->size(); ++i) {
    const LaidOutCharacter& laid = (*layout)[i];
    TextCharacter character;
    character.text = laid.text;
    character.transform =
        CharacterTransform(layer.text.animators, i, layout->size(), layerTime, laid.originX, laid.originY);
    character.plane = InThePlane(character.transform);
    for (const PathShape& contour : laid.contours)
      character.outline.push_back(PlaceContour(contour, character.transform, space));
    characters->push_back(std::move(character));
  }
  return true;
}

}  // namespace aehost
