#pragma once
// The factories through which every scene node that stands for a layer is made. Each gives the
// node its display name and its origin key, and looks for the key first, so that a node that
// exists already (a precomposition used twice) is reused instead of made again.
#include <string>

#include "plugin/exporter/ae_to_ory.h"

// False when the project has no file name. `name` keeps its "AE " prefix here.
bool BuildNameAndKey(AEToOry& exporter, AEGP_LayerH layer, std::string* name, std::string* key);

// The object that this export made with `key`, or a new one of `type` with that key and not
// yet inserted (`made` tells which). Out of memory is fatal for the export.
BaseObject* FindOrAllocObject(AEToOry& exporter, const std::string& key, int32_t type, bool* made);

// The object of a layer: one that the factories made, else the first in the document that
// holds the layer id (objects made elsewhere, such as the parts of text and shape layers).
BaseObject* FindLayerObject(AEToOry& exporter, int32_t layerId);

BaseObject* CreateLayerObject(AEToOry& exporter, AEGP_LayerH layer, int32_t type, bool insert);

// One of the objects of a text or shape layer, of which one layer has many: the layer's name
// and key with "-" and `suffix` behind them (`appendSuffix`), or `suffix` alone. An object
// with that key below `parent` is reused; a new one goes first under `parent` when `insert`.
// `made`, when given, tells whether the object is new.
BaseObject* CreateChildObject(AEToOry& exporter, BaseObject* parent, AEGP_LayerH layer, const std::string& suffix,
                              int32_t type, bool insert, bool appendSuffix, bool* made = nullptr);
SceneLayer* CreateDocLayer(AEToOry& exporter, AEGP_LayerH layer, bool insert);

// The name and key of `layer` with the name's prefix cut; a project without a file name
// cannot give keys, the user is told to save it, and the export ends.
void NameAndKeyOrThrow(AEToOry& exporter, AEGP_LayerH layer, std::string* name, std::string* key);
void InsertLayer(BaseDocument* document, SceneLayer* layer);

// Depth first from `first` (its own test, then its children, then its siblings); null when no
// node holds the key or the layer id.
SceneNode* FindByKey(SceneNode* first, const std::string& key);
BaseObject* FindByLayerId(BaseObject* first, int32_t layerId);
