#include "quillon/gltf/spline_outline.h"

#include <algorithm>

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/animation.h"
#include "quillon/model/tag.h"
#include "quillon/render/spline_contours.h"

namespace quillon::gltf {
namespace {

const Track* FormTrack(Object& spline) {
  for (Track* track : TracksOf(spline)) {
    if (!track->path.empty() && track->path[0].id == SplineKeyTrack_Id && track->curve && track->curve->keys.size() > 0)
      return track;
  }
  return nullptr;
}

void CopyElements(const Tag& from, Tag& to) {
  if (from.elementSize != to.elementSize) return;
  to.Resize(from.count);
  to.data = from.data;
}

Contour WithoutRepeatedPoints(const Contour& contour) {
  Contour kept;
  for (const Vector& point : contour) {
    if (kept.empty() || !(kept.back() == point)) kept.push_back(point);
  }
  while (kept.size() > 1 && kept.back() == kept.front()) kept.pop_back();
  return kept;
}

}  // namespace

void PoseSplineForm(Object& spline, const BaseTime& time) {
  const Track* track = FormTrack(spline);
  if (!track) return;
  bool exact = false;
  int32_t index = LowerBound(*track->curve, time, &exact);
  if (!exact) index = index > 0 ? index - 1 : 0;
  const SplineKeyData* key = AsSplineKey(track->curve->keys.at(index)->data.raw);
  if (!key || !key->points || !key->tangents) return;
  const Tag* segments = FindTag(spline, TagType_Segments, 0);
  ResizeSplineArrays(spline, key->points->count, segments ? segments->count : 0);
  CopyElements(*key->points, *FindTag(spline, TagType_Points, 0));
  CopyElements(*key->tangents, *FindTag(spline, TagType_Tangents, 0));
}

bool HasFormKeys(Object& spline) {
  const Track* track = FormTrack(spline);
  return track && track->curve->keys.size() > 1;
}

std::vector<Contour> SplineContours(const Object& spline) {
  std::vector<Contour> contours;
  for (const Contour& polygon : render::ClosedContoursOf(spline)) {
    Contour contour = WithoutRepeatedPoints(polygon);
    if (contour.size() < 3) continue;
    contours.push_back(std::move(contour));
  }
  return contours;
}

}  // namespace quillon::gltf
