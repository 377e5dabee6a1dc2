// The form of a spline at a time, and its closed contours as polygons to fill.
#pragma once

#include <vector>

#include "quillon/model/object.h"

namespace quillon::gltf {

using Contour = std::vector<Vector>;

// Gives the spline the form of its point level animation at `time`: the point and tangent
// arrays of the key at or before it (the first key when all lie after). A spline without such
// keys keeps its own arrays.
void PoseSplineForm(Object& spline, const BaseTime& time);
// Whether point level animation changes the spline's form over time.
bool HasFormKeys(Object& spline);

// The polygons of the spline's closed segments as the renderer cuts them, without repeated
// points and without a contour that repeats an earlier one: the exporter gives every key of a
// spline as many contours as its fullest one, repeating the last, and a contour twice over
// would cut itself out under the even-odd rule.
std::vector<Contour> SplineContours(const Object& spline);

}  // namespace quillon::gltf
