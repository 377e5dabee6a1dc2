// How a camera maps the scene to the pixels of a frame. The camera looks
// along its z axis with y up and x to the right. A perspective camera's
// horizontal field of view spans the frame's width; a parallel one draws one
// scene unit a pixel at the document's own render width and scales with the
// frame from there, whatever the depth.
#pragma once

#include <cstdint>

#include "plugin/engine/engine_values.h"
#include "quillon/model/document.h"

namespace quillon::render {

// Projection values that the camera parameter 1001 holds.
constexpr int32_t kProjectionPerspective = 0;
constexpr int32_t kProjectionParallel = 4;
// Nothing nearer to a perspective camera than this is drawn.
constexpr double kNearDistance = 0.01;

struct CameraProjection {
  Matrix worldToCamera;  // into the camera's frame: x right, y up, z the distance ahead
  bool parallel = false;
  double pixelsPerUnit = 1.0;  // at distance 1 for a perspective camera
  double centreX = 0.0;
  double centreY = 0.0;
};

// The camera a render looks through: that of the render view, else of the
// active view; the view's scene camera, else its editor camera. Null without a view.
Object* RenderCameraOf(const Document& document);

// The camera's horizontal field of view in radians; the default for a value
// that is absent or not between 0 and a half turn.
double FieldOfViewOf(const Object& camera);

// The projection of camera into a frame of width x height pixels, for a
// document whose render settings give it documentWidth pixels.
CameraProjection ProjectionOf(const Object& camera, int32_t width, int32_t height, double documentWidth);

// A point of the camera's frame on the picture: x to the right, y down, in pixels.
struct ScreenPoint {
  double x;
  double y;
};
ScreenPoint Project(const CameraProjection& projection, const Vector& cameraPoint);

// The point of the camera's frame that pixel position (x, y) sees at depth z.
Vector Unproject(const CameraProjection& projection, double x, double y, double z);

}  // namespace quillon::render
