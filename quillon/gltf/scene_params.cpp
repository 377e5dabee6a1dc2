#include "quillon/gltf/scene_params.h"

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/animation.h"
#include "quillon/model/links.h"

namespace quillon::gltf {
namespace {

const DataValue* Find(const Node& node, int32_t id) {
  const auto found = node.params.find(id);
  return found == node.params.end() ? nullptr : &found->second.raw;
}

}  // namespace

double FloatParam(const Node& node, int32_t id, double fallback) {
  const DataValue* value = Find(node, id);
  if (!value) return fallback;
  if (value->kind == DataKind_Float) return AsFloat(*value);
  if (value->kind == DataKind_Int32) return AsInt32(*value);
  return fallback;
}

int32_t IntParam(const Node& node, int32_t id, int32_t fallback) {
  const DataValue* value = Find(node, id);
  return value && value->kind == DataKind_Int32 ? AsInt32(*value) : fallback;
}

bool BoolParam(const Node& node, int32_t id, bool fallback) {
  const DataValue* value = Find(node, id);
  if (!value) return fallback;
  if (value->kind == DataKind_Bool) return value->payload.int64 != 0;
  if (value->kind == DataKind_Int32) return AsInt32(*value) != 0;
  return fallback;
}

Vector VectorParam(const Node& node, int32_t id, const Vector& fallback) {
  const DataValue* value = Find(node, id);
  const Vector* vector = value ? AsVector(*value) : nullptr;
  return vector ? *vector : fallback;
}

BaseTime TimeParam(const Node& node, int32_t id, const BaseTime& fallback) {
  const DataValue* value = Find(node, id);
  const BaseTime* time = value ? AsTime(*value) : nullptr;
  return time ? *time : fallback;
}

std::string TextParam(const Node& node, int32_t id) {
  const DataValue* value = Find(node, id);
  if (!value) return "";
  if (const Filename* file = AsFilename(*value)) return PathOf(*file);
  return ToUtf8(AsText(*value));
}

Node* LinkParam(const Document& document, const Node& node, int32_t id) {
  const DataValue* value = Find(node, id);
  const LinkData* link = value ? AsLink(*value) : nullptr;
  return link ? ResolveLinkIn(link->targetId, &document) : nullptr;
}

bool HasKeyedTrack(Node& node, int32_t id) {
  for (Track* track : TracksOf(node)) {
    if (!track->path.empty() && track->path[0].id == id && track->curve && track->curve->keys.size() > 0) return true;
  }
  return false;
}

}  // namespace quillon::gltf
