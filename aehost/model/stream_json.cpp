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

void WriteEases(JsonOut& out, const char* name, const std::array<Ease, 3>& eases, StreamKind kind) {
  const int dims = TemporalDimensions(kind);
  bool plain = true;
  for (int i = 0; i < dims; ++i) plain = plain && eases[static_cast<std::size_t>(i)] == Ease{};
  if (plain) return;
  out.Key(name);
  out.BeginArray();
  for (int i = 0; i < dims; ++i) {
    const Ease& ease = eases[static_cast<std::size_t>(i)];
    out.BeginObject();
    if (ease.influence != Ease{}.influence) {
      out.Key("influence");
      out.Number(ease.influence);
    }
    if (ease.speed != Ease{}.speed) {
      out.Key("speed");
      out.Number(ease.speed);
    }
    out.EndObject();
  }
  out.EndArray();
}

// Members in sorted order, as the text writer needs them.
void WriteKey(JsonOut& out, const Keyframe& key, StreamKind kind) {
  out.BeginObject();
  WriteEases(out, "easeIn", key.easeIn, kind);
  WriteEases(out, "easeOut", key.easeOut, kind);
  if (key.in != Interpolation::Linear) {
    out.Key("in");
    out.Text(TextOf(kInterpolations, key.in));
  }
  if (key.inTangent != Value{}) {
    out.Key("inTangent");
    WriteValue(out, key.inTangent, kind);
  }
  if (key.out != Interpolation::Linear) {
    out.Key("out");
    out.Text(TextOf(kInterpolations, key.out));
  }
  if (key.outTangent != Value{}) {
    out.Key("outTangent");
    WriteValue(out, key.outTangent, kind);
  }
  out.Key("time");
  out.Number(key.time);
  out.Key("value");
  WriteValue(out, key.value, kind);
  out.EndObject();
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

void WriteValue(JsonOut& out, const Value& value, StreamKind kind) {
  const int dims = Dimensions(kind);
  if (dims == 1) {
    out.Number(value[0]);
    return;
  }
  const int count = kind == StreamKind::Color && value[3] == 1.0 ? 3 : dims;
  out.Numbers(std::span<const double>(value.v.data(), static_cast<std::size_t>(count)));
}

Json::Value WriteValue(const Value& value, StreamKind kind) {
  return BuildTree([&](JsonOut& out) { WriteValue(out, value, kind); });
}

Json::Value WriteColor(const Value& value) { return WriteValue(value, StreamKind::Color); }

void WriteStream(JsonOut& out, const Stream& stream) {
  if (stream.keys.empty() && stream.expression.empty() && stream.expressionEnabled) {
    WriteValue(out, stream.value, stream.kind);
    return;
  }
  out.BeginObject();
  if (!stream.expression.empty()) {
    out.Key("expression");
    out.Text(stream.expression);
  }
  if (!stream.expressionEnabled) {
    out.Key("expressionEnabled");
    out.Bool(false);
  }
  if (!stream.keys.empty()) {
    out.Key("keys");
    out.BeginArray();
    for (const auto& key : stream.keys) WriteKey(out, key, stream.kind);
    out.EndArray();
  }
  if (stream.keys.empty() || stream.value != stream.keys.front().value) {
    out.Key("value");
    WriteValue(out, stream.value, stream.kind);
  }
  out.EndObject();
}

Json::Value WriteStream(const Stream& stream) {
  return BuildTree([&](JsonOut& out) { WriteStream(out, stream); });
}

std::vector<WrittenMember> StreamGroupMembers(const Layer& layer, std::span<const Name<LayerStream>> names) {
  std::vector<WrittenMember> members;
  for (const auto& name : names) {
    const auto found = layer.streams.find(name.value);
    if (found != layer.streams.end()) {
      const Stream& stream = found->second;
      members.push_back({name.text, [&stream](JsonOut& out) { WriteStream(out, stream); }});
    }
  }
  return members;
}

}  // namespace aehost::description
