#include "quillon/api/parameters.h"

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/animation.h"
#include "quillon/model/document.h"
#include "quillon/model/object.h"

namespace quillon {
namespace {

double* Component(Vector& vector, int32_t id) {
  switch (id) {
    case VectorComponent_X: return &vector.x;
    case VectorComponent_Y: return &vector.y;
    case VectorComponent_Z: return &vector.z;
    default: return nullptr;
  }
}

// A key's value that is no float is its parameter 10003: the payload of a
// spline key, the text of a text key.
bool IsKeyData(const Node& node, const std::vector<ParamLevel>& path) {
  return node.nodeClass == NodeClass::Key && path.size() == 1 && path[0].id == SplineKeyParam_Payload;
}

// A document's parameter DocParam_Time is its current time, the one it is evaluated and
// rendered at, so that a client that sets the parameter moves the picture.
BaseTime* DocumentTimeOf(const Node& node, const std::vector<ParamLevel>& path) {
  if (node.nodeClass != NodeClass::Document || path.size() != 1 || path[0].id != DocParam_Time) return nullptr;
  return &const_cast<Document&>(static_cast<const Document&>(node)).currentTime;
}

}  // namespace

bool ReadParameter(const Node& node, const std::vector<ParamLevel>& path, DataValue& out) {
  if (path.empty() || path.size() > 2) return false;
  if (const BaseTime* time = DocumentTimeOf(node, path)) {
    SetTime(out, *time);
    return true;
  }
  if (IsKeyData(node, path)) {
    const Value& data = static_cast<const Key&>(node).data;
    if (data.kind() == DataKind_Empty) return false;
    CopyData(out, data.raw);
    return true;
  }
  auto found = node.params.find(path[0].id);
  if (found == node.params.end()) {
    const std::optional<double> fallback = path.size() == 1 ? DefaultFloatParameterOf(node, path[0].id) : std::nullopt;
    if (fallback) SetFloat(out, *fallback);
    return fallback.has_value();
  }
  if (path.size() == 1) {
    CopyData(out, found->second.raw);
    return true;
  }
  const Vector* vector = AsVector(found->second.raw);
  if (!vector) return false;
  Vector copy = *vector;
  double* component = Component(copy, path[1].id);
  if (!component) return false;
  SetFloat(out, *component);
  return true;
}

bool WriteParameter(Node& node, const std::vector<ParamLevel>& path, const DataValue& value) {
  if (path.empty() || path.size() > 2) return false;
  if (BaseTime* time = DocumentTimeOf(node, path)) {
    if (!AsTime(value)) return false;
    *time = *AsTime(value);
    return true;
  }
  if (IsKeyData(node, path)) {
    CopyData(static_cast<Key&>(node).data.raw, value);
    return true;
  }
  if (path.size() == 1) {
    CopyData(node.params[path[0].id].raw, value);
    return true;
  }
  Vector vector{};
  auto found = node.params.find(path[0].id);
  if (found != node.params.end()) {
    const Vector* existing = AsVector(found->second.raw);
    if (!existing) return false;
    vector = *existing;
  }
  double* component = Component(vector, path[1].id);
  if (!component) return false;
  *component = AsFloat(value);
  SetVector(node.params[path[0].id].raw, vector);
  return true;
}

bool ReadFloatParameter(const Node& node, const std::vector<ParamLevel>& path, double& out) {
  DataValue value{};
  bool found = ReadParameter(node, path, value);
  bool number = found && (value.kind == DataKind_Float || value.kind == DataKind_Int32 ||
                          value.kind == DataKind_Bool || value.kind == DataKind_Int64);
  if (number) out = AsFloat(value);
  FreeData(value);
  return number;
}

}  // namespace quillon
