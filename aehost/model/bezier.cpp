#include "aehost/model/bezier.h"

#include <cmath>

namespace aehost {

namespace {

struct Cubic {
  Point3 p[4];
};

// The speed |B'(t)|: B'(t) = 3(1-t)^2 (P1-P0) + 6(1-t)t (P2-P1) + 3t^2 (P3-P2). A flat curve
// (z = 0 throughout) keeps the two-argument hypot, so 2D lengths stay what they were.
double Speed(const Cubic& c, double t) {
  const double u = 1.0 - t;
  const double a = 3.0 * u * u, b = 6.0 * u * t, d = 3.0 * t * t;
  const double x = a * (c.p[1].x - c.p[0].x) + b * (c.p[2].x - c.p[1].x) + d * (c.p[3].x - c.p[2].x);
  const double y = a * (c.p[1].y - c.p[0].y) + b * (c.p[2].y - c.p[1].y) + d * (c.p[3].y - c.p[2].y);
  const double z = a * (c.p[1].z - c.p[0].z) + b * (c.p[2].z - c.p[1].z) + d * (c.p[3].z - c.p[2].z);
  return z == 0.0 ? std::hypot(x, y) : std::hypot(x, y, z);
}

// Five-point Gauss-Legendre rule on [from, to]: exact for polynomials up to degree nine.
double GaussLegendre(const Cubic& c, double from, double to) {
  static constexpr double kNodes[5] = {0.0, -0.5384693101056831, 0.5384693101056831, -0.9061798459386640,
                                       0.9061798459386640};
  static constexpr double kWeights[5] = {0.5688888888888889, 0.4786286704993665, 0.4786286704993665,
                                         0.2369268850561891, 0.2369268850561891};
  const double half = 0.5 * (to - from), middle = 0.5 * (to + from);
  double sum = 0.0;
  for (int i = 0; i < 5; ++i) sum += kWeights[i] * Speed(c, middle + half * kNodes[i]);
  return half * sum;
}

// Halving stops where both halves together give what the whole gave, to `tolerance`. A cusp,
// where the speed has a corner, is cut finer; `splits` bounds the work of a curve that does
// not settle (numbers near the end of the double range), and a curve of numbers that are not
// finite stops at once, its length not finite either.
constexpr int kMaxSplits = 1 << 12;
constexpr int kMaxDepth = 40;

double Adaptive(const Cubic& c, double from, double to, double whole, double tolerance, int depth, int* splits) {
  const double middle = 0.5 * (from + to);
  const double left = GaussLegendre(c, from, middle), right = GaussLegendre(c, middle, to);
  const bool settled = !(std::fabs(left + right - whole) > tolerance);
  if (settled || depth >= kMaxDepth || *splits <= 0) return left + right;
  --*splits;
  return Adaptive(c, from, middle, left, tolerance, depth + 1, splits) +
         Adaptive(c, middle, to, right, tolerance, depth + 1, splits);
}

// The length from the curve's start to parameter `to`.
double LengthTo(const Cubic& c, double to) {
  const double whole = GaussLegendre(c, 0.0, to);
  int splits = kMaxSplits;
  return Adaptive(c, 0.0, to, whole, 1e-12 * std::fmax(1.0, std::fabs(whole)), 0, &splits);
}

Point3 Flat(const Point2& p) { return {p.x, p.y, 0.0}; }

Point2 At(const PathVertex& v) { return {v.x, v.y}; }

}  // namespace

double CubicLength(const Point2& p0, const Point2& p1, const Point2& p2, const Point2& p3) {
  return LengthTo(Cubic{{Flat(p0), Flat(p1), Flat(p2), Flat(p3)}}, 1.0);
}

double CubicLength(const Point3 (&p)[4]) { return LengthTo(Cubic{{p[0], p[1], p[2], p[3]}}, 1.0); }

double CubicParameterAtLength(const Point3 (&p)[4], double distance) {
  const Cubic c{{p[0], p[1], p[2], p[3]}};
  const double whole = LengthTo(c, 1.0);
  if (!(distance > 0.0) || !(whole > 0.0)) return 0.0;
  if (distance >= whole) return 1.0;
  // Newton's step on L(u) - distance, whose slope is the speed, kept inside a bracket that
  // halves where a step would leave it (a cusp, where the speed is zero).
  const double tolerance = 1e-12 * std::fmax(1.0, whole);
  double lo = 0.0, hi = 1.0, u = distance / whole;
  for (int i = 0; i < 100; ++i) {
    const double miss = LengthTo(c, u) - distance;
    if (std::fabs(miss) <= tolerance) break;
    (miss < 0.0 ? lo : hi) = u;
    const double speed = Speed(c, u);
    const double step = speed > 0.0 ? u - miss / speed : lo - 1.0;
    u = step > lo && step < hi ? step : 0.5 * (lo + hi);
  }
  return u;
}

int SegmentCount(const PathShape& shape) {
  const int n = static_cast<int>(shape.vertices.size());
  if (n < 2) return 0;
  return shape.closed ? n : n - 1;
}

double SegmentLength(const PathShape& shape, int segment) {
  const PathVertex& from = shape.vertices[static_cast<std::size_t>(segment)];
  const PathVertex& to = shape.vertices[(static_cast<std::size_t>(segment) + 1) % shape.vertices.size()];
  return CubicLength(At(from), {from.x + from.outX, from.y + from.outY}, {to.x + to.inX, to.y + to.inY}, At(to));
}

}  // namespace aehost
