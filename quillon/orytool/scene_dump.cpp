#include "quillon/orytool/scene_dump.h"

#include <charconv>
#include <sstream>

#include "plugin/exporter/scene_ids.h"
#include "quillon/model/animation.h"
#include "quillon/model/links.h"
#include "quillon/model/tag.h"
#include "quillon/orytool/scene_names.h"
#include "quillon/orytool/scene_summary.h"

namespace quillon::orytool {
namespace {

// The shortest text that reads back as the same double.
std::string Number(double v) {
  char text[32];
  auto result = std::to_chars(text, text + sizeof text, v);
  return std::string(text, result.ptr);
}

std::string Quoted(const std::u16string& text) { return "\"" + ToUtf8(text) + "\""; }

std::string TimeText(const BaseTime& t) { return Number(t.numerator) + "/" + Number(t.denominator); }

std::string VectorText(const Vector& v) { return "(" + Number(v.x) + ", " + Number(v.y) + ", " + Number(v.z) + ")"; }

std::string TypeText(NodeClass nodeClass, std::int32_t type) {
  const std::string name = TypeName(nodeClass, type);
  return name.empty() ? "type " + std::to_string(type) : ShortName(name);
}

std::string NodeText(const Node& node) {
  std::string text = node.nodeClass == NodeClass::Object || node.nodeClass == NodeClass::Tag ||
                             node.nodeClass == NodeClass::Material || node.nodeClass == NodeClass::Shader
                         ? TypeText(node.nodeClass, node.type)
                         : "node";
  if (!node.name.empty()) text += " " + Quoted(node.name);
  return text;
}

std::string LinkText(std::uint64_t linkId, const Document& document) {
  const Node* target = ResolveLinkIn(linkId, &document);
  return target ? "link -> " + NodeText(*target) : "link -> nothing";
}

std::string ValueText(const DataValue& value, const Document& document) {
  switch (value.kind) {
    case DataKind_Empty: return "empty";
    case DataKind_Int32: return "int32 " + std::to_string(value.payload.int32);
    case DataKind_Float: return "float " + Number(value.payload.float64);
    case DataKind_Bool: return value.payload.int64 ? "bool true" : "bool false";
    case DataKind_Int64: return "int64 " + std::to_string(value.payload.int64);
    case DataKind_Vector: return "vector " + VectorText(*AsVector(value));
    case DataKind_Time: return "time " + TimeText(*AsTime(value));
    case DataKind_String: return "string " + Quoted(AsText(value));
    case DataKind_Filename: return "filename \"" + PathOf(*AsFilename(value)) + "\"";
    case DataKind_Link: return LinkText(AsLink(value)->targetId, document);
    case DataKind_Priority: {
      std::string text = "priority [";
      for (const Value& entry : AsPriority(value)->entries)
        text += (text.back() == '[' ? "" : ", ") + ValueText(entry.raw, document);
      return text + "]";
    }
    case DataKind_Font: {
      std::string text = "font {";
      for (const auto& [id, entry] : AsFont(value)->description)
        text += (text.back() == '{' ? "" : ", ") + std::to_string(id) + ": " + ValueText(entry.raw, document);
      return text + "}";
    }
    case DataKind_SplineKey: {
      const SplineKeyData& key = *AsSplineKey(value);
      return "spline key: " + std::to_string(key.points->count) + " points, " + std::to_string(key.tangents->count) +
             " tangents";
    }
    default: return "kind " + std::to_string(value.kind);
  }
}

// One element of a spline's variable tag: a point, the two tangents of a point, or a segment.
std::string ElementText(const Tag& tag, std::int32_t index) {
  const std::string head = std::to_string(index) + ": ";
  if (tag.type == TagType_Points) return head + VectorText(ElementAt<Vector>(tag, index));
  if (tag.type == TagType_Tangents) {
    const auto t = ElementAt<SplineTangent>(tag, index);
    return head + "left " + VectorText(t.left) + ", right " + VectorText(t.right);
  }
  const auto s = ElementAt<SplineSegment>(tag, index);
  return head + std::to_string(s.count) + (s.count == 1 ? " point, " : " points, ") + (s.closed ? "closed" : "open");
}

bool ListsElements(const Tag& tag) {
  return tag.type == TagType_Points || tag.type == TagType_Tangents || tag.type == TagType_Segments;
}

class TextDump {
 public:
  explicit TextDump(const Document& document) : document_(document) {}
  std::string Run();

 private:
  void Line(int depth, const std::string& text) { out_ << std::string(2 * depth, ' ') << text << '\n'; }
  void NodeBody(const Node& node, int depth);
  void TrackLine(const Track& track, int depth);
  void ObjectTree(const Node& node, int depth);
  void Tree(const Node& node, int depth, const char* label);

  const Document& document_;
  std::ostringstream out_;
};

std::string PathText(const std::vector<ParamLevel>& path) {
  std::string text;
  for (const ParamLevel& level : path) text += "[" + std::to_string(level.id) + "," + std::to_string(level.kind) + "]";
  return text;
}

void TextDump::TrackLine(const Track& track, int depth) {
  std::string text = "track " + (track.name.empty() ? std::string() : Quoted(track.name) + " ") + PathText(track.path) +
                     " kind " + std::to_string(track.kind);
  if (track.infoBits & kInfoBitTrackOff) text += " (off)";
  if (!track.curve) {
    Line(depth, text + ": no curve");
    return;
  }
  const KeyStore& keys = track.curve->keys;
  text += ": " + std::to_string(keys.size()) + (keys.size() == 1 ? " key" : " keys");
  const auto keyText = [&](std::int32_t index) {
    const Key* node = keys.nodeAt(index);
    const bool holdsData = node && node->data.kind() != DataKind_Empty;
    return TimeText(keys.timeAt(index)) + " = " +
           (holdsData ? ValueText(node->data.raw, document_) : Number(keys.valueAt(index)));
  };
  if (keys.size() > 0) text += ", first " + keyText(0) + ", last " + keyText(keys.size() - 1);
  Line(depth, text);
}

void TextDump::NodeBody(const Node& node, int depth) {
  if (node.bits.any()) {
    std::string bits = "bits";
    for (std::size_t bit = 0; bit < node.bits.size(); ++bit)
      if (node.bits.test(bit)) bits += " " + std::to_string(bit);
    Line(depth, bits);
  }
  if (node.layerId != 0) Line(depth, "layer " + LinkText(node.layerId, document_));
  for (const auto& [id, value] : node.params) {
    const std::string name = ParamName(node, id);
    Line(depth, std::to_string(id) + (name.empty() ? "" : " " + name) + " = " + ValueText(value.raw, document_));
  }
  if (node.trackRoot)
    for (const Node* track = node.trackRoot->firstChild; track; track = track->next) TrackLine(*AsTrack(track), depth);
}

void TextDump::ObjectTree(const Node& node, int depth) {
  const Object& object = *AsObject(&node);
  std::string head = NodeText(object) + ", rotation order " + std::to_string(object.rotationOrder);
  if (!(object.offsetPosition == Vector{})) head += ", offset " + VectorText(object.offsetPosition);
  Line(depth, head);
  NodeBody(object, depth + 1);
  for (const Tag* tag : TagsOf(object)) {
    Line(depth + 1, "tag " + NodeText(*tag) + (tag->elementSize ? ", " + std::to_string(tag->count) + " elements" : ""));
    NodeBody(*tag, depth + 2);
    if (ListsElements(*tag))
      for (std::int32_t i = 0; i < tag->count; ++i) Line(depth + 2, ElementText(*tag, i));
  }
  for (const Node* child = node.firstChild; child; child = child->next) ObjectTree(*child, depth + 1);
}

void TextDump::Tree(const Node& node, int depth, const char* label) {
  Line(depth, (label ? std::string(label) : NodeText(node)) + (&node == document_.activeSettings ? " (active)" : ""));
  NodeBody(node, depth + 1);
  if (Node* shaders = ShaderList(const_cast<Node&>(node)))
    for (const Node* shader = shaders->firstChild; shader; shader = shader->next) Tree(*shader, depth + 1, nullptr);
  for (const Node* child = node.firstChild; child; child = child->next) Tree(*child, depth + 1, label);
}

std::string TextDump::Run() {
  out_ << SummaryLine(Summarize(document_)) << '\n';
  Line(0, "document" + (document_.name.empty() ? std::string() : " " + Quoted(document_.name)) + ", current time " +
              TimeText(document_.currentTime));
  NodeBody(document_, 1);
  Line(0, "objects");
  for (const Node* node = document_.objects->firstChild; node; node = node->next) ObjectTree(*node, 1);
  Line(0, "materials");
  for (const Node* node = document_.materials->firstChild; node; node = node->next) Tree(*node, 1, nullptr);
  Line(0, "layers");
  for (const Node* node = document_.layers->firstChild; node; node = node->next) Tree(*node, 1, "layer");
  Line(0, "render settings");
  for (const Node* node = document_.settings->firstChild; node; node = node->next) Tree(*node, 1, "settings");
  Line(0, "markers");
  for (const Node* node = document_.markers->firstChild; node; node = node->next) Tree(*node, 1, "marker");
  Line(0, "views");
  for (std::size_t i = 0; i < document_.views.size(); ++i) {
    const View& view = *document_.views[i];
    const auto index = static_cast<std::int32_t>(i);
    std::string text = "view " + std::to_string(i);
    if (index == document_.activeView) text += " (active)";
    if (index == document_.renderView) text += " (render)";
    text += ": scene camera " + LinkText(view.sceneCameraId, document_);
    text += view.editorCamera ? ", editor camera " + NodeText(*view.editorCamera) : ", no editor camera";
    Line(1, text);
  }
  return out_.str();
}

}  // namespace

std::string DumpText(const Document& document) { return TextDump(document).Run(); }

}  // namespace quillon::orytool
