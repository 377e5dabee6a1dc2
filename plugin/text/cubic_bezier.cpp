#include "plugin/text/cubic_bezier.h"

Vector CubicBezierPoint(const Vector points[4], float t) {
  const double s = static_cast<double>(t);
  const double u = 1.0 - s;
  const double w0 = u * u * u;
  const double w1 = 3.0 * u * u * s;
  const double w2 = 3.0 * u * s * s;
  const double w3 = s * s * s;
  return Vector{w0 * points[0].x + w1 * points[1].x + w2 * points[2].x + w3 * points[3].x,
                w0 * points[0].y + w1 * points[1].y + w2 * points[2].y + w3 * points[3].y, 0.0};
}
