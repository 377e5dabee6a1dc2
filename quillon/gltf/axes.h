// The change of axes between the scene and glTF. The scene is left-handed: x right, y up, z
// away from the viewer, and cameras and lights look along their +z. glTF is right-handed: x
// right, y up, z towards the viewer, and cameras and lights look along their -z. Mirroring z
// maps one onto the other: a point (x, y, z) becomes (x, y, -z) and a matrix M becomes F M F
// with F = diag(1, 1, -1). That keeps every look direction: what M turns to the scene's +z,
// F M F turns to glTF's -z. Lengths stay as they are: one unit is one composition pixel.
#pragma once

#include <array>

#include "plugin/engine/engine_values.h"

namespace quillon::gltf {

Vector ToGltfPoint(const Vector& scenePoint);
Matrix ToGltfMatrix(const Matrix& sceneMatrix);

// A glTF node transform: translation, rotation as a unit quaternion (x, y, z, w), scale.
struct Trs {
  std::array<double, 3> translation{0.0, 0.0, 0.0};
  std::array<double, 4> rotation{0.0, 0.0, 0.0, 1.0};
  std::array<double, 3> scale{1.0, 1.0, 1.0};
};

// Splits an affine matrix into translation, rotation and scale. A mirrored matrix keeps its
// handedness in a negative z scale; an axis of length 0 gets a rotation from the others.
Trs DecomposeTrs(const Matrix& matrix);
// Of q and -q, which turn alike, the one nearer to previous, so that a sampled rotation
// never turns the long way round between two keys.
std::array<double, 4> NearerQuaternion(const std::array<double, 4>& previous, const std::array<double, 4>& q);

}  // namespace quillon::gltf
