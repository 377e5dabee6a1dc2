#include "plugin/exporter/text_shape/outline_contour.h"

#include <algorithm>

#include "plugin/text/cubic_bezier.h"

namespace {

// A y of the host turned up; a zero stays a plain zero rather than -0, which reads oddly in
// a dump and compares the same.
double Up(double y) { return y == 0.0 ? 0.0 : -y; }

// The host's vertex turned y up: the position and both handles.
PF_PathVertex FlipY(PF_PathVertex vertex) {
  vertex.y = Up(vertex.y);
  vertex.tan_in_y = Up(vertex.tan_in_y);
  vertex.tan_out_y = Up(vertex.tan_out_y);
  return vertex;
}

void WriteVertex(const PF_PathVertex& v, int32_t at, const OutlinePlacement& placement, const SplineArrays& arrays) {
  arrays.points[at] = Vector{v.x - placement.dx, v.y - placement.dy, placement.z};
  arrays.tangents[at].left = Vector{(v.tan_in_x - v.x) / kHandleToTangent, (v.tan_in_y - v.y) / kHandleToTangent, 0.0};
  arrays.tangents[at].right =
      Vector{(v.tan_out_x - v.x) / kHandleToTangent, (v.tan_out_y - v.y) / kHandleToTangent, 0.0};
}

// Points on the curve from `from` to `to` at places first .. first+count-1, at the parameters
// 1/(count+1), 2/(count+1), ... summed in single precision as the scene format's own writer does.
void WriteFillers(const PF_PathVertex& from, const PF_PathVertex& to, int32_t first, int32_t count,
                  const OutlinePlacement& placement, const SplineArrays& arrays) {
  const Vector controls[4] = {{from.x, from.y, 0.0},
                              {from.tan_out_x, from.tan_out_y, 0.0},
                              {to.tan_in_x, to.tan_in_y, 0.0},
                              {to.x, to.y, 0.0}};
  const float step = 1.0f / static_cast<float>(count + 1);
  float t = 0.0f;
  for (int32_t k = 0; k < count; ++k) {
    t += step;
    const Vector p = CubicBezierPoint(controls, t);
    arrays.points[first + k] = Vector{p.x - placement.dx, p.y - placement.dy, placement.z};
    arrays.tangents[first + k] = SplineTangent{};
  }
}

}  // namespace

void WriteMaskVertex(const AEGP_MaskVertex& v, int32_t at, const SplineArrays& arrays) {
  arrays.points[at] = Vector{v.x, Up(v.y), 0.0};
  arrays.tangents[at].left = Vector{v.tan_in_x, Up(v.tan_in_y), 0.0};
  arrays.tangents[at].right = Vector{v.tan_out_x, Up(v.tan_out_y), 0.0};
}

void IncludeOutline(OutlineDims* dims, int32_t contours, int32_t vertices) {
  dims->points = std::max(dims->points, vertices);
  dims->contours = std::max(dims->contours, contours);
}

bool WriteContour(const PF_PathVertex* vertices, int32_t n, int32_t contourIndex, const OutlineDims& dims,
                  const OutlinePlacement& placement, SplineSegment* segments, const SplineArrays& arrays) {
  if (!vertices || n <= 0 || !segments || !arrays.points || !arrays.tangents) return false;
  if (contourIndex < 0 || contourIndex >= dims.contours || n > dims.points) return false;
  segments[contourIndex].count = dims.points;
  segments[contourIndex].closed = 1;
  const int32_t base = contourIndex * dims.points;
  for (int32_t v = 0; v + 1 < n; ++v) WriteVertex(FlipY(vertices[v]), base + v, placement, arrays);
  const PF_PathVertex last = FlipY(vertices[n - 1]);
  const PF_PathVertex beforeLast = n > 1 ? FlipY(vertices[n - 2]) : last;
  WriteFillers(beforeLast, last, base + n - 1, dims.points - n, placement, arrays);
  WriteVertex(last, base + dims.points - 1, placement, arrays);
  return true;
}
