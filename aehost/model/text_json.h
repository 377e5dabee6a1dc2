// Text layers in the project description: the source text, its documents by key and its animators.
#pragma once

#include <json/json.h>

#include "aehost/model/description_reading.h"

namespace aehost::description {

SourceText ReadSourceText(const In& at);
Json::Value WriteSourceText(const SourceText& source);

}  // namespace aehost::description
