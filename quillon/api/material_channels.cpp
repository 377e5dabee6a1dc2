// Tables Mt and Ba: the channels of a material and the shaders they link to. A channel is
// the value of the material's link parameter itself, so it needs no record of its own.
#include "plugin/exporter/scene_ids.h"
#include "quillon/api/handles.h"
#include "quillon/api/session_operations.h"
#include "quillon/api/tables.h"
#include "quillon/model/links.h"

namespace quillon {

namespace {

Node* MaterialNodeOf(const Material* material) {
  Node* node = material ? NodeOf(material) : nullptr;
  return node && node->nodeClass == NodeClass::Material ? node : nullptr;
}

Value* ChannelValueOf(Node* material, int32_t index) {
  if (!material || index < 0) return nullptr;
  auto found = material->params.find(MaterialChannel_Color + index);
  return found != material->params.end() && AsLink(found->second.raw) ? &found->second : nullptr;
}

}  // namespace

MaterialChannel* GetChannel(Material* material, int32_t index) {
  return reinterpret_cast<MaterialChannel*>(ChannelValueOf(MaterialNodeOf(material), index));
}

BaseShader* GetChannelShader(const MaterialChannel* channel) {
  const auto* value = reinterpret_cast<const Value*>(channel);
  const LinkData* link = value ? AsLink(value->raw) : nullptr;
  Node* shader = link ? ResolveLink(link->targetId) : nullptr;
  return shader && shader->nodeClass == NodeClass::Shader ? HandleOf<BaseShader>(shader) : nullptr;
}

bool GetReflectionShaders(Material* material, NodeArray* array) {
  Node* node = MaterialNodeOf(material);
  if (!node || !array) return false;
  array->items.clear();
  MaterialChannel* channel = GetChannel(material, kMaterialChannelReflection);
  if (BaseShader* shader = GetChannelShader(channel)) array->items.push_back(shader);
  return true;
}

}  // namespace quillon
