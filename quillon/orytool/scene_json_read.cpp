// A JSON scene description read into a document. Every problem names the JSON path of
// the item ("$.objects[0].tags[1].params[2].id") and what is wrong with it.
#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <unordered_map>

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/animation.h"
#include "quillon/model/links.h"
#include "quillon/model/scene_states.h"
#include "quillon/model/tag.h"
#include "quillon/orytool/scene_json.h"
#include "quillon/orytool/scene_json_identity.h"
#include "quillon/orytool/scene_names.h"

namespace quillon::orytool {
namespace {

struct JsonProblem : std::runtime_error {
  using std::runtime_error::runtime_error;
};

[[noreturn]] void Fail(const std::string& path, const std::string& problem) {
  throw JsonProblem(path + ": " + problem);
}

std::string At(const std::string& path, const char* key) { return path + "." + key; }
std::string At(const std::string& path, Json::ArrayIndex i) { return path + "[" + std::to_string(i) + "]"; }

using Keys = std::vector<std::string_view>;

void CheckKeys(const Json::Value& v, const std::string& path, const Keys& allowed) {
  if (!v.isObject()) Fail(path, "expected an object");
  for (const std::string& key : v.getMemberNames()) {
    bool known = false;
    for (std::string_view name : allowed) known = known || key == name;
    if (!known) Fail(path, "unknown key \"" + key + "\"");
  }
}

const Json::Value& ArrayAt(const Json::Value& v, const std::string& path) {
  if (!v.isArray()) Fail(path, "expected an array");
  return v;
}

double Number(const Json::Value& v, const std::string& path) {
  if (!v.isNumeric()) Fail(path, "expected a number");
  return v.asDouble();
}

std::int64_t Integer(const Json::Value& v, const std::string& path, std::int64_t low, std::int64_t high) {
  if (!v.isIntegral() || (v.isUInt64() && !v.isInt64())) Fail(path, "expected a whole number");
  const std::int64_t n = v.asInt64();
  if (n < low || n > high)
    Fail(path, std::to_string(n) + " is outside " + std::to_string(low) + ".." + std::to_string(high));
  return n;
}

std::int32_t Int32(const Json::Value& v, const std::string& path) {
  return static_cast<std::int32_t>(Integer(v, path, INT32_MIN, INT32_MAX));
}

std::string Text(const Json::Value& v, const std::string& path) {
  if (!v.isString()) Fail(path, "expected a string");
  return v.asString();
}

std::vector<double> Numbers(const Json::Value& v, const std::string& path, Json::ArrayIndex count) {
  if (!v.isArray() || v.size() != count) Fail(path, "expected an array of " + std::to_string(count) + " numbers");
  std::vector<double> out;
  for (Json::ArrayIndex i = 0; i < count; ++i) out.push_back(Number(v[i], At(path, i)));
  return out;
}

Vector VectorFrom(const Json::Value& v, const std::string& path) {
  const std::vector<double> n = Numbers(v, path, 3);
  return {n[0], n[1], n[2]};
}

// Reduced as the engine keeps every time, so that [50, 25] and [2, 1] find the same key.
BaseTime TimeFrom(const Json::Value& v, const std::string& path) {
  const std::vector<double> n = Numbers(v, path, 2);
  if (!std::isfinite(n[0]) || !std::isfinite(n[1]) || n[1] < 1.0)
    Fail(path, "a time is [numerator, denominator] with a denominator of at least 1");
  return BaseTime(n[0], n[1]);
}

std::int32_t TypeFrom(const Json::Value& v, NodeClass nodeClass, const std::string& path) {
  if (v.isString()) {
    if (auto type = TypeByName(nodeClass, v.asString())) return *type;
    Fail(path, "unknown type name \"" + v.asString() + "\"");
  }
  if (v.isNull()) Fail(path, "a type is required");
  return Int32(v, path);
}

constexpr const char* kValueKeys[] = {"empty", "int32", "float", "bool", "int64", "vector", "time",
                                      "string", "filename", "link", "priority", "font", "container",
                                      "spline_key"};

// The value keys and the given others.
Keys ValueKeysAnd(Keys others) {
  others.insert(others.end(), std::begin(kValueKeys), std::end(kValueKeys));
  return others;
}

// Keys of every node besides those of its class.
Keys NodeKeysAnd(Keys others) {
  others.insert(others.end(),
                {"name", "ref", "bits", "info_bits", "marker", "unique_ids", "layer", "params", "tracks"});
  return others;
}

Marker MarkerFrom(const Json::Value& v, const std::string& path) {
  const std::optional<std::vector<uint8_t>> bytes = BytesOfHex(Text(v, path));
  Marker marker{};
  if (!bytes || bytes->size() != marker.size()) Fail(path, "a marker is 32 hex digits");
  std::copy(bytes->begin(), bytes->end(), marker.begin());
  return marker;
}

std::vector<uint8_t> UniqueIdBytes(const Json::Value& v, const std::string& path) {
  if (v.isMember("text") == v.isMember("hex")) Fail(path, "a unique id has either \"text\" or \"hex\"");
  std::vector<uint8_t> bytes;
  if (v.isMember("text")) {
    const std::string text = Text(v["text"], At(path, "text"));
    bytes.assign(text.begin(), text.end());
  } else {
    const std::optional<std::vector<uint8_t>> hex = BytesOfHex(Text(v["hex"], At(path, "hex")));
    if (!hex) Fail(At(path, "hex"), "not an even number of hex digits");
    bytes = *hex;
  }
  if (bytes.empty()) Fail(path, "a unique id has at least one byte");
  return bytes;
}

void UniqueIdsFrom(const Json::Value& v, const std::string& path, NodeIdentity& identity) {
  for (Json::ArrayIndex i = 0; i < ArrayAt(v, path).size(); ++i) {
    const std::string at = At(path, i);
    CheckKeys(v[i], at, {"application", "text", "hex"});
    const std::int32_t application = Int32(v[i]["application"], At(at, "application"));
    if (FindUniqueIdOf(identity, application))
      Fail(At(at, "application"), "application " + std::to_string(application) + " gives a second unique id");
    SetUniqueIdOf(identity, application, UniqueIdBytes(v[i], at));
  }
}

class JsonReader {
 public:
  explicit JsonReader(Document& document) : document_(document) {}
  void Read(const Json::Value& root);

 private:
  void Ref(const Json::Value& v, const std::string& path, Node& node);
  void Link(const Json::Value& v, const std::string& path, std::uint64_t& slot);
  void ValueFrom(const Json::Value& v, const std::string& path, DataValue& out);
  void ParamsFrom(const Json::Value& v, const std::string& path, const Node& node, ParamSet& params);
  void NodeFields(const Json::Value& v, const std::string& path, Node& node);
  std::unique_ptr<Track> TrackFrom(const Json::Value& v, const std::string& path);
  void CurveFrom(const Json::Value& v, const std::string& path, Track& track);
  std::unique_ptr<Tag> TagFrom(const Json::Value& v, const std::string& path, std::int32_t requiredType);
  std::unique_ptr<Object> ObjectFrom(const Json::Value& v, const std::string& path);
  template <typename Record>
  void ListFrom(const Json::Value& v, const std::string& path, Node& parent, Record record);
  void DocumentFrom(const Json::Value& v, const std::string& path);
  void SettingsFrom(const Json::Value& root);
  void ViewsFrom(const Json::Value& root);
  void ResolveLinks();

  struct PendingLink {
    std::uint64_t* slot;
    std::string ref;
    std::string path;
  };
  Document& document_;
  std::unordered_map<std::string, Node*> refs_;
  std::vector<PendingLink> links_;
};

void JsonReader::Ref(const Json::Value& v, const std::string& path, Node& node) {
  const std::string ref = Text(v, path);
  if (!refs_.emplace(ref, &node).second) Fail(path, "the ref \"" + ref + "\" is given to a second node");
  LinkIdOf(&node);
}

void JsonReader::Link(const Json::Value& v, const std::string& path, std::uint64_t& slot) {
  slot = 0;
  if (!v.isNull()) links_.push_back({&slot, Text(v, path), path});
}

void JsonReader::ValueFrom(const Json::Value& v, const std::string& path, DataValue& out) {
  const char* kind = nullptr;
  for (const char* key : kValueKeys) {
    if (!v.isMember(key)) continue;
    if (kind) Fail(path, std::string("holds both \"") + kind + "\" and \"" + key + "\"");
    kind = key;
  }
  if (!kind) Fail(path, "holds no value: one of \"int32\", \"float\", \"vector\", \"string\", ... is needed");
  const Json::Value& x = v[kind];
  const std::string at = At(path, kind);
  const std::string k = kind;
  if (k == "empty") {
    FreeData(out);
  } else if (k == "int32") {
    SetInt32(out, Int32(x, at));
  } else if (k == "float") {
    SetFloat(out, Number(x, at));
  } else if (k == "bool") {
    if (!x.isBool()) Fail(at, "expected true or false");
    SetBool(out, x.asBool());
  } else if (k == "int64") {
    SetInt64(out, Integer(x, at, INT64_MIN, INT64_MAX));
  } else if (k == "vector") {
    SetVector(out, VectorFrom(x, at));
  } else if (k == "time") {
    SetTime(out, TimeFrom(x, at));
  } else if (k == "string") {
    SetText(out, FromUtf8(Text(x, at)));
  } else if (k == "filename") {
    SetPath(out, Text(x, at));
  } else if (k == "link") {
    SetLinkId(out, 0);
    Link(x, at, static_cast<LinkData*>(out.payload.object)->targetId);
  } else if (k == "priority") {
    InitCustom(out, DataKind_Priority);
    std::vector<Value>& entries = AsPriority(out)->entries;
    entries.resize(ArrayAt(x, at).size());
    for (Json::ArrayIndex i = 0; i < x.size(); ++i) {
      CheckKeys(x[i], At(at, i), ValueKeysAnd({}));
      ValueFrom(x[i], At(at, i), entries[i].raw);
    }
  } else if (k == "font") {
    InitCustom(out, DataKind_Font);
    const Node unnamed(NodeClass::ListRoot, NodeType_ListRoot);
    ParamsFrom(x, at, unnamed, AsFont(out)->description);
  } else if (k == "container") {
    InitCustom(out, DataKind_Container);
    const Node unnamed(NodeClass::ListRoot, NodeType_ListRoot);
    ParamsFrom(x, at, unnamed, AsContainer(out)->entries);
  } else {
    CheckKeys(x, at, {"points", "tangents"});
    InitCustom(out, DataKind_SplineKey);
    SplineKeyData& key = *AsSplineKey(out);
    key.points = TagFrom(x["points"], At(at, "points"), TagType_Points);
    key.tangents = TagFrom(x["tangents"], At(at, "tangents"), TagType_Tangents);
  }
}

void JsonReader::ParamsFrom(const Json::Value& v, const std::string& path, const Node& node, ParamSet& params) {
  for (Json::ArrayIndex i = 0; i < ArrayAt(v, path).size(); ++i) {
    const std::string at = At(path, i);
    const Json::Value& entry = v[i];
    CheckKeys(entry, at, ValueKeysAnd({"id", "name"}));
    const Json::Value& idJson = entry["id"];
    std::int32_t id = 0;
    if (idJson.isString()) {
      auto named = ParamByName(node, idJson.asString());
      if (!named) Fail(At(at, "id"), "\"" + idJson.asString() + "\" names no parameter of this node");
      id = *named;
    } else {
      id = Int32(idJson, At(at, "id"));
    }
    if (params.count(id)) Fail(At(at, "id"), "parameter " + std::to_string(id) + " is given twice");
    ValueFrom(entry, at, params[id].raw);
  }
}

void JsonReader::NodeFields(const Json::Value& v, const std::string& path, Node& node) {
  if (v.isMember("name")) node.name = FromUtf8(Text(v["name"], At(path, "name")));
  if (v.isMember("ref")) Ref(v["ref"], At(path, "ref"), node);
  if (v.isMember("bits")) {
    const std::string at = At(path, "bits");
    for (Json::ArrayIndex i = 0; i < ArrayAt(v["bits"], at).size(); ++i)
      node.bits.set(static_cast<std::size_t>(Integer(v["bits"][i], At(at, i), 0, 63)));
  }
  if (v.isMember("info_bits"))
    node.infoBits = static_cast<std::uint32_t>(Integer(v["info_bits"], At(path, "info_bits"), 0, UINT32_MAX));
  if (v.isMember("marker")) node.identity.marker = MarkerFrom(v["marker"], At(path, "marker"));
  node.identity.hasMarker = v.isMember("marker");
  if (v.isMember("unique_ids")) UniqueIdsFrom(v["unique_ids"], At(path, "unique_ids"), node.identity);
  if (v.isMember("layer")) Link(v["layer"], At(path, "layer"), node.layerId);
  if (v.isMember("params")) ParamsFrom(v["params"], At(path, "params"), node, node.params);
  if (v.isMember("tracks")) {
    const std::string at = At(path, "tracks");
    for (Json::ArrayIndex i = 0; i < ArrayAt(v["tracks"], at).size(); ++i)
      InsertLastUnder(TrackFrom(v["tracks"][i], At(at, i)).release(), node.trackList());
  }
}

std::unique_ptr<Track> JsonReader::TrackFrom(const Json::Value& v, const std::string& path) {
  CheckKeys(v, path, NodeKeysAnd({"path", "kind", "curve"}));
  const std::string at = At(path, "path");
  const Json::Value& levels = v["path"];
  if (!levels.isArray() || levels.empty()) Fail(at, "expected an array of one or more levels [id, kind, creator]");
  std::vector<ParamLevel> parameterPath;
  for (Json::ArrayIndex i = 0; i < levels.size(); ++i) {
    const Json::Value& level = levels[i];
    if (!level.isArray() || level.empty() || level.size() > 3) Fail(At(at, i), "expected [id], [id, kind] or [id, kind, creator]");
    ParamLevel entry{Int32(level[0], At(At(at, i), 0u)), 0, 0};
    if (level.size() > 1) entry.kind = Int32(level[1], At(At(at, i), 1u));
    if (level.size() > 2) entry.creator = Int32(level[2], At(At(at, i), 2u));
    parameterPath.push_back(entry);
  }
  auto track = std::make_unique<Track>(std::move(parameterPath));
  if (v.isMember("kind")) track->kind = Int32(v["kind"], At(path, "kind"));
  NodeFields(v, path, *track);
  if (!v["curve"].isNull()) CurveFrom(v["curve"], At(path, "curve"), *track);
  return track;
}

void JsonReader::CurveFrom(const Json::Value& v, const std::string& path, Track& track) {
  CheckKeys(v, path, NodeKeysAnd({"keys"}));
  track.curve = std::make_unique<Curve>();
  Curve& curve = *track.curve;
  curve.track = &track;
  NodeFields(v, path, curve);
  const std::string at = At(path, "keys");
  const Json::Value& keys = v.isMember("keys") ? ArrayAt(v["keys"], at) : Json::Value(Json::arrayValue);
  for (Json::ArrayIndex i = 0; i < keys.size(); ++i) {
    const std::string keyAt = At(at, i);
    CheckKeys(keys[i], keyAt, NodeKeysAnd({"time", "value", "data"}));
    auto key = std::make_unique<Key>();
    key->curve = &curve;
    key->time = TimeFrom(keys[i]["time"], At(keyAt, "time"));
    if (i > 0 && !(curve.keys.at(static_cast<std::int32_t>(i) - 1)->time < key->time))
      Fail(At(keyAt, "time"), "keys must stand in rising time order");
    if (keys[i].isMember("value")) key->value = Number(keys[i]["value"], At(keyAt, "value"));
    if (keys[i].isMember("data")) {
      CheckKeys(keys[i]["data"], At(keyAt, "data"), ValueKeysAnd({}));
      ValueFrom(keys[i]["data"], At(keyAt, "data"), key->data.raw);
    }
    NodeFields(keys[i], keyAt, *key);
    curve.keys.insert(static_cast<std::int32_t>(i), std::move(key));
  }
}

void ElementFrom(const Json::Value& v, const std::string& path, std::int32_t tagType, std::byte* at) {
  if (tagType == TagType_Points) {
    const Vector p = VectorFrom(v, path);
    std::memcpy(at, &p, sizeof p);
  } else if (tagType == TagType_Tangents) {
    const std::vector<double> n = Numbers(v, path, 6);
    const SplineTangent t{{n[0], n[1], n[2]}, {n[3], n[4], n[5]}};
    std::memcpy(at, &t, sizeof t);
  } else {
    if (!v.isArray() || v.size() != 2) Fail(path, "a segment is [point count, closed]");
    SplineSegment s{};
    s.count = Int32(v[0], At(path, 0u));
    s.closed = static_cast<std::uint8_t>(Integer(v[1], At(path, 1u), 0, 255));
    std::memcpy(at, &s, sizeof s);
  }
}

std::unique_ptr<Tag> JsonReader::TagFrom(const Json::Value& v, const std::string& path, std::int32_t requiredType) {
  CheckKeys(v, path, NodeKeysAnd({"type", "elements"}));
  const std::int32_t type = requiredType != 0 && !v.isMember("type")
                                ? requiredType
                                : TypeFrom(v["type"], NodeClass::Tag, At(path, "type"));
  if (requiredType != 0 && type != requiredType)
    Fail(At(path, "type"), "expected type " + std::to_string(requiredType));
  auto tag = std::make_unique<Tag>(type);
  NodeFields(v, path, *tag);
  if (!v.isMember("elements")) return tag;
  const std::string at = At(path, "elements");
  const Json::Value& elements = ArrayAt(v["elements"], at);
  if (tag->elementSize == 0 && !elements.empty()) Fail(at, "a tag of this type holds no elements");
  if (elements.size() > INT32_MAX) Fail(at, "too many elements");
  tag->Resize(static_cast<std::int32_t>(elements.size()));
  for (Json::ArrayIndex i = 0; i < elements.size(); ++i)
    ElementFrom(elements[i], At(at, i), type, tag->data.data() + static_cast<std::size_t>(i) * tag->elementSize);
  return tag;
}

std::unique_ptr<Object> JsonReader::ObjectFrom(const Json::Value& v, const std::string& path) {
  CheckKeys(v, path, NodeKeysAnd({"type", "rotation_order", "offset_position", "modes", "tags", "children"}));
  auto object = std::make_unique<Object>(TypeFrom(v["type"], NodeClass::Object, At(path, "type")));
  NodeFields(v, path, *object);
  if (v.isMember("rotation_order"))
    object->rotationOrder = static_cast<std::int32_t>(Integer(v["rotation_order"], At(path, "rotation_order"), 0, 6));
  if (v.isMember("offset_position")) object->offsetPosition = VectorFrom(v["offset_position"], At(path, "offset_position"));
  if (v.isMember("modes")) {
    const std::string at = At(path, "modes");
    if (!v["modes"].isArray() || v["modes"].size() != 3) Fail(at, "expected three whole numbers");
    for (Json::ArrayIndex i = 0; i < 3; ++i) object->modes[i] = Int32(v["modes"][i], At(at, i));
  }
  if (v.isMember("tags")) {
    const std::string at = At(path, "tags");
    for (Json::ArrayIndex i = 0; i < ArrayAt(v["tags"], at).size(); ++i)
      InsertLastUnder(TagFrom(v["tags"][i], At(at, i), 0).release(), object->tagRoot.get());
  }
  return object;
}

// Each entry's record, then its "children" as a list below it.
template <typename Record>
void JsonReader::ListFrom(const Json::Value& v, const std::string& path, Node& parent, Record record) {
  for (Json::ArrayIndex i = 0; i < ArrayAt(v, path).size(); ++i) {
    const std::string at = At(path, i);
    Node* node = record(v[i], at).release();
    InsertLastUnder(node, &parent);
    if (v[i].isMember("children")) ListFrom(v[i]["children"], At(at, "children"), *node, record);
  }
}

void JsonReader::DocumentFrom(const Json::Value& v, const std::string& path) {
  CheckKeys(v, path, NodeKeysAnd({"current_time"}));
  if (v.isMember("params")) document_.params.clear();
  NodeFields(v, path, document_);
  if (v.isMember("current_time")) document_.currentTime = TimeFrom(v["current_time"], At(path, "current_time"));
}

std::int32_t IndexFrom(const Json::Value& v, const std::string& path, std::int32_t count) {
  return static_cast<std::int32_t>(Integer(v, path, -1, count - 1));
}

void JsonReader::SettingsFrom(const Json::Value& root) {
  if (root.isMember("render_settings")) {
    document_.settings = MakeListRoot(&document_);
    ListFrom(root["render_settings"], "$.render_settings", *document_.settings, [this](const Json::Value& v, const std::string& at) {
      CheckKeys(v, at, NodeKeysAnd({"children"}));
      auto node = std::make_unique<Node>(NodeClass::RenderSettings, NodeType_RenderSettings);
      NodeFields(v, at, *node);
      return node;
    });
    document_.activeSettings = document_.settings->firstChild;
  }
  if (root.isMember("active_render_settings")) {
    const std::vector<Node*> settings = ChildrenOf(document_.settings.get());
    const std::int32_t index =
        IndexFrom(root["active_render_settings"], "$.active_render_settings", static_cast<std::int32_t>(settings.size()));
    document_.activeSettings = index < 0 ? nullptr : settings[static_cast<std::size_t>(index)];
  }
}

void JsonReader::ViewsFrom(const Json::Value& root) {
  if (root.isMember("views")) {
    document_.views.clear();
    const Json::Value& views = ArrayAt(root["views"], "$.views");
    for (Json::ArrayIndex i = 0; i < views.size(); ++i) {
      const std::string at = At("$.views", i);
      CheckKeys(views[i], at, {"scene_camera", "editor_camera"});
      auto view = std::make_unique<View>();
      Link(views[i]["scene_camera"], At(at, "scene_camera"), view->sceneCameraId);
      view->editorCamera.reset();
      const Json::Value& camera = views[i]["editor_camera"];
      if (!camera.isNull()) {
        view->editorCamera = ObjectFrom(camera, At(at, "editor_camera"));
        if (camera.isMember("children"))
          ListFrom(camera["children"], At(At(at, "editor_camera"), "children"), *view->editorCamera,
                   [this](const Json::Value& v, const std::string& p) { return ObjectFrom(v, p); });
      }
      document_.views.push_back(std::move(view));
    }
    document_.activeView = document_.views.empty() ? -1 : 0;
    document_.renderView = -1;
  }
  const auto count = static_cast<std::int32_t>(document_.views.size());
  if (root.isMember("active_view")) document_.activeView = IndexFrom(root["active_view"], "$.active_view", count);
  if (root.isMember("render_view")) document_.renderView = IndexFrom(root["render_view"], "$.render_view", count);
}

void JsonReader::ResolveLinks() {
  for (const PendingLink& link : links_) {
    auto found = refs_.find(link.ref);
    if (found == refs_.end()) Fail(link.path, "no node has the ref \"" + link.ref + "\"");
    *link.slot = LinkIdOf(found->second);
  }
}

void JsonReader::Read(const Json::Value& root) {
  CheckKeys(root, "$", {"summary", "document", "objects", "materials", "layers", "render_settings",
                        "active_render_settings", "markers", "views", "active_view", "render_view", "states",
                        "current_state"});
  if (root.isMember("document")) DocumentFrom(root["document"], "$.document");
  const auto plain = [this](NodeClass nodeClass, std::int32_t type) {
    return [this, nodeClass, type](const Json::Value& v, const std::string& at) {
      CheckKeys(v, at, NodeKeysAnd({"children"}));
      auto node = std::make_unique<Node>(nodeClass, type);
      NodeFields(v, at, *node);
      return node;
    };
  };
  if (root.isMember("objects"))
    ListFrom(root["objects"], "$.objects", *document_.objects,
             [this](const Json::Value& v, const std::string& at) { return ObjectFrom(v, at); });
  if (root.isMember("materials"))
    ListFrom(root["materials"], "$.materials", *document_.materials, [this](const Json::Value& v, const std::string& at) {
      CheckKeys(v, at, NodeKeysAnd({"type", "shaders", "children"}));
      std::unique_ptr<Node> material = NewMaterial(TypeFrom(v["type"], NodeClass::Material, At(at, "type")));
      NodeFields(v, at, *material);
      if (v.isMember("shaders"))
        ListFrom(v["shaders"], At(at, "shaders"), *ShaderList(*material), [this](const Json::Value& s, const std::string& sat) {
          CheckKeys(s, sat, NodeKeysAnd({"type", "children"}));
          std::unique_ptr<Node> shader = NewShader(TypeFrom(s["type"], NodeClass::Shader, At(sat, "type")));
          NodeFields(s, sat, *shader);
          return shader;
        });
      return material;
    });
  if (root.isMember("layers")) ListFrom(root["layers"], "$.layers", *document_.layers, plain(NodeClass::Layer, NodeType_Layer));
  SettingsFrom(root);
  if (root.isMember("markers")) ListFrom(root["markers"], "$.markers", *document_.markers, plain(NodeClass::Marker, NodeType_Marker));
  ViewsFrom(root);
  if (root.isMember("states")) ListFrom(root["states"], "$.states", *document_.states, plain(NodeClass::State, NodeType_State));
  if (root.isMember("current_state")) {
    const std::vector<Node*> states = StatesInOrder(document_);
    const std::int32_t index =
        IndexFrom(root["current_state"], "$.current_state", static_cast<std::int32_t>(states.size()));
    if (index >= 0) MakeStateCurrent(document_, states[static_cast<std::size_t>(index)]);
  }
  ResolveLinks();
}

}  // namespace

bool JsonToDocument(const Json::Value& description, Document& document, std::string* error) {
  try {
    JsonReader(document).Read(description);
    return true;
  } catch (const JsonProblem& e) {
    if (error) *error = e.what();
    return false;
  } catch (const Json::Exception& e) {
    if (error) *error = std::string("$: ") + e.what();
    return false;
  }
}

}  // namespace quillon::orytool
