// Streams in the project description: a bare value, or keys, an expression and its switch.
#pragma once

#include <span>

#include <json/json.h>

#include "aehost/model/description_reading.h"

namespace aehost::description {

Value ReadValue(const In& at, StreamKind kind);
Value ReadColor(const In& at);
Stream ReadStreamOfKind(const In& at, StreamKind kind);
Stream ReadStream(const In& at, LayerStream id);
void ReadStreamGroup(const In& at, std::span<const Name<LayerStream>> names, Layer& layer);
Json::Value WriteValue(const Value& value, StreamKind kind);
Json::Value WriteColor(const Value& value);
Json::Value WriteStream(const Stream& stream);
void WriteStreamGroup(const Layer& layer, std::span<const Name<LayerStream>> names,
                      Json::Value& group);

}  // namespace aehost::description
