// The closed contours of a spline object as polygons in its own space: each
// Bezier piece between two points (the first's right tangent, the second's
// left) cut into straight steps, a piece without tangents kept straight.
#pragma once

#include <vector>

#include "quillon/model/object.h"

namespace quillon::render {

// Straight steps a curved piece is cut into.
constexpr int32_t kCurveSteps = 16;

// One polygon per closed segment; open segments give none, and a segment that
// repeats an earlier one point for point gives none either. A spline without
// a segment tag is one segment, closed when its Closed parameter says so.
std::vector<std::vector<Vector>> ClosedContoursOf(const Object& spline);

}  // namespace quillon::render
