#include "quillon/gltf/spline_outline.h"

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/animation.h"
#include "quillon/model/tag.h"
#include "quillon/gltf/scene_params.h"

namespace quillon::gltf {
namespace {

const Track* FormTrack(Object& spline) {
  for (Track* track : TracksOf(spline)) {
    if (!track->path.empty() && track->path[0].id == SplineKeyTrack_Id && track->curve && track->curve->keys.size() > 0)
      return track;
  }
  return nullptr;
}

// The point and tangent tags that hold the spline's form at time.
void FormAt(Object& spline, const BaseTime& time, const Tag*& points, const Tag*& tangents) {
  points = FindTag(spline, TagType_Points, 0);
  tangents = FindTag(spline, TagType_Tangents, 0);
  const Track* track = FormTrack(spline);
  if (!track) return;
  bool exact = false;
  int32_t index = LowerBound(*track->curve, time, &exact);
  if (!exact) index = index > 0 ? index - 1 : 0;
  const SplineKeyData* key = AsSplineKey(track->curve->keys.at(index)->data.raw);
  if (key && key->points) {
    points = key->points.get();
    tangents = key->tangents.get();
  }
}

Vector CubicPoint(const Vector& a, const Vector& b, const Vector& c, const Vector& d, double t) {
  const double u = 1.0 - t;
  return a * (u * u * u) + b * (3.0 * u * u * t) + c * (3.0 * u * t * t) + d * (t * t * t);
}

void AddPoint(Contour& contour, const Vector& point) {
  if (contour.empty() || !(contour.back() == point)) contour.push_back(point);
}

// The polygon of one closed contour of `count` points starting at `first`.
Contour FlattenContour(const Tag& points, const Tag* tangents, int32_t first, int32_t count) {
  Contour contour;
  for (int32_t i = 0; i < count; ++i) {
    const int32_t from = first + i;
    const int32_t to = first + (i + 1) % count;
    const Vector a = ElementAt<Vector>(points, from);
    const Vector d = ElementAt<Vector>(points, to);
    SplineTangent out{}, in{};
    if (tangents && tangents->count > from && tangents->count > to) {
      out = ElementAt<SplineTangent>(*tangents, from);
      in = ElementAt<SplineTangent>(*tangents, to);
    }
    AddPoint(contour, a);
    if (out.right == Vector{} && in.left == Vector{}) continue;
    for (int piece = 1; piece < kPiecesPerCurve; ++piece)
      AddPoint(contour, CubicPoint(a, a + out.right, d + in.left, d, static_cast<double>(piece) / kPiecesPerCurve));
  }
  while (contour.size() > 1 && contour.back() == contour.front()) contour.pop_back();
  return contour;
}

}  // namespace

std::vector<Contour> SplineContours(Object& spline, const BaseTime& time) {
  const Tag* points = nullptr;
  const Tag* tangents = nullptr;
  FormAt(spline, time, points, tangents);
  std::vector<Contour> contours;
  if (!points || points->count == 0) return contours;
  const Tag* segments = FindTag(spline, TagType_Segments, 0);
  int32_t first = 0;
  // An open contour bounds no surface; it is passed over.
  auto addContour = [&](int32_t count, bool closed) {
    if (count <= 0 || first + count > points->count) return false;
    Contour contour = closed ? FlattenContour(*points, tangents, first, count) : Contour{};
    if (contour.size() >= 3) contours.push_back(std::move(contour));
    first += count;
    return true;
  };
  if (!segments || segments->count == 0) {
    addContour(points->count, BoolParam(spline, SplineParam_Closed, false));
    return contours;
  }
  for (int32_t s = 0; s < segments->count; ++s) {
    const SplineSegment segment = ElementAt<SplineSegment>(*segments, s);
    if (!addContour(segment.count, segment.closed != 0)) break;
  }
  return contours;
}

bool HasFormKeys(Object& spline) {
  const Track* track = FormTrack(spline);
  return track && track->curve->keys.size() > 1;
}

}  // namespace quillon::gltf
