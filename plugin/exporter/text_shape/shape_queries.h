#pragma once
// The query scripts that look into a shape layer's property tree: its groups, what a group
// holds, its colours (fill or stroke, solid or gradient, over or under, animated or not) and
// the keys of its colours and paths. Like the text queries (script_queries.h) each is a
// template ending in "getLayerData(%d);" and a wire format with the host's script engine:
// wording, blanks, tabs and line ends are fixed. The group templates begin with the
// function getShapeLayerGroup, which finds the group by its one-based place in the layer's
// "ADBE Root Vectors Group".
#include <cstdint>
#include <string>
#include <vector>

#include "plugin/exporter/ae_to_ory.h"
#include "plugin/exporter/text_shape/shape_styles.h"

// The function getShapeLayerGroup for the top-level group `group` (from 0).
std::string BuildShapeGroupPrologue(int32_t group, const std::vector<CompStackEntry>& compStack);

// `member` of the layer's "ADBE Root Vectors Group"; "0" for a layer that is no shape layer.
std::string BuildRootVectorsQuery(const std::string& member, const std::vector<CompStackEntry>& compStack);

// `member` of the group itself.
std::string BuildGroupQuery(int32_t group, const std::string& member, const std::vector<CompStackEntry>& compStack);

// The names of the group's items: "X:" then each name followed by " - ".
std::string BuildGroupItemList(int32_t group, const std::vector<CompStackEntry>& compStack);

// `member` of the colour `property` ("Fill Color", "Stroke Color") of the first paint
// `attribute` ("Fill", "Stroke") of the group, or of its first subgroup that has one.
std::string BuildGroupAttributeQuery(const std::string& attribute, const std::string& property,
                                     const std::string& member, int32_t group,
                                     const std::vector<CompStackEntry>& compStack);

// `member` of the "Path" of every path of the group (or of its first subgroup), as an array.
std::string BuildGroupPathQuery(const std::string& member, int32_t group, const std::vector<CompStackEntry>& compStack);

// `member` of the colour property numbered `entry.shapeNumber` in its group.
std::string BuildShapeColourQuery(const ShapeStyleEntry& entry, const std::string& member,
                                  const std::vector<CompStackEntry>& compStack);

// The inventory of the group's colour properties, one line each (see ListShapeStyles).
std::string BuildShapeStyleInventory(int32_t group, const std::vector<CompStackEntry>& compStack);

// `member` of the shape of mask `maskNumber` (from 0) of a text layer.
std::string BuildMaskQuery(int32_t maskNumber, const std::string& member, const std::vector<CompStackEntry>& compStack);
