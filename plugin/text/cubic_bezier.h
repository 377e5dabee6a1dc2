#pragma once
// A point on a cubic Bezier segment, for paths and text on a path.
#include "plugin/engine/engine_values.h"

// `points` holds the four control points in a row; only their x and y are used, and the
// result's z is 0. `t` runs from 0 to 1.
Vector CubicBezierPoint(const Vector points[4], float t);
