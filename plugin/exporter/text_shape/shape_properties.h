#pragma once
// Readers of a shape layer's property tree through the query scripts of shape_queries.h, by
// the rules of the script property bridge (property_bridge.h): nothing is cached, nothing is
// reported, and a reply that does not come gives the reader's default.
#include <cstdint>
#include <string>
#include <vector>

#include "plugin/exporter/ae_to_ory.h"
#include "plugin/exporter/text_shape/reply_parsing.h"
#include "plugin/exporter/text_shape/shape_queries.h"

// The number of top-level groups, and the name of one (the raw reply).
int GetShapeGroupCount(AEToOry& exporter, AEGP_LayerH layer);
std::string GetShapeGroupName(AEToOry& exporter, AEGP_LayerH layer, int32_t group);

// The colour properties of a top-level group that are drawn, by its inventory script. A fill
// on a group whose path is open is left out; a stroke on it is kept.
std::vector<ShapeStyleEntry> ListShapeStyles(AEToOry& exporter, AEGP_LayerH layer, int32_t group);

// One colour property of ListShapeStyles.
int GetShapeColourNumKeys(AEToOry& exporter, AEGP_LayerH layer, const ShapeStyleEntry& entry);
double GetShapeColourKeyTime(AEToOry& exporter, AEGP_LayerH layer, const ShapeStyleEntry& entry, int keyNumber);
// A gradient reads as opaque white without asking the host.
bool GetShapeColourValue(AEToOry& exporter, AEGP_LayerH layer, const ShapeStyleEntry& entry, const BaseTime* time,
                         TextColour* colour);
bool IsShapeColourAnimated(AEToOry& exporter, AEGP_LayerH layer, const ShapeStyleEntry& entry);

// The colour of the first fill (`stroke` false) or stroke of a group.
int GetAttributeNumKeys(AEToOry& exporter, AEGP_LayerH layer, int32_t group, bool stroke);
double GetAttributeKeyTime(AEToOry& exporter, AEGP_LayerH layer, int32_t group, bool stroke, int keyNumber);
bool GetAttributeColour(AEToOry& exporter, AEGP_LayerH layer, int32_t group, bool stroke, const BaseTime* time,
                        TextColour* colour);
bool IsAttributeAnimated(AEToOry& exporter, AEGP_LayerH layer, int32_t group, bool stroke);
bool HasAttributeColour(AEToOry& exporter, AEGP_LayerH layer, int32_t group, bool stroke);

// The paths of a group: closed (or, when no path says so, stroked), animated, their largest
// key count, and the time of a key in seconds.
bool IsGroupPathClosed(AEToOry& exporter, AEGP_LayerH layer, int32_t group);
bool IsGroupPathAnimated(AEToOry& exporter, AEGP_LayerH layer, int32_t group);
int GetGroupPathNumKeys(AEToOry& exporter, AEGP_LayerH layer, int32_t group);
double GetGroupPathKeyTime(AEToOry& exporter, AEGP_LayerH layer, int32_t group, int keyNumber);
