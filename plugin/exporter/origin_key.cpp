#include "plugin/exporter/origin_key.h"

namespace {
constexpr char kLayerNamePrefix[] = "AE ";
constexpr size_t kLayerNamePrefixLength = sizeof(kLayerNamePrefix) - 1;
}  // namespace

std::string BuildOriginKeyText(const std::string& projectName, const std::string& targetLeaf,
                               const std::optional<OriginKeyLayer>& layer) {
  std::string key = "AFX:" + projectName + ".ORY:" + targetLeaf;
  if (!layer) return key;
  if (layer->source) {
    key += "." + std::to_string(layer->source->itemId) + "-" + std::to_string(layer->source->itemType);
  }
  key += "." + std::to_string(layer->layerId) + "-" + std::to_string(layer->objectType);
  return key;
}

std::string BuildLayerNameText(const std::string& layerName, const std::string& sourceName) {
  return kLayerNamePrefix + (layerName.empty() ? sourceName : layerName);
}

std::string DisplayNameOf(const std::string& layerNameText) {
  if (layerNameText.size() <= kLayerNamePrefixLength) return layerNameText;
  return layerNameText.substr(kLayerNamePrefixLength);
}
