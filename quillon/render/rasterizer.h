// Drawing faces one row of pixels at a time. A pixel belongs to a face when
// its centre lies inside the face's contours (even-odd rule); of several faces
// the nearest one at the pixel centre wins, and an equally near later one
// does not replace it. Faces are flat: one colour each, or their picture's
// texel, without light.
#pragma once

#include <cstdint>
#include <vector>

#include "quillon/render/camera_projection.h"
#include "quillon/render/scene_faces.h"

namespace quillon::render {

struct ScreenEdge {
  double x0, y0, x1, y1;
};

// A face as the camera sees it: its edges on the picture and its plane in the camera's frame.
struct PreparedFace {
  std::vector<ScreenEdge> edges;
  double top = 0.0;
  double bottom = 0.0;
  Vector normal;  // the plane is normal . p = distance
  double distance = 0.0;
  const Surface* surface = nullptr;
  Matrix cameraToPicture;
};

// The faces in the camera's frame, cut at the near distance of a perspective
// camera; faces seen edge on or wholly behind are left out. faces must
// outlive the result.
std::vector<PreparedFace> PrepareFaces(const std::vector<Face>& faces, const CameraProjection& projection);

// One row of the picture: colour (three floats a pixel), alpha and depth.
struct RowPixels {
  std::vector<float> rgb;
  std::vector<float> alpha;
  std::vector<double> depth;
};

// Draws row y of a picture width pixels wide into row, which it clears first.
void DrawRow(const std::vector<PreparedFace>& faces, const CameraProjection& projection, int32_t y, int32_t width,
             RowPixels& row);

}  // namespace quillon::render
