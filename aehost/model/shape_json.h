// Shapes in the project description: path shapes and their keys, and the property tree of a shape
// layer.
#pragma once

#include <vector>

#include <json/json.h>

#include "aehost/model/description_reading.h"

namespace aehost::description {

PathStream ReadPathStream(const In& at);
std::vector<ShapeElement> ReadShapeContents(const In& at);
Json::Value WritePathStream(const PathStream& path);
Json::Value WriteShapeElement(const ShapeElement& element);

}  // namespace aehost::description
