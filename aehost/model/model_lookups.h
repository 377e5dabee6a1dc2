// Look-ups that a plug-in repeats thousands of times while it reads a project: layers by id
// and layer-to-world matrices by layer and time. Both are remembered, so that reading every
// layer of a parent chain at every frame costs each layer's own matrix once a frame instead of
// the whole chain above it again. The matrices stand only while nothing changes the project:
// whoever changes it calls ForgetLookups. The index of layers holds until a layer is made.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "aehost/model/project.h"

namespace aehost {

struct LayerAndComp {
  Item* comp = nullptr;
  Layer* layer = nullptr;
};

struct ModelLookups {
  const Project* project = nullptr;  // the project the look-ups were made in
  std::uint64_t layerSerial = 0;     // its layerSerial when its layers were indexed
  std::unordered_map<int, LayerAndComp> layers;  // by layer id, all made at the first look-up
  // Layers that are some layer's parent: only their matrices are asked for again at the same
  // time, so only theirs are remembered.
  std::unordered_set<int> parentIds;
  struct LayerAtTime {
    const Layer* layer;
    double time;
    bool operator==(const LayerAtTime&) const = default;
  };
  struct Hash {
    std::size_t operator()(const LayerAtTime& key) const noexcept;
  };
  std::unordered_map<LayerAtTime, Matrix4, Hash> worlds;
};

// Matrices remembered at most; past it they are forgotten and made again as needed, which
// keeps a long export within memory.
constexpr std::size_t kMaxRememberedMatrices = 1 << 18;

// Forgets the matrices, which any change may move. The index of layers stays while the project
// makes no layer: layers are never removed while a plug-in runs, only added.
void ForgetLookups(ModelLookups& lookups);

// The layer with this id in any composition of the project; nulls when there is none.
LayerAndComp LookUpLayer(ModelLookups& lookups, Project& project, int layerId);

// LayerToWorld, with the matrices of the layer's parents at this time remembered. The chain is
// walked with a loop of its own, never by recursion, and at most once a time.
Matrix4 LookUpLayerToWorld(ModelLookups& lookups, Project& project, const Item& comp,
                           const Layer& layer, double compTime);

}  // namespace aehost
