#pragma once
// Splines whose form changes over time. A host outline is read through the path data suite
// and written as one segment of a spline (outline_contour.h); point level animation keeps the
// form at each time as a key of the spline's "Shape Curve" track, each key holding full
// copies of the spline's point and tangent arrays.
#include "plugin/exporter/text_shape/outline_contour.h"

// Tension of a point level animation key: the double nearest 0.2 for outlines, 0.2 in
// single precision for mask paths, as the scene format's own writers put them.
constexpr double kOutlineKeyTension = 0.2;
constexpr double kMaskKeyTension = static_cast<double>(0.2f);

// Writes the outline `path` of `n` vertices (PF_PathNumSegments) as contour `contourIndex`;
// see WriteContour. A null path, no vertices or a missing segment array write nothing and
// return 0; a vertex the host does not give returns its error.
A_Err WriteOutlineContour(PF_PathOutlinePtr path, A_long n, SplineSegment* segments, int32_t contourIndex,
                          const OutlineDims& dims, const SplineArrays& arrays, const OutlinePlacement& placement);

// The spline's own point and tangent arrays.
SplineArrays SplineArraysOf(BaseObject* spline);

// The spline's "Shape Curve" track, made and named when it does not exist yet; null when the
// engine cannot make it.
AnimTrack* GetOrCreateShapeCurveTrack(BaseObject* spline);

// Whether the spline has its "Shape Curve" track (SimplifyTrack may have removed it).
bool HasShapeCurveTrack(BaseObject* spline);

// The key of a "Shape Curve" curve at `time`, added when there is none yet. A new key starts
// with copies of the spline's arrays as they stand, so the spline must have its final size
// before the first key is added. Null when the engine refuses.
AnimKey* FindOrAddShapeKey(AnimCurve* curve, const BaseTime& time);

// The payload of a point level animation key, opened for writing: a copy of the key's arrays
// that ShapeKeyPayload::Store writes back.
class ShapeKeyPayload {
 public:
  // False in `ok()` when the key holds no payload or its arrays are missing.
  explicit ShapeKeyPayload(AnimKey* key);
  ~ShapeKeyPayload();
  ShapeKeyPayload(const ShapeKeyPayload&) = delete;
  ShapeKeyPayload& operator=(const ShapeKeyPayload&) = delete;

  bool ok() const { return arrays_.points && arrays_.tangents; }
  const SplineArrays& arrays() const { return arrays_; }
  // Writes the arrays back to the key with its mode and `tension`.
  void Store(double tension);

 private:
  AnimKey* key_;
  DataValue data_;
  SplineArrays arrays_;
};
