// The contours of a closed spline as polygons: each Bezier segment between two points is cut
// into straight pieces, and the segments tag says where one contour ends and the next begins.
#pragma once

#include <vector>

#include "quillon/model/object.h"

namespace quillon::gltf {

using Contour = std::vector<Vector>;

// Straight pieces a curved segment is cut into; a segment whose tangents are both zero is a
// single straight piece.
constexpr int kPiecesPerCurve = 8;

// The contours of the spline in its own axes. Its form is that of its point and tangent tags,
// or, when a point level animation track holds keys, that of the key at or before `time`
// (the first key before them all). Control points stand at a point plus its tangent; repeated
// points are dropped, and a contour left with fewer than three points is no contour.
std::vector<Contour> SplineContours(Object& spline, const BaseTime& time);

// Whether point level animation changes the spline's form over time.
bool HasFormKeys(Object& spline);

}  // namespace quillon::gltf
