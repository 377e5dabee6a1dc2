#pragma once
// The names of the scene identifiers, for the dump and for scene descriptions: types of
// objects, tags, materials and shaders, and parameters by the node they are used on
// (1001 is the frame rate on a document and the projection on a camera).
#include <cstdint>
#include <optional>
#include <string>

#include "quillon/model/node.h"

namespace quillon::orytool {

// "ObjectType_Camera" and the like; "" for a type without a name.
std::string TypeName(NodeClass nodeClass, std::int32_t type);
std::optional<std::int32_t> TypeByName(NodeClass nodeClass, const std::string& name);

// "CameraParam_FocalLength" and the like for a parameter of `node`; "" when unknown.
std::string ParamName(const Node& node, std::int32_t id);
std::optional<std::int32_t> ParamByName(const Node& node, const std::string& name);

// The name without its prefix: "Camera" for "ObjectType_Camera".
std::string ShortName(const std::string& name);

}  // namespace quillon::orytool
