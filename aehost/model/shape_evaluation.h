// A shape layer evaluated at a time into what the host draws: one item for
// each fill or stroke, holding the contours of the paths that come before it
// in its group (those of groups before it included), in layer coordinates
// after the transforms of every group above them.
#pragma once

#include <string>
#include <vector>

#include "aehost/model/layer.h"

namespace aehost {

struct ShapeItem {
  ShapeKind kind = ShapeKind::Fill;  // a fill, stroke or gradient fill
  // Red, green, blue, alpha: the paint's colour (a gradient's start colour),
  // alpha times its opacity.
  Value color;
  std::vector<PathShape> contours;
  bool operator==(const ShapeItem&) const = default;
};

// The items in the order of the tree: depth first, each group's contents from
// the top of its list.
std::vector<ShapeItem> EvaluateShapeLayer(const Layer& layer, double layerTime);

// A text that is equal for two evaluations exactly when the contours of all
// items are: the identity of the shape's form, which ignores colours.
std::string ShapeFormIdentity(const std::vector<ShapeItem>& items);

}  // namespace aehost
