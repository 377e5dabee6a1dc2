#include "quillon/render/rasterizer.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quillon::render {
namespace {

// The part of a closed contour at or beyond the near distance.
std::vector<Vector> ClipToNear(const std::vector<Vector>& contour) {
  std::vector<Vector> clipped;
  for (size_t i = 0; i < contour.size(); ++i) {
    const Vector& a = contour[i];
    const Vector& b = contour[(i + 1) % contour.size()];
    const bool aIn = a.z >= kNearDistance;
    const bool bIn = b.z >= kNearDistance;
    if (aIn) clipped.push_back(a);
    if (aIn != bIn) clipped.push_back(a + (b - a) * ((kNearDistance - a.z) / (b.z - a.z)));
  }
  return clipped;
}

// Newell's normal of the first contour that has an area, not normalised.
Vector PlaneNormal(const std::vector<std::vector<Vector>>& contours) {
  for (const auto& contour : contours) {
    Vector n;
    for (size_t i = 0; i < contour.size(); ++i) {
      const Vector& a = contour[i];
      const Vector& b = contour[(i + 1) % contour.size()];
      n = n + Vector{(a.y - b.y) * (a.z + b.z), (a.z - b.z) * (a.x + b.x), (a.x - b.x) * (a.y + b.y)};
    }
    if (Length(n) > 1e-12) return Normalized(n);
  }
  return {};
}

bool PrepareFace(const Face& face, const CameraProjection& projection, PreparedFace* prepared) {
  std::vector<std::vector<Vector>> contours;
  for (const auto& contour : face.contours) {
    std::vector<Vector> seen;
    for (const Vector& point : contour) seen.push_back(TransformPoint(projection.worldToCamera, point));
    contours.push_back(std::move(seen));
  }
  prepared->normal = PlaneNormal(contours);
  if (Length(prepared->normal) == 0.0) return false;
  prepared->distance = Dot(prepared->normal, contours.front().front());
  prepared->top = std::numeric_limits<double>::infinity();
  prepared->bottom = -prepared->top;
  for (const auto& contour : contours) {
    const std::vector<Vector> visible = projection.parallel ? contour : ClipToNear(contour);
    for (size_t i = 0; i < visible.size(); ++i) {
      const ScreenPoint a = Project(projection, visible[i]);
      const ScreenPoint b = Project(projection, visible[(i + 1) % visible.size()]);
      prepared->edges.push_back({a.x, a.y, b.x, b.y});
      prepared->top = std::min({prepared->top, a.y, b.y});
      prepared->bottom = std::max({prepared->bottom, a.y, b.y});
    }
  }
  if (prepared->edges.empty()) return false;
  prepared->surface = &face.surface;
  prepared->cameraToPicture = Multiply(face.worldToPicture, Invert(projection.worldToCamera));
  return true;
}

// Where the face's plane lies behind pixel position (x, y); NaN when the
// camera sees the plane edge on there.
double DepthAt(const PreparedFace& face, const CameraProjection& projection, double x, double y) {
  const Vector atUnitDepth = Unproject(projection, x, y, 1.0);
  if (projection.parallel) {
    if (std::fabs(face.normal.z) < 1e-12) return std::nan("");
    return (face.distance - face.normal.x * atUnitDepth.x - face.normal.y * atUnitDepth.y) / face.normal.z;
  }
  const double along = Dot(face.normal, atUnitDepth);
  if (std::fabs(along) < 1e-12) return std::nan("");
  return face.distance / along;
}

// The x positions at which the row's centre line crosses the face's edges, in order.
void Crossings(const PreparedFace& face, double centreY, std::vector<double>& xs) {
  xs.clear();
  for (const ScreenEdge& e : face.edges) {
    if ((e.y0 <= centreY) == (e.y1 <= centreY)) continue;
    xs.push_back(e.x0 + (centreY - e.y0) * (e.x1 - e.x0) / (e.y1 - e.y0));
  }
  std::sort(xs.begin(), xs.end());
}

void Shade(const PreparedFace& face, const CameraProjection& projection, int32_t x, double centreY, double depth,
           RowPixels& row) {
  float rgb[3] = {static_cast<float>(face.surface->colour.x), static_cast<float>(face.surface->colour.y),
                  static_cast<float>(face.surface->colour.z)};
  float alpha = 1.0f;
  if (face.surface->picture) {
    const Vector seen = Unproject(projection, x + 0.5, centreY, depth);
    const Vector uv = TransformPoint(face.cameraToPicture, seen);
    SamplePicture(*face.surface->picture, uv.x, uv.y, rgb, &alpha);
    if (alpha <= 0.0f) return;  // a clear texel leaves what lies behind
  }
  const auto at = static_cast<size_t>(x);
  std::copy(rgb, rgb + 3, row.rgb.begin() + static_cast<ptrdiff_t>(at * 3));
  row.alpha[at] = alpha;
  row.depth[at] = depth;
}

void DrawSpan(const PreparedFace& face, const CameraProjection& projection, int32_t from, int32_t to,
              double centreY, RowPixels& row) {
  for (int32_t x = from; x < to; ++x) {
    const double depth = DepthAt(face, projection, x + 0.5, centreY);
    if (std::isnan(depth) || (!projection.parallel && depth < kNearDistance)) continue;
    if (depth < row.depth[static_cast<size_t>(x)]) Shade(face, projection, x, centreY, depth, row);
  }
}

}  // namespace

std::vector<PreparedFace> PrepareFaces(const std::vector<Face>& faces, const CameraProjection& projection) {
  std::vector<PreparedFace> prepared;
  for (const Face& face : faces) {
    PreparedFace one;
    if (PrepareFace(face, projection, &one)) prepared.push_back(std::move(one));
  }
  return prepared;
}

void DrawRow(const std::vector<PreparedFace>& faces, const CameraProjection& projection, int32_t y, int32_t width,
             RowPixels& row) {
  const auto pixels = static_cast<size_t>(width);
  row.rgb.assign(pixels * 3, 0.0f);
  row.alpha.assign(pixels, 0.0f);
  row.depth.assign(pixels, std::numeric_limits<double>::infinity());
  const double centreY = y + 0.5;
  std::vector<double> xs;
  for (const PreparedFace& face : faces) {
    if (centreY < face.top || centreY > face.bottom) continue;
    Crossings(face, centreY, xs);
    // Pixels whose centre lies in [xs[i], xs[i + 1]) for each inside pair.
    for (size_t i = 0; i + 1 < xs.size(); i += 2) {
      const double left = std::clamp(std::ceil(xs[i] - 0.5), 0.0, static_cast<double>(width));
      const double right = std::clamp(std::ceil(xs[i + 1] - 0.5), 0.0, static_cast<double>(width));
      DrawSpan(face, projection, static_cast<int32_t>(left), static_cast<int32_t>(right), centreY, row);
    }
  }
}

}  // namespace quillon::render
