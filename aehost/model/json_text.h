// JSON text in the canonical layout of the project description.
#pragma once

#include <string>

#include <json/json.h>

namespace aehost {

// Two-space indentation, object keys sorted, arrays of plain numbers on one
// line, and numbers in the shortest form that reads back to the same double.
// Throws std::domain_error for a number that is not finite, naming its place.
std::string FormatJson(const Json::Value& value);

}  // namespace aehost
