#include "quillon/render/camera_projection.h"

#include <cmath>

#include "plugin/exporter/scene_ids.h"
#include "quillon/render/node_values.h"

namespace quillon::render {
namespace {

// The default field of view of a camera: that of a 36 mm film behind a 36 mm lens.
constexpr double kDefaultFieldOfView = 2.0 * 0.4636476090008061;

// The camera's place and turn without its scale, so that a scaled camera sees
// the same scene as an unscaled one.
Matrix Orthonormal(const Matrix& m) {
  Matrix out = m;
  out.axisZ = Normalized(m.axisZ);
  out.axisX = Normalized(Cross(m.axisY, out.axisZ));
  out.axisY = Cross(out.axisZ, out.axisX);
  return out;
}

}  // namespace

double FieldOfViewOf(const Object& camera) {
  const double fov = FloatOf(camera, CameraParam_FieldOfView, kDefaultFieldOfView);
  return fov > 0.0 && fov < M_PI ? fov : kDefaultFieldOfView;
}

Object* RenderCameraOf(const Document& document) {
  const int32_t index = document.renderView >= 0 ? document.renderView : document.activeView;
  if (index < 0 || index >= static_cast<int32_t>(document.views.size())) return nullptr;
  const View& view = *document.views[static_cast<size_t>(index)];
  if (Object* scene = SceneCameraOf(view, document)) return scene;
  return view.editorCamera.get();
}

CameraProjection ProjectionOf(const Object& camera, int32_t width, int32_t height, double documentWidth) {
  CameraProjection projection;
  projection.worldToCamera = Invert(Orthonormal(GlobalMatrixOf(camera)));
  projection.parallel = Int32Of(camera, CameraParam_Projection, kProjectionPerspective) == kProjectionParallel;
  projection.centreX = width * 0.5;
  projection.centreY = height * 0.5;
  if (projection.parallel) {
    projection.pixelsPerUnit = documentWidth > 0.0 ? width / documentWidth : 1.0;
  } else {
    projection.pixelsPerUnit = projection.centreX / std::tan(FieldOfViewOf(camera) * 0.5);
  }
  return projection;
}

ScreenPoint Project(const CameraProjection& projection, const Vector& p) {
  const double scale = projection.parallel ? projection.pixelsPerUnit : projection.pixelsPerUnit / p.z;
  return {projection.centreX + p.x * scale, projection.centreY - p.y * scale};
}

Vector Unproject(const CameraProjection& projection, double x, double y, double z) {
  const double scale = projection.parallel ? projection.pixelsPerUnit : projection.pixelsPerUnit / z;
  return {(x - projection.centreX) / scale, (projection.centreY - y) / scale, z};
}

}  // namespace quillon::render
