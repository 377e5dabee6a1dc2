#pragma once
// The colour properties of a shape group as its inventory script lists them
// (BuildShapeStyleInventory): one line a colour, its flags, then a tab and the name of each
// group from the colour upwards.
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// One colour property found in a group by the inventory script.
struct ShapeStyleEntry {
  std::string path;         // the names of the groups above the colour, innermost first, joined by "-"
  int32_t group = 0;        // the top-level group, from 0
  int32_t shapeNumber = 0;  // the running number of the colour in its group, from 0
  bool isGradient = false;
  bool isOver = false;
  bool include = false;
  bool isAnimated = false;
};

// The inventory reply parsed, one entry a line numbered from 0: a fill on a path
// ("Bezier-" without "Stroke") is kept only when `isGroupPathClosed` says so; an empty reply
// and "undefined" give no entries.
std::vector<ShapeStyleEntry> ParseShapeStyles(const std::string& reply, int32_t group,
                                              const std::function<bool()>& isGroupPathClosed);
