#include "quillon/api/parameters.h"

#include "plugin/exporter/scene_ids.h"

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

}  // namespace

bool ReadParameter(const Node& node, const std::vector<ParamLevel>& path, DataValue& out) {
  if (path.empty() || path.size() > 2) return false;
  auto found = node.params.find(path[0].id);
  if (found == node.params.end()) return false;
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
