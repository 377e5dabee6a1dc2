// The document as a JSON scene description. Nodes that links can point at carry a "ref"
// ("n1", "n2", ... in the order of ForEachNode); links name the ref of their target.
#include <unordered_map>

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/animation.h"
#include "quillon/model/scene_states.h"
#include "quillon/model/tag.h"
#include "quillon/orytool/scene_json.h"
#include "quillon/orytool/scene_json_identity.h"
#include "quillon/orytool/scene_names.h"
#include "quillon/orytool/scene_summary.h"
#include "quillon/orytool/scene_walk.h"

namespace quillon::orytool {
namespace {

class JsonWriter {
 public:
  explicit JsonWriter(const Document& document) {
    ForEachNode(document, [this](const Node& node) {
      if (node.linkId != 0) refs_.emplace(node.linkId, "n" + std::to_string(refs_.size() + 1));
    });
  }

  Json::Value Document(const quillon::Document& document) const;

 private:
  Json::Value Link(std::uint64_t linkId) const {
    auto found = refs_.find(linkId);
    return found == refs_.end() ? Json::Value() : Json::Value(found->second);
  }
  Json::Value Value(const DataValue& value) const;
  Json::Value Params(const Node& node, const ParamSet& params) const;
  void NodeFields(const Node& node, Json::Value& out) const;
  Json::Value Track(const quillon::Track& track) const;
  Json::Value Tag(const quillon::Tag& tag) const;
  Json::Value Object(const quillon::Object& object) const;
  Json::Value Material(const Node& material) const;
  template <typename Record>
  Json::Value List(const Node& parent, Record record) const;

  std::unordered_map<std::uint64_t, std::string> refs_;
};

Json::Value Array(std::initializer_list<double> numbers) {
  Json::Value out(Json::arrayValue);
  for (double n : numbers) out.append(n);
  return out;
}

Json::Value VectorJson(const Vector& v) { return Array({v.x, v.y, v.z}); }
Json::Value TimeJson(const BaseTime& t) { return Array({t.numerator, t.denominator}); }

Json::Value Elements(const quillon::Tag& tag) {
  Json::Value out(Json::arrayValue);
  for (std::int32_t i = 0; i < tag.count; ++i) {
    if (tag.type == TagType_Points) {
      out.append(VectorJson(ElementAt<Vector>(tag, i)));
    } else if (tag.type == TagType_Tangents) {
      const auto t = ElementAt<SplineTangent>(tag, i);
      out.append(Array({t.left.x, t.left.y, t.left.z, t.right.x, t.right.y, t.right.z}));
    } else if (tag.type == TagType_Segments) {
      const auto s = ElementAt<SplineSegment>(tag, i);
      out.append(Array({static_cast<double>(s.count), static_cast<double>(s.closed)}));
    }
  }
  return out;
}

Json::Value JsonWriter::Value(const DataValue& value) const {
  Json::Value out(Json::objectValue);
  switch (value.kind) {
    case DataKind_Empty: out["empty"] = Json::Value(); break;
    case DataKind_Int32: out["int32"] = value.payload.int32; break;
    case DataKind_Float: out["float"] = value.payload.float64; break;
    case DataKind_Bool: out["bool"] = value.payload.int64 != 0; break;
    case DataKind_Int64: out["int64"] = Json::Int64{value.payload.int64}; break;
    case DataKind_Vector: out["vector"] = VectorJson(*AsVector(value)); break;
    case DataKind_Time: out["time"] = TimeJson(*AsTime(value)); break;
    case DataKind_String: out["string"] = ToUtf8(AsText(value)); break;
    case DataKind_Filename: out["filename"] = PathOf(*AsFilename(value)); break;
    case DataKind_Link: out["link"] = Link(AsLink(value)->targetId); break;
    case DataKind_Priority: {
      Json::Value& entries = out["priority"] = Json::Value(Json::arrayValue);
      for (const quillon::Value& entry : AsPriority(value)->entries) entries.append(Value(entry.raw));
      break;
    }
    case DataKind_Font: {
      // A font's description entries are named by no node: plain ids.
      Node unnamed(NodeClass::ListRoot, NodeType_ListRoot);
      out["font"] = Params(unnamed, AsFont(value)->description);
      break;
    }
    case DataKind_Container: {
      Node unnamed(NodeClass::ListRoot, NodeType_ListRoot);
      out["container"] = Params(unnamed, AsContainer(value)->entries);
      break;
    }
    case DataKind_SplineKey: {
      const SplineKeyData& key = *AsSplineKey(value);
      out["spline_key"]["points"] = Tag(*key.points);
      out["spline_key"]["tangents"] = Tag(*key.tangents);
      break;
    }
    default: out["unknown_kind"] = value.kind; break;
  }
  return out;
}

Json::Value JsonWriter::Params(const Node& node, const ParamSet& params) const {
  Json::Value out(Json::arrayValue);
  for (const auto& [id, value] : params) {
    Json::Value param = Value(value.raw);
    param["id"] = id;
    const std::string name = ParamName(node, id);
    if (!name.empty()) param["name"] = name;
    out.append(param);
  }
  return out;
}

void JsonWriter::NodeFields(const Node& node, Json::Value& out) const {
  if (!node.name.empty()) out["name"] = ToUtf8(node.name);
  if (node.linkId != 0) out["ref"] = Link(node.linkId);
  if (node.bits.any()) {
    Json::Value& bits = out["bits"] = Json::Value(Json::arrayValue);
    for (std::size_t bit = 0; bit < node.bits.size(); ++bit)
      if (node.bits.test(bit)) bits.append(static_cast<int>(bit));
  }
  if (node.infoBits != 0) out["info_bits"] = node.infoBits;
  WriteIdentityJson(node.identity, out);
  if (node.layerId != 0) out["layer"] = Link(node.layerId);
  if (!node.params.empty()) out["params"] = Params(node, node.params);
  if (node.trackRoot && node.trackRoot->firstChild) {
    Json::Value& tracks = out["tracks"] = Json::Value(Json::arrayValue);
    for (const Node* track = node.trackRoot->firstChild; track; track = track->next)
      tracks.append(Track(*AsTrack(track)));
  }
}

Json::Value JsonWriter::Track(const quillon::Track& track) const {
  Json::Value out(Json::objectValue);
  Json::Value& path = out["path"] = Json::Value(Json::arrayValue);
  for (const ParamLevel& level : track.path) {
    Json::Value entry(Json::arrayValue);
    entry.append(level.id);
    entry.append(level.kind);
    if (level.creator != 0) entry.append(level.creator);
    path.append(entry);
  }
  out["kind"] = track.kind;
  NodeFields(track, out);
  if (!track.curve) {
    out["curve"] = Json::Value();
    return out;
  }
  Json::Value& curve = out["curve"] = Json::Value(Json::objectValue);
  NodeFields(*track.curve, curve);
  Json::Value& keys = curve["keys"] = Json::Value(Json::arrayValue);
  for (std::int32_t i = 0; i < track.curve->keys.size(); ++i) {
    const Key& key = *track.curve->keys.at(i);
    Json::Value entry(Json::objectValue);
    entry["time"] = TimeJson(key.time);
    entry["value"] = key.value;
    if (key.data.kind() != DataKind_Empty) entry["data"] = Value(key.data.raw);
    NodeFields(key, entry);
    keys.append(entry);
  }
  return out;
}

Json::Value TypeJson(NodeClass nodeClass, std::int32_t type) {
  const std::string name = TypeName(nodeClass, type);
  return name.empty() ? Json::Value(type) : Json::Value(name);
}

Json::Value JsonWriter::Tag(const quillon::Tag& tag) const {
  Json::Value out(Json::objectValue);
  out["type"] = TypeJson(NodeClass::Tag, tag.type);
  NodeFields(tag, out);
  if (tag.elementSize != 0) out["elements"] = Elements(tag);
  return out;
}

template <typename Record>
Json::Value JsonWriter::List(const Node& parent, Record record) const {
  Json::Value out(Json::arrayValue);
  for (const Node* node = parent.firstChild; node; node = node->next) {
    Json::Value entry = record(*node);
    if (node->firstChild) entry["children"] = List(*node, record);
    out.append(entry);
  }
  return out;
}

Json::Value JsonWriter::Object(const quillon::Object& object) const {
  Json::Value out(Json::objectValue);
  out["type"] = TypeJson(NodeClass::Object, object.type);
  NodeFields(object, out);
  out["rotation_order"] = object.rotationOrder;
  if (!(object.offsetPosition == Vector{})) out["offset_position"] = VectorJson(object.offsetPosition);
  if (object.modes != std::array<std::int32_t, 3>{0, 0, 0})
    out["modes"] = Array({double(object.modes[0]), double(object.modes[1]), double(object.modes[2])});
  const std::vector<quillon::Tag*> tags = TagsOf(object);
  if (!tags.empty()) {
    Json::Value& list = out["tags"] = Json::Value(Json::arrayValue);
    for (const quillon::Tag* tag : tags) list.append(Tag(*tag));
  }
  return out;
}

Json::Value JsonWriter::Material(const Node& material) const {
  Json::Value out(Json::objectValue);
  out["type"] = TypeJson(NodeClass::Material, material.type);
  NodeFields(material, out);
  Node* shaders = ShaderList(const_cast<Node&>(material));
  if (shaders->firstChild) {
    out["shaders"] = List(*shaders, [this](const Node& shader) {
      Json::Value entry(Json::objectValue);
      entry["type"] = TypeJson(NodeClass::Shader, shader.type);
      NodeFields(shader, entry);
      return entry;
    });
  }
  return out;
}

Json::Value SummaryJson(const quillon::Document& document) {
  const SceneSummary s = Summarize(document);
  Json::Value out(Json::objectValue);
  out["objects"] = s.objects;
  out["cameras"] = s.cameras;
  out["lights"] = s.lights;
  out["tracks"] = s.tracks;
  out["keys"] = Json::Int64{s.keys};
  out["markers"] = s.markers;
  out["fps"] = s.fps;
  out["first_frame"] = s.firstFrame;
  out["last_frame"] = s.lastFrame;
  return out;
}

Json::Value JsonWriter::Document(const quillon::Document& document) const {
  Json::Value out(Json::objectValue);
  out["summary"] = SummaryJson(document);
  Json::Value& doc = out["document"] = Json::Value(Json::objectValue);
  NodeFields(document, doc);
  doc["current_time"] = TimeJson(document.currentTime);
  const auto plain = [this](const Node& node) {
    Json::Value entry(Json::objectValue);
    NodeFields(node, entry);
    return entry;
  };
  out["objects"] = List(*document.objects, [this](const Node& node) { return Object(*AsObject(&node)); });
  out["materials"] = List(*document.materials, [this](const Node& node) { return Material(node); });
  out["layers"] = List(*document.layers, plain);
  out["render_settings"] = List(*document.settings, plain);
  std::int32_t active = -1, index = 0;
  for (const Node* node = document.settings->firstChild; node; node = node->next, ++index)
    if (node == document.activeSettings) active = index;
  out["active_render_settings"] = active;
  out["markers"] = List(*document.markers, plain);
  Json::Value& views = out["views"] = Json::Value(Json::arrayValue);
  for (const auto& view : document.views) {
    Json::Value entry(Json::objectValue);
    entry["scene_camera"] = Link(view->sceneCameraId);
    entry["editor_camera"] = Json::Value();
    if (view->editorCamera) {
      entry["editor_camera"] = Object(*view->editorCamera);
      if (view->editorCamera->firstChild)
        entry["editor_camera"]["children"] =
            List(*view->editorCamera, [this](const Node& node) { return Object(*AsObject(&node)); });
    }
    views.append(entry);
  }
  out["active_view"] = document.activeView;
  out["render_view"] = document.renderView;
  // Scene states only when there are any, so that a dump of a document without them
  // reads as it did before states existed.
  if (document.states->firstChild) {
    out["states"] = List(*document.states, plain);
    out["current_state"] = CurrentStateIndex(document);
  }
  return out;
}

}  // namespace

Json::Value DocumentToJson(const Document& document) { return JsonWriter(document).Document(document); }

}  // namespace quillon::orytool
