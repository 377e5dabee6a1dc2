#pragma once
// The texts by which an exported node is found again and by which the user sees it.
//
// The origin key names the project, the target file, the source item and the layer, so that it
// tells every node of an export apart while display names need not be unique.
#include <cstdint>
#include <optional>
#include <string>

struct OriginKeySource {
  int32_t itemId = 0;
  int32_t itemType = 0;
};

struct OriginKeyLayer {
  int32_t layerId = 0;
  int32_t objectType = 0;
  std::optional<OriginKeySource> source;
};

// "AFX:<project>.ORY:<target>[.<item id>-<item type>].<layer id>-<object type>"; with no layer
// only the part before the first bracket.
std::string BuildOriginKeyText(const std::string& projectName, const std::string& targetLeaf,
                               const std::optional<OriginKeyLayer>& layer);

// "AE " and the layer's name, or its source's name when the layer has none.
std::string BuildLayerNameText(const std::string& layerName, const std::string& sourceName);

// What a factory names the node: the text without its "AE " prefix, unless nothing follows it.
std::string DisplayNameOf(const std::string& layerNameText);
