// Layer matrices with After Effects' conventions, as its Help describes them
// ("3D layers", "Rotate or orient a 3D layer", "Parent and child layers",
// "Camera and light layers") and as its layers behave:
//
// - Layer space: source pixels, origin at the top left, x right, y down,
//   z away from the viewer. Composition space is the same with the origin
//   at the composition's top left. Angles are in degrees.
// - A layer's point p goes to its parent's space as
//     p * T(-anchor) * S(scale / 100) * R * T(position)
//   (row vectors, as the host's A_Matrix4), and from there through the
//   parent's own matrix: a child's position lives in its parent's layer space.
// - R holds orientation and X, Y, Z rotation. Orientation turns the layer's
//   frame, and the X, Y, Z rotations turn the layer inside that frame. Both
//   sets of angles compose as the column-vector product Rx * Ry * Rz, so a
//   point is turned about Z first, then Y, then X: a layer laid flat with
//   X Rotation 90 turns like a turntable under Z Rotation, as in the host.
//   LayerRotation below is the one place that fixes this order.
// - Cameras and lights that auto-orient towards their point of interest get
//   a look-at frame outside R: orientation and rotation then turn them
//   relative to the direction of the point of interest.
// - Two-dimensional layers use only Z rotation and the x, y components.
#include "aehost/model/transform.h"

#include <cmath>

#include "aehost/model/evaluate.h"

namespace aehost {
namespace {

constexpr double kRadians = 3.14159265358979323846 / 180.0;

Value Cross(const Value& a, const Value& b) {
  Value out;
  out[0] = a[1] * b[2] - a[2] * b[1];
  out[1] = a[2] * b[0] - a[0] * b[2];
  out[2] = a[0] * b[1] - a[1] * b[0];
  return out;
}

double Length(const Value& v) { return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]); }

Value Normalized(const Value& v) {
  const double length = Length(v);
  Value out;
  for (int i = 0; i < 3; ++i) out[i] = v[i] / length;
  return out;
}

// A right-handed turn that takes axis `a` towards axis `b`, in row form.
Matrix4 AxisRotation(double degrees, int a, int b) {
  const double c = std::cos(degrees * kRadians), s = std::sin(degrees * kRadians);
  Matrix4 out;
  out.m[a][a] = c;
  out.m[a][b] = s;
  out.m[b][a] = -s;
  out.m[b][b] = c;
  return out;
}

bool IsCameraOrLight(const Layer& layer) {
  return layer.objectType == LayerObjectType::Camera ||
         layer.objectType == LayerObjectType::Light;
}

}  // namespace

double CompTimeToLayerTime(const Layer& layer, double compTime) {
  return (compTime - layer.startTime) / layer.stretch;
}

double LayerTimeToCompTime(const Layer& layer, double layerTime) {
  return layer.startTime + layerTime * layer.stretch;
}

Matrix4 Multiply(const Matrix4& a, const Matrix4& b) {
  Matrix4 out;
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) {
      double sum = 0.0;
      for (int k = 0; k < 4; ++k) sum += a.m[r][k] * b.m[k][c];
      out.m[r][c] = sum;
    }
  }
  return out;
}

Matrix4 Translation(double x, double y, double z) {
  Matrix4 out;
  out.m[3][0] = x;
  out.m[3][1] = y;
  out.m[3][2] = z;
  return out;
}

Matrix4 Scaling(double x, double y, double z) {
  Matrix4 out;
  out.m[0][0] = x;
  out.m[1][1] = y;
  out.m[2][2] = z;
  return out;
}

Matrix4 RotationX(double degrees) { return AxisRotation(degrees, 1, 2); }
Matrix4 RotationY(double degrees) { return AxisRotation(degrees, 2, 0); }
Matrix4 RotationZ(double degrees) { return AxisRotation(degrees, 0, 1); }

Matrix4 LayerRotation(const Value& orientation, double rx, double ry, double rz) {
  // Row-vector form of O * Rx * Ry * Rz with O = Ox * Oy * Oz: the point is
  // turned by Z, Y, X rotation, then by the orientation's Z, Y, X angles.
  Matrix4 m = Multiply(RotationZ(rz), RotationY(ry));
  m = Multiply(m, RotationX(rx));
  m = Multiply(m, RotationZ(orientation[2]));
  m = Multiply(m, RotationY(orientation[1]));
  return Multiply(m, RotationX(orientation[0]));
}

Matrix4 LookAt(const Value& position, const Value& target) {
  Value direction;
  for (int i = 0; i < 3; ++i) direction[i] = target[i] - position[i];
  Matrix4 out;
  if (Length(direction) < 1e-9) return out;
  const Value z = Normalized(direction);
  Value x = Cross(MakeValue(0.0, 1.0), z);
  if (Length(x) < 1e-9) {
    // Looking straight up or down: keep the x axis of the composition.
    x = MakeValue(1.0);
  } else {
    x = Normalized(x);
  }
  const Value y = Cross(z, x);
  for (int c = 0; c < 3; ++c) {
    out.m[0][c] = x[c];
    out.m[1][c] = y[c];
    out.m[2][c] = z[c];
  }
  return out;
}

Value LayerPosition(const Project& project, const Item& comp, const Layer& layer, double compTime) {
  // A layer without a place of its own (an ambient light) stands at the origin of its parent.
  const auto value = [&](LayerStream id) {
    return IsStreamLegal(layer, id) ? EvaluateStream(project, comp, layer, id, compTime) : Value{};
  };
  if (!layer.positionSeparated) return value(LayerStream::Position);
  return MakeValue(value(LayerStream::XPosition)[0], value(LayerStream::YPosition)[0],
                   value(LayerStream::ZPosition)[0]);
}

Matrix4 LayerToParent(const Project& project, const Item& comp, const Layer& layer,
                      double compTime) {
  auto value = [&](LayerStream id) {
    return IsStreamLegal(layer, id) ? EvaluateStream(project, comp, layer, id, compTime)
                                    : Value{};
  };
  const bool cameraOrLight = IsCameraOrLight(layer);
  const bool threeD = cameraOrLight || layer.switches.threeD;
  Value position = LayerPosition(project, comp, layer, compTime);
  Value orientation;
  double rx = 0.0, ry = 0.0;
  if (threeD) {
    orientation = value(LayerStream::Orientation);
    rx = value(LayerStream::RotationX)[0];
    ry = value(LayerStream::RotationY)[0];
  } else {
    position[2] = 0.0;
  }
  const Matrix4 rotation = LayerRotation(orientation, rx, ry, value(LayerStream::RotationZ)[0]);
  if (cameraOrLight) {
    Matrix4 m = rotation;
    if (layer.switches.autoOrient == AutoOrient::TowardsPointOfInterest &&
        IsStreamLegal(layer, LayerStream::AnchorPoint)) {
      m = Multiply(m, LookAt(position, value(LayerStream::AnchorPoint)));
    }
    return Multiply(m, Translation(position[0], position[1], position[2]));
  }
  Value anchor = value(LayerStream::AnchorPoint);
  Value scale = value(LayerStream::Scale);
  if (!threeD) {
    anchor[2] = 0.0;
    scale[2] = 100.0;
  }
  Matrix4 m = Translation(-anchor[0], -anchor[1], -anchor[2]);
  m = Multiply(m, Scaling(scale[0] / 100.0, scale[1] / 100.0, scale[2] / 100.0));
  m = Multiply(m, rotation);
  return Multiply(m, Translation(position[0], position[1], position[2]));
}

Matrix4 LayerToWorld(const Project& project, const Item& comp, const Layer& layer,
                     double compTime) {
  Matrix4 m = LayerToParent(project, comp, layer, compTime);
  const Layer* current = &layer;
  // A description never holds a parent cycle; the bound keeps a broken
  // model from looping.
  for (std::size_t depth = 0; depth < comp.comp.layers.size() && current->parentId != 0;
       ++depth) {
    const Layer* parent = FindLayer(comp, current->parentId);
    if (parent == nullptr) break;
    m = Multiply(m, LayerToParent(project, comp, *parent, compTime));
    current = parent;
  }
  return m;
}

}  // namespace aehost
