// Triangles that fill closed contours, holes and overlaps included, through the GLU
// tessellator (see README.md for why it and not another).
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "quillon/gltf/spline_outline.h"

namespace quillon::gltf {

struct Triangles {
  std::vector<Vector> vertices;
  // Three indices a triangle, counter-clockwise seen from the side `normal` points to.
  std::vector<uint32_t> indices;
};

// Fills the area inside an odd number of contours (the even-odd rule: a contour inside
// another cuts a hole, whichever way either runs), in the plane across `normal`. Where
// contours cross, the crossing becomes a vertex of its own. Throws std::bad_alloc when the
// tessellator cannot get memory; contours it cannot fill give no triangles.
Triangles Triangulate(const std::vector<Contour>& contours, const Vector& normal);

}  // namespace quillon::gltf
