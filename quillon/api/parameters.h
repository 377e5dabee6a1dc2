// Parameters by path: one level addresses a whole value of a node's set; a
// second level 1000, 1001 or 1002 under a vector addresses one component.
#pragma once

#include <vector>

#include "quillon/model/node.h"

namespace quillon {

bool ReadParameter(const Node& node, const std::vector<ParamLevel>& path, DataValue& out);
bool WriteParameter(Node& node, const std::vector<ParamLevel>& path, const DataValue& value);
// The parameter as a float, for float tracks; false when it is absent or not a number.
bool ReadFloatParameter(const Node& node, const std::vector<ParamLevel>& path, double& out);

}  // namespace quillon
