// Keyframe interpolation as After Effects documents it in its Help pages
// ("Keyframe interpolation", "Speed graph", "Keyframe Velocity dialog box"):
//
// - Hold: the value of a key stays until the next key.
// - Linear: a straight change between two keys at constant speed.
// - Bezier with temporal ease: each key side has a speed (value units per
//   second) and an influence (percent of the time to the neighbouring key).
//   Between keys k0 at (t0, v0) and k1 at (t1, v1), D = t1 - t0, the value
//   over time is the cubic Bezier curve in the (time, value) plane through
//     P0 = (t0, v0)
//     P1 = (t0 + inflOut0 * D, v0 + speedOut0 * inflOut0 * D)
//     P2 = (t1 - inflIn1 * D,  v1 - speedIn1 * inflIn1 * D)
//     P3 = (t1, v1)
//   A linear side is the same with the average speed (v1 - v0) / D, which
//   keeps its handle on the straight line between the keys.
//
// Streams whose temporal dimension is one but whose value has several
// components move along a path: spatial streams along the Bezier curve that
// their spatial tangents span (a straight line without tangents), colours
// along a straight line, orientations along the shortest turn. The ease then
// works on the distance travelled along the path, in units (pixels, degrees)
// per second, as the velocity dialog shows it for such properties.
#include <algorithm>
#include <cmath>

#include "aehost/model/bezier.h"
#include "aehost/model/evaluate.h"
#include "aehost/model/transform.h"

namespace aehost {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kDegrees = 180.0 / kPi;

struct Side {
  Interpolation interpolation;
  Ease ease;
};

double Cubic(const double p[4], double u) {
  const double a = 1.0 - u;
  return a * a * a * p[0] + 3.0 * a * a * u * p[1] + 3.0 * a * u * u * p[2] + u * u * u * p[3];
}

// The handle offset (in time, in value) of a key side over a segment of
// length `span` seconds that changes by `delta`.
void Handle(const Side& side, double span, double delta, double* dt, double* dv) {
  if (side.interpolation != Interpolation::Bezier) {
    *dt = span / 3.0;
    *dv = delta / 3.0;
    return;
  }
  const double influence = std::clamp(side.ease.influence / 100.0, 0.0, 1.0);
  *dt = influence * span;
  *dv = side.ease.speed * influence * span;
}

double CubicSlope(const double p[4], double u) {
  const double a = 1.0 - u;
  return 3.0 * (a * a * (p[1] - p[0]) + 2.0 * a * u * (p[2] - p[1]) + u * u * (p[3] - p[2]));
}

// The parameter u at which the time curve x(u) reaches t. x does not decrease while both
// influences lie in 0..1, so the root stays bracketed: Newton steps converge in a handful of
// evaluations, and a step that would leave the bracket (a flat stretch of an ease) halves it
// instead, so a root is found to the last bits either way.
double ParameterAtTime(const double x[4], double t) {
  double lo = 0.0, hi = 1.0;
  double u = std::clamp((t - x[0]) / (x[3] - x[0]), 0.0, 1.0);
  for (int i = 0; i < 100; ++i) {
    const double miss = Cubic(x, u) - t;
    if (miss == 0.0) return u;
    (miss < 0.0 ? lo : hi) = u;
    const double slope = CubicSlope(x, u);
    double next = slope > 0.0 ? u - miss / slope : 0.5 * (lo + hi);
    if (!(next > lo && next < hi)) next = 0.5 * (lo + hi);
    if (std::fabs(next - u) <= 1e-16 || next == lo || next == hi) return next;
    u = next;
  }
  return u;
}

// One channel of the temporal curve: from s at t0 to e at t1, at time t.
double EaseChannel(double s, double e, double t0, double t1, const Side& out, const Side& in,
                   double t) {
  const double span = t1 - t0;
  // Two linear sides put both handles a third of the way along the straight line between the
  // keys, so the cubic is that line travelled at constant speed.
  if (out.interpolation != Interpolation::Bezier && in.interpolation != Interpolation::Bezier) {
    return s + (e - s) * ((t - t0) / span);
  }
  double outDt, outDv, inDt, inDv;
  Handle(out, span, e - s, &outDt, &outDv);
  Handle(in, span, e - s, &inDt, &inDv);
  const double x[4] = {t0, t0 + outDt, t1 - inDt, t1};
  const double y[4] = {s, s + outDv, e - inDv, e};
  return Cubic(y, ParameterAtTime(x, t));
}

Side OutSide(const Keyframe& key, int channel) {
  return {key.out, key.easeOut[static_cast<std::size_t>(channel)]};
}

Side InSide(const Keyframe& key, int channel) {
  // An incoming hold has no shape of its own: the earlier key's side decides.
  const Interpolation in = key.in == Interpolation::Hold ? Interpolation::Linear : key.in;
  return {in, key.easeIn[static_cast<std::size_t>(channel)]};
}

double Distance(const Value& a, const Value& b, int dims) {
  double sum = 0.0;
  for (int i = 0; i < dims; ++i) sum += (b[i] - a[i]) * (b[i] - a[i]);
  return std::sqrt(sum);
}

Value Lerp(const Value& a, const Value& b, double f, int dims) {
  Value out = a;
  for (int i = 0; i < dims; ++i) out[i] = a[i] + (b[i] - a[i]) * f;
  return out;
}

bool IsZero(const Value& v) { return v == Value{}; }

// The spatial path between two keys, a cubic through the keys and their tangents, measured
// along the curve itself (bezier.h) so that a place along it is right to the length's own
// precision.
struct SpatialPath {
  Value p[4];
  int dims = 3;

  Value At(double u) const {
    Value out;
    for (int d = 0; d < dims; ++d) {
      const double c[4] = {p[0][d], p[1][d], p[2][d], p[3][d]};
      out[d] = Cubic(c, u);
    }
    return out;
  }

  void ControlPoints(Point3 (&points)[4]) const {
    for (int i = 0; i < 4; ++i) points[i] = {p[i][0], p[i][1], dims > 2 ? p[i][2] : 0.0};
  }

  double Length() const {
    Point3 points[4];
    ControlPoints(points);
    return CubicLength(points);
  }

  Value AtDistance(double distance) const {
    Point3 points[4];
    ControlPoints(points);
    return At(CubicParameterAtLength(points, distance));
  }
};

// Orientation as a unit quaternion (w, x, y, z) of the layer rotation that
// the orientation angles make.
struct Quaternion {
  double w, x, y, z;
};

Quaternion ToQuaternion(const Value& orientation) {
  const Matrix4 r = LayerRotation(orientation, 0.0, 0.0, 0.0);
  // Row-vector matrix: the column-vector rotation is its transpose.
  const double m00 = r.m[0][0], m11 = r.m[1][1], m22 = r.m[2][2];
  const double m01 = r.m[1][0], m10 = r.m[0][1];
  const double m02 = r.m[2][0], m20 = r.m[0][2];
  const double m12 = r.m[2][1], m21 = r.m[1][2];
  Quaternion q;
  const double trace = m00 + m11 + m22;
  if (trace > 0.0) {
    const double s = 2.0 * std::sqrt(1.0 + trace);
    q = {0.25 * s, (m21 - m12) / s, (m02 - m20) / s, (m10 - m01) / s};
  } else if (m00 > m11 && m00 > m22) {
    const double s = 2.0 * std::sqrt(1.0 + m00 - m11 - m22);
    q = {(m21 - m12) / s, 0.25 * s, (m01 + m10) / s, (m02 + m20) / s};
  } else if (m11 > m22) {
    const double s = 2.0 * std::sqrt(1.0 + m11 - m00 - m22);
    q = {(m02 - m20) / s, (m01 + m10) / s, 0.25 * s, (m12 + m21) / s};
  } else {
    const double s = 2.0 * std::sqrt(1.0 + m22 - m00 - m11);
    q = {(m10 - m01) / s, (m02 + m20) / s, (m12 + m21) / s, 0.25 * s};
  }
  return q;
}

// Orientation angles of a quaternion, for the column-vector product
// Rx * Ry * Rz that LayerRotation uses, each angle in 0..360.
Value ToOrientation(const Quaternion& q) {
  const double m02 = 2.0 * (q.x * q.z + q.w * q.y);
  const double m12 = 2.0 * (q.y * q.z - q.w * q.x);
  const double m22 = 1.0 - 2.0 * (q.x * q.x + q.y * q.y);
  const double m01 = 2.0 * (q.x * q.y - q.w * q.z);
  const double m00 = 1.0 - 2.0 * (q.y * q.y + q.z * q.z);
  Value out;
  out[0] = std::atan2(-m12, m22) * kDegrees;
  out[1] = std::asin(std::clamp(m02, -1.0, 1.0)) * kDegrees;
  out[2] = std::atan2(-m01, m00) * kDegrees;
  for (int i = 0; i < 3; ++i) {
    if (out[i] < 0.0) out[i] += 360.0;
    if (out[i] >= 360.0) out[i] -= 360.0;
  }
  return out;
}

// The shortest turn from a to b: the quaternion of b on a's side, and the
// angle of the turn in degrees.
double TurnAngle(const Quaternion& a, Quaternion* b) {
  double dot = a.w * b->w + a.x * b->x + a.y * b->y + a.z * b->z;
  if (dot < 0.0) {
    *b = {-b->w, -b->x, -b->y, -b->z};
    dot = -dot;
  }
  return 2.0 * std::acos(std::min(1.0, dot)) * kDegrees;
}

Quaternion Slerp(const Quaternion& a, const Quaternion& b, double f) {
  const double dot = std::min(1.0, a.w * b.w + a.x * b.x + a.y * b.y + a.z * b.z);
  const double theta = std::acos(dot);
  double wa = 1.0 - f, wb = f;
  if (theta > 1e-9) {
    wa = std::sin((1.0 - f) * theta) / std::sin(theta);
    wb = std::sin(f * theta) / std::sin(theta);
  }
  return {wa * a.w + wb * b.w, wa * a.x + wb * b.x, wa * a.y + wb * b.y, wa * a.z + wb * b.z};
}

Value PathSegment(const Stream& stream, const Keyframe& k0, const Keyframe& k1, double t) {
  const int dims = Dimensions(stream.kind);
  const Side out = OutSide(k0, 0), in = InSide(k1, 0);
  if (stream.kind == StreamKind::Orientation) {
    const Quaternion a = ToQuaternion(k0.value);
    Quaternion b = ToQuaternion(k1.value);
    const double angle = TurnAngle(a, &b);
    if (angle <= 0.0) return k0.value;
    const double travelled = EaseChannel(0.0, angle, k0.time, k1.time, out, in, t);
    return ToOrientation(Slerp(a, b, travelled / angle));
  }
  const bool curved = (stream.kind == StreamKind::TwoDSpatial ||
                       stream.kind == StreamKind::ThreeDSpatial) &&
                      !(IsZero(k0.outTangent) && IsZero(k1.inTangent));
  if (!curved) {
    const double length = Distance(k0.value, k1.value, dims);
    if (length <= 0.0) return k0.value;
    const double travelled = EaseChannel(0.0, length, k0.time, k1.time, out, in, t);
    return Lerp(k0.value, k1.value, travelled / length, dims);
  }
  SpatialPath path;
  path.dims = dims;
  path.p[0] = k0.value;
  path.p[3] = k1.value;
  for (int d = 0; d < dims; ++d) {
    path.p[1][d] = k0.value[d] + k0.outTangent[d];
    path.p[2][d] = k1.value[d] + k1.inTangent[d];
  }
  const double length = path.Length();
  if (length <= 0.0) return k0.value;
  return path.AtDistance(EaseChannel(0.0, length, k0.time, k1.time, out, in, t));
}

Value Segment(const Stream& stream, const Keyframe& k0, const Keyframe& k1, double t) {
  if (k0.out == Interpolation::Hold) return k0.value;
  if (TemporalDimensions(stream.kind) == 1 && Dimensions(stream.kind) > 1) {
    return PathSegment(stream, k0, k1, t);
  }
  Value out = k0.value;
  const int dims = Dimensions(stream.kind);
  for (int c = 0; c < dims; ++c) {
    const int easeIndex = TemporalDimensions(stream.kind) == dims ? c : 0;
    out[c] = EaseChannel(k0.value[c], k1.value[c], k0.time, k1.time, OutSide(k0, easeIndex),
                         InSide(k1, easeIndex), t);
  }
  return out;
}

}  // namespace

Value InterpolateKeys(const Stream& stream, double streamTime) {
  const auto& keys = stream.keys;
  if (keys.empty()) return stream.value;
  if (streamTime <= keys.front().time) return keys.front().value;
  if (streamTime >= keys.back().time) return keys.back().value;
  const auto next = std::upper_bound(
      keys.begin(), keys.end(), streamTime,
      [](double time, const Keyframe& key) { return time < key.time; });
  const Keyframe& k1 = *next;
  const Keyframe& k0 = *(next - 1);
  if (streamTime == k0.time) return k0.value;
  return Segment(stream, k0, k1, streamTime);
}

}  // namespace aehost
