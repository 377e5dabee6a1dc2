#include "quillon/render/frame_camera.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/evaluate.h"
#include "quillon/render/camera_projection.h"
#include "quillon/render/node_values.h"
#include "quillon/render/scene_faces.h"

namespace quillon::render {
namespace {

constexpr double kDefaultAspect = 720.0 / 1280.0;

struct Bounds {
  Vector low{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity(),
             std::numeric_limits<double>::infinity()};
  Vector high{-low.x, -low.y, -low.z};
  bool empty = true;
};

void Include(Bounds& bounds, const Vector& p) {
  bounds.low = {std::min(bounds.low.x, p.x), std::min(bounds.low.y, p.y), std::min(bounds.low.z, p.z)};
  bounds.high = {std::max(bounds.high.x, p.x), std::max(bounds.high.y, p.y), std::max(bounds.high.z, p.z)};
  bounds.empty = false;
}

// Height over width of the frame of the active render settings.
double FrameAspect(const Document& document) {
  if (!document.activeSettings) return kDefaultAspect;
  const double width = FloatOf(*document.activeSettings, RenderParam_Width, 0.0);
  const double height = FloatOf(*document.activeSettings, RenderParam_Height, 0.0);
  return width > 0.0 && height > 0.0 ? height / width : kDefaultAspect;
}

}  // namespace

bool FrameRenderCamera(Document& document) {
  Object* camera = RenderCameraOf(document);
  if (!camera || !EvaluateDocumentCaches(document).empty()) return false;
  std::vector<std::string> missing;
  Bounds bounds;
  for (const Face& face : SceneFaces(document, {}, missing))
    for (const auto& contour : face.contours)
      for (const Vector& point : contour) Include(bounds, point);
  if (bounds.empty) return false;
  const Vector centre = (bounds.low + bounds.high) * 0.5;
  const double radius = std::max(Length(bounds.high - bounds.low) * 0.5, kNearDistance);
  const double halfWide = FieldOfViewOf(*camera) * 0.5;
  const double halfTall = std::atan(std::tan(halfWide) * FrameAspect(document));
  const bool parallel = Int32Of(*camera, CameraParam_Projection, kProjectionPerspective) == kProjectionParallel;
  const double distance = parallel ? 2.0 * radius : radius / std::sin(std::min(halfWide, halfTall));
  Matrix placed = GlobalMatrixOf(*camera);
  placed.off = centre - Normalized(placed.axisZ) * distance;
  SetGlobalMatrixOf(*camera, placed);
  return true;
}

}  // namespace quillon::render
