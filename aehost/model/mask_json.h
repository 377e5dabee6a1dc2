// Masks in the project description, and the options of text on a mask path.
#pragma once

#include <cstddef>
#include <vector>

#include <json/json.h>

#include "aehost/model/description_reading.h"

namespace aehost::description {

std::vector<Mask> ReadMasks(const In& at);
TextPathOptions ReadPathOptions(const In& at, std::size_t maskCount);
Json::Value WriteMasks(const std::vector<Mask>& masks);
Json::Value WritePathOptions(const TextPathOptions& options);

}  // namespace aehost::description
