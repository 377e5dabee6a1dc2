#include "quillon/render/spline_contours.h"

#include <algorithm>

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/tag.h"
#include "quillon/render/node_values.h"

namespace quillon::render {
namespace {

Vector CubicAt(const Vector& p0, const Vector& c1, const Vector& c2, const Vector& p3, double t) {
  const double s = 1.0 - t;
  return p0 * (s * s * s) + c1 * (3.0 * s * s * t) + c2 * (3.0 * s * t * t) + p3 * (t * t * t);
}

bool IsZero(const Vector& v) { return v.x == 0.0 && v.y == 0.0 && v.z == 0.0; }

// The contour of points first .. first + count - 1, closed back to the first.
std::vector<Vector> Contour(const Tag& points, const Tag* tangents, int32_t first, int32_t count) {
  std::vector<Vector> contour;
  for (int32_t i = 0; i < count; ++i) {
    const int32_t from = first + i;
    const int32_t to = first + (i + 1) % count;
    const Vector p0 = ElementAt<Vector>(points, from);
    contour.push_back(p0);
    if (!tangents || tangents->count <= std::max(from, to)) continue;
    const Vector right = ElementAt<SplineTangent>(*tangents, from).right;
    const Vector left = ElementAt<SplineTangent>(*tangents, to).left;
    if (IsZero(right) && IsZero(left)) continue;
    const Vector p3 = ElementAt<Vector>(points, to);
    for (int32_t step = 1; step < kCurveSteps; ++step)
      contour.push_back(CubicAt(p0, p0 + right, p3 + left, p3, static_cast<double>(step) / kCurveSteps));
  }
  return contour;
}

// The exporter pads every form of a letter or shape to its fullest contour count by
// repeating the last contour. Under the even-odd rule the copy would cancel its original
// and a one-contour letter would vanish, so a repeat is kept once.
void AddUnlessRepeated(std::vector<std::vector<Vector>>& contours, std::vector<Vector> contour) {
  if (std::find(contours.begin(), contours.end(), contour) != contours.end()) return;
  contours.push_back(std::move(contour));
}

}  // namespace

std::vector<std::vector<Vector>> ClosedContoursOf(const Object& spline) {
  std::vector<std::vector<Vector>> contours;
  const Tag* points = FindTag(spline, TagType_Points, 0);
  if (!points || points->count < 3) return contours;
  const Tag* tangents = FindTag(spline, TagType_Tangents, 0);
  const Tag* segments = FindTag(spline, TagType_Segments, 0);
  const bool splineClosed = BoolOf(spline, SplineParam_Closed, false);
  if (!segments || segments->count == 0) {
    if (splineClosed) contours.push_back(Contour(*points, tangents, 0, points->count));
    return contours;
  }
  int32_t first = 0;
  for (int32_t s = 0; s < segments->count; ++s) {
    const SplineSegment segment = ElementAt<SplineSegment>(*segments, s);
    if (segment.count < 0 || segment.count > points->count - first) break;
    if ((segment.closed || splineClosed) && segment.count >= 3)
      AddUnlessRepeated(contours, Contour(*points, tangents, first, segment.count));
    first += segment.count;
  }
  return contours;
}

}  // namespace quillon::render
