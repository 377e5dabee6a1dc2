// Streams in the project description: a bare value, or keys, an expression and its switch.
#pragma once

#include <span>
#include <vector>

#include <json/json.h>

#include "aehost/model/description_reading.h"
#include "aehost/model/json_writer.h"

namespace aehost::description {

Value ReadValue(const In& at, StreamKind kind);
Value ReadColor(const In& at);
Stream ReadStreamOfKind(const In& at, StreamKind kind);
Stream ReadStream(const In& at, LayerStream id);
void ReadStreamGroup(const In& at, std::span<const Name<LayerStream>> names, Layer& layer);
void WriteValue(JsonOut& out, const Value& value, StreamKind kind);
void WriteStream(JsonOut& out, const Stream& stream);
// The same as trees, for the parts of the description still built as trees.
Json::Value WriteValue(const Value& value, StreamKind kind);
Json::Value WriteColor(const Value& value);
Json::Value WriteStream(const Stream& stream);
// The members a group of streams (such as "transform") has: one for each stream the layer holds.
std::vector<WrittenMember> StreamGroupMembers(const Layer& layer, std::span<const Name<LayerStream>> names);

}  // namespace aehost::description
