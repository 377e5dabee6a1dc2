// Layers and markers in the project description: switches, times, the transform, the camera
// and light groups, and what text, shape and mask layers hold.
#pragma once

#include <memory>
#include <vector>

#include <json/json.h>

#include "aehost/model/description_reading.h"
#include "aehost/model/json_writer.h"

namespace aehost::description {

std::vector<Marker> ReadMarkers(const In& at);
std::unique_ptr<Layer> ReadLayer(const In& at, Item& comp, Pending& pending);
Json::Value WriteMarkers(const std::vector<Marker>& markers);
void WriteLayer(JsonOut& out, const Layer& layer, const Item& comp);

}  // namespace aehost::description
