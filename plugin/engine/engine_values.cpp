#include "plugin/engine/engine_values.h"

#include <cmath>
#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kTwoPi = 2.0 * std::numbers::pi;
// Above this both parts no longer fit the 32-bit Euclid.
constexpr double kInt32Limit = 2147483520.0;
constexpr double kGimbalCosine = 1e-7;
constexpr double kHpbPoleLength = 1e-5;

int32_t Gcd(int32_t a, int32_t b) {
  while (b != 0) {
    int32_t r = a % b;
    a = b;
    b = r;
  }
  return a;
}

void ReduceLarge(BaseTime& time, double x, double y) {
  double f = 1e18 / std::fmax(x, y);
  if (f < 1.0) {
    time.numerator *= f;
    time.denominator *= f;
    x *= f;
    y *= f;
  }
  if (y < 1.0) {
    time.denominator = 1.0;
    y = 1.0;
  }
  double a = x;
  double b = y;
  double r = std::fmod(a, b);
  while (r >= 0.5) {
    a = b;
    b = r;
    r = std::fmod(a, b);
  }
  time.numerator /= b;
  time.denominator /= b;
}

Matrix RotateX(double angle) {
  double s = std::sin(angle), c = std::cos(angle);
  Matrix m;
  m.axisY = {0.0, c, s};
  m.axisZ = {0.0, -s, c};
  return m;
}

Matrix RotateY(double angle) {
  double s = std::sin(angle), c = std::cos(angle);
  Matrix m;
  m.axisX = {c, 0.0, -s};
  m.axisZ = {s, 0.0, c};
  return m;
}

Matrix RotateZ(double angle) {
  double s = std::sin(angle), c = std::cos(angle);
  Matrix m;
  m.axisX = {c, s, 0.0};
  m.axisY = {-s, c, 0.0};
  return m;
}

Matrix Product(const Matrix& a, const Matrix& b, const Matrix& c) {
  return Multiply(Multiply(a, b), c);
}

// acos for the heading-pitch-bank decomposition, pinned at the ends.
double PinnedAcos(double c) {
  if (c >= 1.0) return 0.0;
  if (c <= -1.0) return kPi;
  return std::acos(c);
}

Vector HpbFromAxes(const Vector& ax, const Vector& az) {
  double h = 0.0, p = 0.0, b = 0.0;
  double l = std::sqrt(az.x * az.x + az.z * az.z);
  if (l < kHpbPoleLength) {
    b = PinnedAcos(ax.x);
    if (az.y > 0.0) {
      p = kPi / 2.0;
      if (ax.z < 0.0) b = kTwoPi - b;
    } else {
      p = -kPi / 2.0;
      if (ax.z > 0.0) b = kTwoPi - b;
    }
    return {h, p, b};
  }
  double a = ClampedAsin(az.x / l);
  h = az.z > 0.0 ? -a : a + kPi;
  if (h < 0.0) h += kTwoPi;
  p = std::atan(az.y / l);
  double c = std::cos(h) * ax.x + std::sin(h) * ax.z;
  b = PinnedAcos(c);
  if (ax.y > 0.0) b = kTwoPi - b;
  return {h, p, b};
}

bool Gimbal(double angle) { return !(std::fabs(std::cos(angle)) > kGimbalCosine); }

Vector EulerFromAxes(const Vector& X, const Vector& Y, const Vector& Z, int32_t order) {
  Vector r;
  switch (order) {
    case 0:
      r.x = ClampedAsin(-Y.z);
      if (!Gimbal(r.x)) {
        r.y = std::atan2(X.z, Z.z);
        r.z = std::atan2(Y.x, Y.y);
      } else {
        r.y = std::atan2(X.y, X.x);
        if (Y.z > 0.0) r.y = kTwoPi - r.y;
      }
      break;
    case 1:
      r.z = ClampedAsin(Y.x);
      if (!Gimbal(r.z)) {
        r.x = std::atan2(-Y.z, Y.y);
        r.y = std::atan2(-Z.x, X.x);
      } else {
        r.y = std::atan2(X.z, -X.y);
        if (Y.x < 0.0) r.y = kPi - r.y;
      }
      break;
    case 2:
      r.y = ClampedAsin(-Z.x);
      if (!Gimbal(r.y)) {
        r.z = std::atan2(Y.x, X.x);
        r.x = std::atan2(Z.y, Z.z);
      } else {
        r.x = std::atan2(-X.y, Y.y);
        if (Z.x < 0.0) r.x = -r.x;
      }
      break;
    case 3:
      r.x = ClampedAsin(Z.y);
      if (!Gimbal(r.x)) {
        r.y = std::atan2(-Z.x, Z.z);
        r.z = std::atan2(-X.y, Y.y);
      } else {
        r.y = std::atan2(Y.x, X.x);
        if (Z.y < 0.0) r.y = -r.y;
      }
      break;
    case 4:
      r.z = ClampedAsin(-X.y);
      if (!Gimbal(r.z)) {
        r.y = std::atan2(X.z, X.x);
        r.x = std::atan2(Z.y, Y.y);
      } else {
        r.x = std::atan2(Z.x, Y.x);
        if (X.y > 0.0) r.x = r.x + kPi;
      }
      break;
    case 5:
      r.y = ClampedAsin(X.z);
      if (!Gimbal(r.y)) {
        r.z = std::atan2(-X.y, X.x);
        r.x = std::atan2(-Y.z, Z.z);
      } else {
        r.x = std::atan2(Y.x, -Z.x);
        if (X.z < 0.0) r.x = r.x - kPi;
      }
      break;
    default:
      r = HpbFromAxes(X, Z);
      break;
  }
  return r;
}

// Moves angle to within pi of reference and gives the distance it ends at.
double MoveNear(double& angle, double reference) {
  double t = (angle - reference) / kTwoPi;
  double d = (t - std::floor(t)) * kTwoPi;
  angle = reference + d;
  if (d >= kPi) {
    angle -= kTwoPi;
    d -= kTwoPi;
  }
  return std::fabs(d);
}

double MoveAllNear(Vector& v, const Vector& reference) {
  return MoveNear(v.x, reference.x) + MoveNear(v.y, reference.y) + MoveNear(v.z, reference.z);
}

}  // namespace

BaseTime::BaseTime(double n, double d) {
  numerator = std::floor(std::fabs(n) + 0.5);
  denominator = std::floor(std::fabs(d) + 0.5);
  if (denominator < 1.0) denominator = 1.0;
  if ((n >= 0.0) != (d >= 0.0)) numerator = -numerator;
  Reduce(*this);
}

void Reduce(BaseTime& time) {
  double x = std::fabs(time.numerator);
  double y = std::fabs(time.denominator);
  if (x < 0.001 || y < 0.001) {
    time = BaseTime();
    return;
  }
  if (x < kInt32Limit && y < kInt32Limit) {
    int32_t a = static_cast<int32_t>(x);
    int32_t b = static_cast<int32_t>(y);
    if (b == 0) {
      time = BaseTime();
      return;
    }
    double g = static_cast<double>(Gcd(a, b));
    time.numerator /= g;
    time.denominator /= g;
    return;
  }
  ReduceLarge(time, x, y);
}

int32_t FrameOf(const BaseTime& time, double fps) {
  return static_cast<int32_t>(std::trunc(std::floor(fps * time.numerator) / std::floor(time.denominator)));
}

BaseTime Add(const BaseTime& a, const BaseTime& b) {
  return BaseTime(a.numerator * b.denominator + b.numerator * a.denominator, a.denominator * b.denominator);
}

BaseTime FromAeTime(int32_t value, uint32_t scale) {
  return BaseTime(static_cast<double>(value), static_cast<double>(scale));
}

bool operator==(const BaseTime& a, const BaseTime& b) {
  return a.numerator == b.numerator && a.denominator == b.denominator;
}

bool operator<(const BaseTime& a, const BaseTime& b) {
  return a.numerator * b.denominator < b.numerator * a.denominator;
}

double Seconds(const BaseTime& time) { return time.numerator / time.denominator; }

bool operator==(const Vector& a, const Vector& b) { return a.x == b.x && a.y == b.y && a.z == b.z; }
Vector operator+(const Vector& a, const Vector& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
Vector operator-(const Vector& a, const Vector& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
Vector operator*(const Vector& v, double s) { return {v.x * s, v.y * s, v.z * s}; }
double Dot(const Vector& a, const Vector& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

Vector Cross(const Vector& a, const Vector& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double Length(const Vector& v) { return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z); }

void Normalize(Vector& v) {
  double length = Length(v);
  double factor = length == 0.0 ? 0.0 : 1.0 / length;
  v = v * factor;
}

Vector Normalized(const Vector& v) {
  Vector copy = v;
  Normalize(copy);
  return copy;
}

bool operator==(const Matrix& a, const Matrix& b) {
  return a.off == b.off && a.axisX == b.axisX && a.axisY == b.axisY && a.axisZ == b.axisZ;
}

Vector TransformDirection(const Matrix& m, const Vector& v) {
  return m.axisX * v.x + m.axisY * v.y + m.axisZ * v.z;
}

Vector TransformPoint(const Matrix& m, const Vector& p) { return m.off + TransformDirection(m, p); }

Matrix Multiply(const Matrix& a, const Matrix& b) {
  Matrix m;
  m.off = TransformPoint(a, b.off);
  m.axisX = TransformDirection(a, b.axisX);
  m.axisY = TransformDirection(a, b.axisY);
  m.axisZ = TransformDirection(a, b.axisZ);
  return m;
}

Matrix Invert(const Matrix& m) {
  Vector r0 = Cross(m.axisY, m.axisZ);
  double det = Dot(m.axisX, r0);
  if (det == 0.0) return Matrix();
  r0 = r0 * (1.0 / det);
  Vector r1 = Cross(m.axisZ, m.axisX) * (1.0 / det);
  Vector r2 = Cross(m.axisX, m.axisY) * (1.0 / det);
  Matrix inv;
  inv.axisX = {r0.x, r1.x, r2.x};
  inv.axisY = {r0.y, r1.y, r2.y};
  inv.axisZ = {r0.z, r1.z, r2.z};
  inv.off = {-Dot(r0, m.off), -Dot(r1, m.off), -Dot(r2, m.off)};
  return inv;
}

double ClampedAsin(double x) {
  if (x >= 1.0) return kPi / 2.0;
  if (x <= -1.0) return -kPi / 2.0;
  return std::asin(x);
}

Matrix RotationToMatrix(const Vector& r, int32_t order) {
  if (r.x == 0.0 && r.y == 0.0 && r.z == 0.0) return Matrix();
  Matrix rx = RotateX(-r.x), ry = RotateY(-r.y), rz = RotateZ(-r.z);
  switch (order) {
    case 0: return Product(rz, rx, ry);
    case 1: return Product(rx, rz, ry);
    case 2: return Product(rx, ry, rz);
    case 3: return Product(ry, rx, rz);
    case 4: return Product(ry, rz, rx);
    case 5: return Product(rz, ry, rx);
    default: return Product(RotateY(-r.x), RotateX(-r.y), rz);
  }
}

Vector MatrixToRotation(const Matrix& m, int32_t order, bool axesAreNormalized) {
  if (axesAreNormalized) return EulerFromAxes(m.axisX, m.axisY, m.axisZ, order);
  return EulerFromAxes(Normalized(m.axisX), Normalized(m.axisY), Normalized(m.axisZ), order);
}

Vector BestAngle(const Vector& previous, const Vector& current, int32_t order) {
  Vector alternative;
  switch (order) {
    case 0:
    case 3: alternative = {kPi - current.x, kPi + current.y, kPi + current.z}; break;
    case 1:
    case 4: alternative = {kPi + current.x, kPi + current.y, kPi - current.z}; break;
    default: alternative = {kPi + current.x, kPi - current.y, kPi + current.z}; break;
  }
  Vector moved = current;
  double currentDistance = MoveAllNear(moved, previous);
  double alternativeDistance = MoveAllNear(alternative, previous);
  return currentDistance > alternativeDistance ? alternative : moved;
}

Vector HostToSceneVector(double x, double y, double z) { return {x, 0.0 - y, z}; }
