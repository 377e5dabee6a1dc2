#include "aehost/model/edit.h"

#include <algorithm>

#include "aehost/model/evaluate.h"

namespace aehost {
namespace {

Item& AddItem(Project& project, ItemKind kind, const std::string& name, int folderId) {
  auto item = std::make_unique<Item>();
  item->id = NewItemId(project);
  item->kind = kind;
  item->name = name;
  item->folderId = folderId;
  project.items.push_back(std::move(item));
  return *project.items.back();
}

// The folder in the root that the host keeps solids in, made on first use.
int SolidsFolder(Project& project) {
  for (const auto& item : project.items) {
    if (item->kind == ItemKind::Folder && item->folderId == kRootFolderId &&
        item->name == "Solids") {
      return item->id;
    }
  }
  return AddFolder(project, "Solids").id;
}

Layer& InsertOnTop(Project& project, Item& comp, LayerObjectType type, const std::string& name,
                   int sourceId) {
  auto layer = std::make_unique<Layer>();
  layer->id = NewLayerId(project);
  layer->name = name;
  layer->objectType = type;
  layer->sourceId = sourceId;
  layer->duration = comp.duration;
  auto& layers = comp.comp.layers;
  layers.insert(layers.begin(), std::move(layer));
  return *layers.front();
}

// Cameras and lights are three-dimensional and look at their point of
// interest, which stands at `center` in the plane z = 0.
Layer& AddViewer(Project& project, Item& comp, LayerObjectType type, const std::string& name,
                 double centerX, double centerY) {
  Layer& layer = InsertOnTop(project, comp, type, name, 0);
  layer.switches.threeD = true;
  layer.switches.autoOrient = AutoOrient::TowardsPointOfInterest;
  SetStreamValue(project, comp, layer, LayerStream::AnchorPoint, MakeValue(centerX, centerY, 0.0));
  SetStreamValue(project, comp, layer, LayerStream::Position,
                 MakeValue(centerX, centerY, -DefaultCameraZoom(comp)));
  return layer;
}

}  // namespace

Item& AddFolder(Project& project, const std::string& name, int folderId) {
  return AddItem(project, ItemKind::Folder, name, folderId);
}

Item& AddComp(Project& project, const std::string& name, int width, int height,
              double pixelAspect, double duration, double frameRate, int folderId) {
  Item& item = AddItem(project, ItemKind::Composition, name, folderId);
  item.width = width;
  item.height = height;
  item.pixelAspect = pixelAspect;
  item.duration = duration;
  item.frameRate = frameRate;
  item.comp.workAreaDuration = duration;
  return item;
}

Item& AddSolid(Project& project, const std::string& name, int width, int height,
               const Value& color) {
  const int folder = SolidsFolder(project);
  Item& item = AddItem(project, ItemKind::Footage, name, folder);
  item.width = width;
  item.height = height;
  item.footage.kind = FootageKind::Solid;
  item.footage.color = color;
  return item;
}

Layer& AddLayer(Project& project, Item& comp, const Item& source) {
  return InsertOnTop(project, comp, LayerObjectType::AudioVideo, "", source.id);
}

Layer& AddSolidLayer(Project& project, Item& comp, const std::string& name, int width,
                     int height, const Value& color) {
  const Item& solid = AddSolid(project, name, width, height, color);
  return AddLayer(project, comp, solid);
}

Layer& AddNullLayer(Project& project, Item& comp, const std::string& name) {
  const Item& solid = AddSolid(project, name, 100, 100, MakeValue(1.0, 1.0, 1.0, 1.0));
  Layer& layer = AddLayer(project, comp, solid);
  layer.switches.nullLayer = true;
  return layer;
}

Layer& AddCameraLayer(Project& project, Item& comp, const std::string& name, double centerX,
                      double centerY) {
  return AddViewer(project, comp, LayerObjectType::Camera, name, centerX, centerY);
}

Layer& AddLightLayer(Project& project, Item& comp, const std::string& name, double centerX,
                     double centerY) {
  return AddViewer(project, comp, LayerObjectType::Light, name, centerX, centerY);
}

Stream& EnsureStream(Project& project, Item& comp, Layer& layer, LayerStream id) {
  auto found = layer.streams.find(id);
  if (found != layer.streams.end()) return found->second;
  return layer.streams.emplace(id, DefaultStream(project, comp, layer, id)).first->second;
}

void SetStreamValue(Project& project, Item& comp, Layer& layer, LayerStream id,
                    const Value& value) {
  EnsureStream(project, comp, layer, id).value = value;
}

int AddKeyframe(Stream& stream, double time, const Value& value) {
  auto& keys = stream.keys;
  const auto at = std::lower_bound(keys.begin(), keys.end(), time,
                                   [](const Keyframe& key, double t) { return key.time < t; });
  if (at != keys.end() && at->time == time) {
    at->value = value;
    return static_cast<int>(at - keys.begin());
  }
  Keyframe key;
  key.time = time;
  key.value = value;
  const auto inserted = keys.insert(at, key);
  return static_cast<int>(inserted - keys.begin());
}

void SeparatePosition(Project& project, Item& comp, Layer& layer) {
  const Stream position = EnsureStream(project, comp, layer, LayerStream::Position);
  layer.positionSeparated = true;
  for (int dimension = 0; dimension < 3; ++dimension) {
    Stream& follower = EnsureStream(project, comp, layer, PositionFollower(dimension));
    follower.value = MakeValue(position.value[dimension]);
    follower.keys.clear();
    for (const Keyframe& key : position.keys) {
      Keyframe component = key;
      component.value = MakeValue(key.value[dimension]);
      component.inTangent = Value{};
      component.outTangent = Value{};
      follower.keys.push_back(component);
    }
  }
}

}  // namespace aehost
