// The faces that a render draws, in world space: each plane as a rectangle,
// and the closed splines under each extrude object as one flat face of all
// their contours (holes by the even-odd rule), where the splines lie.
#pragma once

#include <string>
#include <vector>

#include "quillon/model/document.h"
#include "quillon/render/surface.h"

namespace quillon::render {

struct Face {
  std::vector<std::vector<Vector>> contours;  // world space, each closed
  Surface surface;
  // World point to picture coordinates: u in x, v in y (see SamplePicture).
  Matrix worldToPicture;
};

// Faces of every object of the evaluated document that is drawn: caches in
// place of their generators, objects switched off for renders (mode 1 of 1,
// or Enabled false) with all below them left out.
std::vector<Face> SceneFaces(const Document& document, const std::string& assetFolder,
                             std::vector<std::string>& missing);

// Whether the object is switched off for renders: mode 1 of 1, or Enabled false.
bool SwitchedOff(const Object& object);
// Generators that consume their children: only their cache is drawn.
bool ConsumesChildren(int32_t type);

}  // namespace quillon::render
