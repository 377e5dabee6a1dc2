// Streams of the project description, read and written.
#include "aehost/model/stream_json.h"

#include <algorithm>
#include <utility>

namespace aehost::description {
namespace {

void ReadEases(const In& at, StreamKind kind, std::array<Ease, 3>& eases) {
  const Json::Value& array = RequireArray(at);
  const int dims = TemporalDimensions(kind);
  if (static_cast<int>(array.size()) != dims) {
    Fail(at, "expected " + std::to_string(dims) + " eases, one a temporal dimension");
  }
  for (int i = 0; i < dims; ++i) {
    const In ease = Element(at, static_cast<Json::ArrayIndex>(i));
    RequireObject(ease, {"speed", "influence"});
    Read(ease, "speed", eases[static_cast<std::size_t>(i)].speed);
    if (Has(ease, "influence")) {
      eases[static_cast<std::size_t>(i)].influence =
          NumberIn(Member(ease, "influence"), 0.1, 100.0);
    }
  }
}

bool IsSpatial(StreamKind kind) {
  return kind == StreamKind::TwoDSpatial || kind == StreamKind::ThreeDSpatial;
}

Keyframe ReadKey(const In& at, StreamKind kind) {
  if (IsSpatial(kind)) {
    RequireObject(at, {"time", "value", "in", "out", "easeIn", "easeOut", "inTangent",
                       "outTangent"});
  } else {
    RequireObject(at, {"time", "value", "in", "out", "easeIn", "easeOut"});
  }
  RequireMember(at, "time");
  RequireMember(at, "value");
  Keyframe key;
  key.time = Seconds(Member(at, "time"));
  key.value = ReadValue(Member(at, "value"), kind);
  if (Has(at, "in")) key.in = Choice(Member(at, "in"), kInterpolations);
  if (Has(at, "out")) key.out = Choice(Member(at, "out"), kInterpolations);
  if (Has(at, "easeIn")) ReadEases(Member(at, "easeIn"), kind, key.easeIn);
  if (Has(at, "easeOut")) ReadEases(Member(at, "easeOut"), kind, key.easeOut);
  if (Has(at, "inTangent")) key.inTangent = ReadValue(Member(at, "inTangent"), kind);
  if (Has(at, "outTangent")) key.outTangent = ReadValue(Member(at, "outTangent"), kind);
  return key;
}

std::vector<Keyframe> ReadKeys(const In& at, StreamKind kind) {
  std::vector<Keyframe> keys;
  const Json::Value& array = RequireArray(at);
  for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
    const In element = Element(at, i);
    keys.push_back(ReadKey(element, kind));
    if (i > 0 && keys[i].time <= keys[i - 1].time) {
      Fail(Member(element, "time"), "keys must follow each other in time");
    }
  }
  return keys;
}

void WriteEases(Json::Value& key, const char* name, const std::array<Ease, 3>& eases,
                StreamKind kind) {
  const int dims = TemporalDimensions(kind);
  bool plain = true;
  for (int i = 0; i < dims; ++i) plain = plain && eases[static_cast<std::size_t>(i)] == Ease{};
  if (plain) return;
  Json::Value array(Json::arrayValue);
  for (int i = 0; i < dims; ++i) {
    const Ease& ease = eases[static_cast<std::size_t>(i)];
    Json::Value entry(Json::objectValue);
    if (ease.speed != Ease{}.speed) entry["speed"] = ease.speed;
    if (ease.influence != Ease{}.influence) entry["influence"] = ease.influence;
    array.append(std::move(entry));
  }
  key[name] = std::move(array);
}

Json::Value WriteKey(const Keyframe& key, StreamKind kind) {
  Json::Value out(Json::objectValue);
  out["time"] = key.time;
  out["value"] = WriteValue(key.value, kind);
  if (key.in != Interpolation::Linear) out["in"] = TextOf(kInterpolations, key.in);
  if (key.out != Interpolation::Linear) out["out"] = TextOf(kInterpolations, key.out);
  WriteEases(out, "easeIn", key.easeIn, kind);
  WriteEases(out, "easeOut", key.easeOut, kind);
  if (key.inTangent != Value{}) out["inTangent"] = WriteValue(key.inTangent, kind);
  if (key.outTangent != Value{}) out["outTangent"] = WriteValue(key.outTangent, kind);
  return out;
}

}  // namespace

Value ReadValue(const In& at, StreamKind kind) {
  Value value;
  const int dims = Dimensions(kind);
  if (dims == 1) {
    value[0] = Number(at);
    return value;
  }
  const Json::Value& array = RequireArray(at);
  const bool color = kind == StreamKind::Color;
  const auto size = static_cast<int>(array.size());
  if (color ? (size != 3 && size != 4) : size != dims) {
    Fail(at, color ? "expected 3 or 4 numbers (red, green, blue, alpha)"
                   : "expected " + std::to_string(dims) + " numbers");
  }
  if (color) value[3] = 1.0;
  for (int i = 0; i < size; ++i) value[i] = Number(Element(at, static_cast<Json::ArrayIndex>(i)));
  return value;
}

Value ReadColor(const In& at) { return ReadValue(at, StreamKind::Color); }

// A stream is a bare value, or an object with keys and an expression.
Stream ReadStreamOfKind(const In& at, StreamKind kind) {
  Stream stream;
  stream.kind = kind;
  if (!at.value.isObject()) {
    stream.value = ReadValue(at, stream.kind);
    return stream;
  }
  RequireObject(at, {"value", "keys", "expression", "expressionEnabled"});
  if (Has(at, "keys")) stream.keys = ReadKeys(Member(at, "keys"), stream.kind);
  if (Has(at, "value")) {
    stream.value = ReadValue(Member(at, "value"), stream.kind);
  } else if (!stream.keys.empty()) {
    stream.value = stream.keys.front().value;
  } else {
    Fail(at, "a stream needs a \"value\" or \"keys\"");
  }
  Read(at, "expression", stream.expression);
  Read(at, "expressionEnabled", stream.expressionEnabled);
  return stream;
}

Stream ReadStream(const In& at, LayerStream id) { return ReadStreamOfKind(at, StreamKindOf(id)); }

void ReadStreamGroup(const In& at, std::span<const Name<LayerStream>> names, Layer& layer) {
  if (!at.value.isObject()) Fail(at, "expected an object");
  for (const auto& key : at.value.getMemberNames()) {
    const Name<LayerStream>* found = nullptr;
    for (const auto& name : names) {
      if (key == name.text) found = &name;
    }
    if (found == nullptr) Fail(Member(at, key), "unknown key");
    layer.streams[found->value] = ReadStream(Member(at, key), found->value);
  }
}

Json::Value WriteValue(const Value& value, StreamKind kind) {
  const int dims = Dimensions(kind);
  if (dims == 1) return value[0];
  Json::Value array(Json::arrayValue);
  const int count = kind == StreamKind::Color && value[3] == 1.0 ? 3 : dims;
  for (int i = 0; i < count; ++i) array.append(value[i]);
  return array;
}

Json::Value WriteColor(const Value& value) { return WriteValue(value, StreamKind::Color); }

Json::Value WriteStream(const Stream& stream) {
  if (stream.keys.empty() && stream.expression.empty() && stream.expressionEnabled) {
    return WriteValue(stream.value, stream.kind);
  }
  Json::Value out(Json::objectValue);
  if (stream.keys.empty() || stream.value != stream.keys.front().value) {
    out["value"] = WriteValue(stream.value, stream.kind);
  }
  if (!stream.keys.empty()) {
    Json::Value keys(Json::arrayValue);
    for (const auto& key : stream.keys) keys.append(WriteKey(key, stream.kind));
    out["keys"] = std::move(keys);
  }
  if (!stream.expression.empty()) out["expression"] = stream.expression;
  if (!stream.expressionEnabled) out["expressionEnabled"] = false;
  return out;
}

void WriteStreamGroup(const Layer& layer, std::span<const Name<LayerStream>> names,
                      Json::Value& group) {
  for (const auto& name : names) {
    const auto found = layer.streams.find(name.value);
    if (found != layer.streams.end()) group[name.text] = WriteStream(found->second);
  }
}

}  // namespace aehost::description
