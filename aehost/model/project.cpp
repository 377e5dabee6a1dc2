#include "aehost/model/project.h"

#include <atomic>
#include <set>
#include <stdexcept>

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

namespace {

int LowestFreeId(const std::set<int>& used) {
  int id = 1;
  for (const int taken : used) {
    if (taken > id) break;
    if (taken == id) ++id;
  }
  if (id > kMaxId) throw std::length_error("the project has no free id left");
  return id;
}

}  // namespace

int NewItemId(Project& project) {
  if (project.nextItemId <= kMaxId) return project.nextItemId++;
  std::set<int> used;
  for (const auto& item : project.items) used.insert(item->id);
  return LowestFreeId(used);
}

std::uint64_t NextLayerSerial() {
  static std::atomic<std::uint64_t> last{0};
  return ++last;
}

int NewLayerId(Project& project) {
  project.layerSerial = NextLayerSerial();
  if (project.nextLayerId <= kMaxId) return project.nextLayerId++;
  std::set<int> used;
  for (const auto& item : project.items) {
    for (const auto& layer : item->comp.layers) used.insert(layer->id);
  }
  return LowestFreeId(used);
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
