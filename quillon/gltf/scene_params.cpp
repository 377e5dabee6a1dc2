#include "quillon/gltf/scene_params.h"

#include "quillon/model/animation.h"

namespace quillon::gltf {
namespace {

const DataValue* Find(const Node& node, int32_t id) {
  const auto found = node.params.find(id);
  return found == node.params.end() ? nullptr : &found->second.raw;
}

}  // namespace

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

bool HasKeyedTrack(Node& node, int32_t id) {
  for (Track* track : TracksOf(node)) {
    if (!track->path.empty() && track->path[0].id == id && track->curve && track->curve->keys.size() > 0) return true;
  }
  return false;
}

}  // namespace quillon::gltf
