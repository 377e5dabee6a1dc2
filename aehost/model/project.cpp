#include "aehost/model/project.h"

namespace aehost {

Project NewProject() {
  Project project;
  auto root = std::make_unique<Item>();
  root->id = kRootFolderId;
  root->kind = ItemKind::Folder;
  root->name = "Root";
  root->folderId = -1;
  project.items.push_back(std::move(root));
  return project;
}

Item* FindItem(const Project& project, int id) {
  for (const auto& item : project.items) {
    if (item->id == id) return item.get();
  }
  return nullptr;
}

Layer* FindLayer(const Item& comp, int layerId) {
  for (const auto& layer : comp.comp.layers) {
    if (layer->id == layerId) return layer.get();
  }
  return nullptr;
}

Item* FindLayerComp(const Project& project, const Layer& layer) {
  for (const auto& item : project.items) {
    if (item->kind != ItemKind::Composition) continue;
    for (const auto& candidate : item->comp.layers) {
      if (candidate.get() == &layer) return item.get();
    }
  }
  return nullptr;
}

}  // namespace aehost
