#include "aehost/model/model_lookups.h"

#include <functional>
#include <vector>

#include "aehost/model/transform.h"

namespace aehost {
namespace {

// Look-ups made in another project, or before a layer was added, are of no use.
void UseProject(ModelLookups& lookups, const Project& project) {
  if (lookups.project == &project && lookups.layerSerial == project.layerSerial) return;
  lookups.layers.clear();
  lookups.parentIds.clear();
  lookups.worlds.clear();
  lookups.project = &project;
  lookups.layerSerial = project.layerSerial;
}

void IndexLayers(ModelLookups& lookups, Project& project) {
  for (const auto& item : project.items) {
    if (item->kind != ItemKind::Composition) continue;
    for (const auto& layer : item->comp.layers) {
      lookups.layers.emplace(layer->id, LayerAndComp{item.get(), layer.get()});
      if (layer->parentId != 0) lookups.parentIds.insert(layer->parentId);
    }
  }
}

void EnsureIndexed(ModelLookups& lookups, Project& project) {
  UseProject(lookups, project);
  if (lookups.layers.empty()) IndexLayers(lookups, project);
}

bool IsAParent(const ModelLookups& lookups, const Layer& layer) { return lookups.parentIds.count(layer.id) != 0; }

const Layer* ParentInComp(ModelLookups& lookups, Project& project, const Item& comp, const Layer& layer) {
  if (layer.parentId == 0) return nullptr;
  const LayerAndComp parent = LookUpLayer(lookups, project, layer.parentId);
  return parent.comp == &comp ? parent.layer : nullptr;
}

}  // namespace

std::size_t ModelLookups::Hash::operator()(const LayerAtTime& key) const noexcept {
  return std::hash<const Layer*>()(key.layer) * 31 + std::hash<double>()(key.time);
}

void ForgetLookups(ModelLookups& lookups) {
  if (!lookups.worlds.empty()) lookups.worlds.clear();
}

LayerAndComp LookUpLayer(ModelLookups& lookups, Project& project, int layerId) {
  EnsureIndexed(lookups, project);
  const auto found = lookups.layers.find(layerId);
  return found != lookups.layers.end() ? found->second : LayerAndComp{};
}

Matrix4 LookUpLayerToWorld(ModelLookups& lookups, Project& project, const Item& comp,
                           const Layer& layer, double compTime) {
  EnsureIndexed(lookups, project);
  if (lookups.worlds.size() >= kMaxRememberedMatrices) lookups.worlds.clear();
  // Up the chain to the first layer whose matrix is known, or to the top. The bound keeps a
  // parent loop, which a project never holds, from running for ever.
  std::vector<const Layer*> chain;
  Matrix4 above;  // the known world matrix of the layer above the chain, identity at the top
  for (const Layer* at = &layer; at != nullptr && chain.size() <= comp.comp.layers.size();
       at = ParentInComp(lookups, project, comp, *at)) {
    if (IsAParent(lookups, *at)) {
      const auto known = lookups.worlds.find({at, compTime});
      if (known != lookups.worlds.end()) {
        above = known->second;
        break;
      }
    }
    chain.push_back(at);
  }
  for (auto down = chain.rbegin(); down != chain.rend(); ++down) {
    above = Multiply(LayerToParent(project, comp, **down, compTime), above);
    if (IsAParent(lookups, **down)) lookups.worlds[{*down, compTime}] = above;
  }
  return above;
}

}  // namespace aehost
