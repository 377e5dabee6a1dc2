#pragma once
// The materials of the objects of text and shape layers: standard materials named and keyed
// after their object with "-Material" and an index, so that a second call for the same index
// finds the first material again instead of making another.
#include <string>

#include "plugin/exporter/ae_to_ory.h"

// A texture tag on `object` that links `material`, projected as the exporter projects all its
// materials; null when the tag cannot be made.
BaseTag* LinkMaterialTag(BaseObject* object, Material* material);

// The material named and keyed after `object` with `suffix` behind both, or after `layer` when
// `object` is null or has no key: the one the document holds already, or a new one not yet
// inserted (`made`). Out of memory and a project without a file name end the export (thrown).
Material* FindOrAllocMaterial(AEToOry& exporter, AEGP_LayerH layer, BaseObject* object, const std::string& suffix,
                              bool* made);

// The material `materialIndex` of `object`. A new one is inserted and attached to `object` by
// a texture tag when `assign` is set; without it the caller places it. When `object` is null
// or has no key, name and key come from `layer`. Out of memory and a project without a file
// name end the export (thrown).
Material* GetObjectMaterial(AEToOry& exporter, AEGP_LayerH layer, BaseObject* object, int32_t materialIndex,
                            bool assign);
