// Layer time and layer-to-world matrices with the host's conventions.
#pragma once

#include "aehost/model/project.h"

namespace aehost {

// Layer time of a composition time, and back: layer time 0 lies at the
// layer's start time, and a stretch of 2 makes layer time run at half speed.
// A precomposition layer's layer time is the inner composition's time.
double CompTimeToLayerTime(const Layer& layer, double compTime);
double LayerTimeToCompTime(const Layer& layer, double layerTime);

Matrix4 Multiply(const Matrix4& a, const Matrix4& b);  // a then b for row vectors
Matrix4 Translation(double x, double y, double z);
Matrix4 Scaling(double x, double y, double z);
// Rotations about one axis, degrees; right-handed in the host's frame
// (x right, y down, z away from the viewer), so a positive Z rotation turns
// clockwise on screen.
Matrix4 RotationX(double degrees);
Matrix4 RotationY(double degrees);
Matrix4 RotationZ(double degrees);

// The rotation part of a layer: orientation and X, Y, Z rotation in degrees.
Matrix4 LayerRotation(const Value& orientation, double rx, double ry, double rz);

// The frame of a camera or light at `position` that looks at `target`:
// its z axis points at the target, its x axis stays level (y is down).
Matrix4 LookAt(const Value& position, const Value& target);

// The layer's position at composition time `compTime`, from its followers when separated.
Value LayerPosition(const Project& project, const Item& comp, const Layer& layer, double compTime);

// The layer's own matrix, without its parent: from layer space (pixels of
// the source, origin top left) to the space its position lives in.
Matrix4 LayerToParent(const Project& project, const Item& comp, const Layer& layer,
                      double compTime);

// From layer space to composition space at composition time `compTime`,
// with all parents applied (the host's AEGP_GetLayerToWorldXform).
Matrix4 LayerToWorld(const Project& project, const Item& comp, const Layer& layer,
                     double compTime);

}  // namespace aehost
