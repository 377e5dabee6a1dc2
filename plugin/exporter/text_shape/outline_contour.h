#pragma once
// How one host outline becomes one segment of a scene spline. The host gives a contour as
// vertices with Bezier handles, y down; the scene wants points, tangents relative to their
// point scaled down by 4/3, and y up. Every contour of a spline takes the same number of
// points (OutlineDims), so that the arrays of all keys of an animated spline line up; a
// contour with fewer vertices is filled up with points on its last curve.
#include <cstdint>

#include "plugin/engine/engine_ops.h"
#include "sdk/aegp.h"

// 4/3 in single precision, held in a double: the factor between the host's handles and the
// scene's tangents.
constexpr double kHandleToTangent = static_cast<double>(4.0f / 3.0f);

// The layout of an animated spline: the largest vertex count of any contour and the largest
// contour count at any sampled time.
struct OutlineDims {
  int32_t points = 0;
  int32_t contours = 0;
};

// Grows `dims` so that an outline of `contours` contours, the largest of `vertices` vertices,
// fits.
void IncludeOutline(OutlineDims* dims, int32_t contours, int32_t vertices);

// Where the contour goes: its depth, and an offset subtracted from every point.
struct OutlinePlacement {
  double z = 0.0;
  double dx = 0.0;
  double dy = 0.0;
};

// The spline arrays one contour is written into: those of a spline or of a key of its point
// level animation, each with room for dims.points x dims.contours elements.
struct SplineArrays {
  Vector* points = nullptr;
  SplineTangent* tangents = nullptr;
};

// Writes a mask vertex (tangents relative to it, y down) at place `at`: y negated, the tangents
// as they are, without the 4/3 of outline handles.
void WriteMaskVertex(const AEGP_MaskVertex& vertex, int32_t at, const SplineArrays& arrays);

// Writes contour `contourIndex` of `n` host vertices (absolute handles, y down) at its place
// in `arrays`, and its segment as `dims.points` points, closed. Vertices 0 to n-2 go to their
// own places, the last vertex to the contour's last place, and the places between are filled
// with points on the curve from vertex n-2 to the last one, with zero tangents (a contour of
// one vertex fills with the curve from the vertex back to itself). Nothing is written, and
// false returned, for no vertices, a missing segment or array, a contour outside dims, or
// more vertices than dims.points.
bool WriteContour(const PF_PathVertex* vertices, int32_t n, int32_t contourIndex, const OutlineDims& dims,
                  const OutlinePlacement& placement, SplineSegment* segments, const SplineArrays& arrays);
