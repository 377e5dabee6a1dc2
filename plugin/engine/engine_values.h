// Plain value types of the scene side: time as a reduced fraction, vectors and
// affine matrices, and the rotation conventions of scene objects. They carry no
// engine behind them, so the plug-in and the engine compile the same code and
// agree on every digit of a key that one side writes and the other reads.
#pragma once

#include <cstdint>

struct BaseTime {
  double numerator = 0.0;
  double denominator = 1.0;

  BaseTime() = default;
  // Rounds both parts to whole numbers (halves away from zero), takes the sign
  // of the quotient, keeps the denominator at least 1 and reduces.
  BaseTime(double n, double d);
};

struct Vector {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

// A point p maps to off + p.x * axisX + p.y * axisY + p.z * axisZ.
struct Matrix {
  Vector off{0.0, 0.0, 0.0};
  Vector axisX{1.0, 0.0, 0.0};
  Vector axisY{0.0, 1.0, 0.0};
  Vector axisZ{0.0, 0.0, 1.0};
};

// Rotation orders as kept on scene objects; 6 is heading, pitch, bank.
constexpr int32_t kRotationOrderHpb = 6;
constexpr int32_t kRotationOrderXyz = 2;
constexpr double kDegreesPerRadian = 57.29577951308232;

void Reduce(BaseTime& time);
int32_t FrameOf(const BaseTime& time, double fps);
BaseTime Add(const BaseTime& a, const BaseTime& b);
// The host's time value / scale seconds; the sign comes from value.
BaseTime FromAeTime(int32_t value, uint32_t scale);
// Exact comparison of two reduced times, for ordered containers.
bool operator==(const BaseTime& a, const BaseTime& b);
bool operator<(const BaseTime& a, const BaseTime& b);
// The time in seconds, for interpolation between keys.
double Seconds(const BaseTime& time);

bool operator==(const Vector& a, const Vector& b);
Vector operator+(const Vector& a, const Vector& b);
Vector operator-(const Vector& a, const Vector& b);
Vector operator*(const Vector& v, double s);
double Dot(const Vector& a, const Vector& b);
Vector Cross(const Vector& a, const Vector& b);
double Length(const Vector& v);
void Normalize(Vector& v);
Vector Normalized(const Vector& v);

bool operator==(const Matrix& a, const Matrix& b);
// The matrix that first applies b, then a.
Matrix Multiply(const Matrix& a, const Matrix& b);
// A singular matrix inverts to the identity.
Matrix Invert(const Matrix& m);
// The linear part of m applied to v, without the offset.
Vector TransformDirection(const Matrix& m, const Vector& v);
Vector TransformPoint(const Matrix& m, const Vector& p);

double ClampedAsin(double x);
Matrix RotationToMatrix(const Vector& rotation, int32_t order);
Vector MatrixToRotation(const Matrix& matrix, int32_t order, bool axesAreNormalized);
// Of the two rotations that give one orientation, the one nearer to previous.
Vector BestAngle(const Vector& previous, const Vector& current, int32_t order);
// The host's y axis points down, the scene's up; the same turn works back.
Vector HostToSceneVector(double x, double y, double z);
