#include "quillon/render/node_values.h"

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/links.h"
#include "quillon/model/value.h"

namespace quillon::render {
namespace {

const DataValue* Find(const ParamSet& values, int32_t id) {
  const auto found = values.find(id);
  return found == values.end() ? nullptr : &found->second.raw;
}

const DataValue* Find(const Node& node, int32_t id) { return Find(node.params, id); }

}  // namespace

double FloatOf(const Node& node, int32_t id, double fallback) { return FloatIn(node.params, id, fallback); }

double FloatIn(const ParamSet& values, int32_t id, double fallback) {
  const DataValue* value = Find(values, id);
  if (value && value->kind == DataKind_Float) return value->payload.float64;
  if (value && value->kind == DataKind_Int32) return value->payload.int32;
  return fallback;
}

int32_t Int32Of(const Node& node, int32_t id, int32_t fallback) {
  const DataValue* value = Find(node, id);
  return value && value->kind == DataKind_Int32 ? value->payload.int32 : fallback;
}

bool BoolOf(const Node& node, int32_t id, bool fallback) {
  const DataValue* value = Find(node, id);
  if (value && value->kind == DataKind_Bool) return value->payload.int64 != 0;
  if (value && value->kind == DataKind_Int32) return value->payload.int32 != 0;
  return fallback;
}

Vector VectorOf(const Node& node, int32_t id, const Vector& fallback) {
  const DataValue* value = Find(node, id);
  const Vector* vector = value ? AsVector(*value) : nullptr;
  return vector ? *vector : fallback;
}

const Filename* FilenameOf(const Node& node, int32_t id) {
  const DataValue* value = Find(node, id);
  return value ? AsFilename(*value) : nullptr;
}

Node* LinkedNodeOf(const Node& node, int32_t id, const Document* document) {
  const DataValue* value = Find(node, id);
  const LinkData* link = value ? AsLink(*value) : nullptr;
  return link ? ResolveLinkIn(link->targetId, document) : nullptr;
}

}  // namespace quillon::render
