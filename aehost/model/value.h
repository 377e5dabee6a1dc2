// Values of the host's project model: a stream value of up to four doubles
// and the 4x4 matrix of layer transforms.
#pragma once

#include <array>

namespace aehost {

// One sample of a stream. One-dimensional streams use v[0]; vectors use
// v[0..2] as x, y, z; colours use v[0..3] as red, green, blue, alpha
// (the suites reorder to the host's alpha-first colour on the way out).
struct Value {
  std::array<double, 4> v{};

  double& operator[](int i) { return v[static_cast<std::size_t>(i)]; }
  double operator[](int i) const { return v[static_cast<std::size_t>(i)]; }
  bool operator==(const Value&) const = default;
};

inline Value MakeValue(double x, double y = 0.0, double z = 0.0, double w = 0.0) {
  Value value;
  value.v = {x, y, z, w};
  return value;
}

// Row-vector matrix, laid out like the host's A_Matrix4: m[row][column],
// a point transforms as p' = p * M, rows 0..2 are the x, y and z axes of the
// transformed frame and row 3 is the translation.
struct Matrix4 {
  double m[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
};

}  // namespace aehost
