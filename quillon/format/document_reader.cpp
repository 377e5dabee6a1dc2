#include "quillon/format/document_reader.h"

#include <bit>
#include <cmath>
#include <unordered_map>
#include <vector>

#include "plugin/exporter/scene_ids.h"
#include "quillon/format/file_frame.h"
#include "quillon/format/identity_record.h"
#include "quillon/format/record_layout.h"
#include "quillon/model/animation.h"
#include "quillon/model/scene_states.h"
#include "quillon/model/links.h"
#include "quillon/model/tag.h"

namespace quillon::format {
namespace {

struct ReadContext {
  ByteReader& r;
  // Where the nodes read keep a node number of the file, to be rewritten to a link id
  // once all nodes exist.
  std::vector<std::uint64_t*> linkSlots;
  std::unordered_map<std::uint64_t, Node*> nodesByFileId;
  std::uint32_t version;
};

std::string Str(std::int64_t v) { return std::to_string(v); }

void CheckDepth(ReadContext& c, int depth) {
  if (depth > kMaxDepth) c.r.Fail(c.r.Offset(), "content nests deeper than " + Str(kMaxDepth) + " levels");
}

std::int32_t ReadIndex(ReadContext& c, const char* what, std::int32_t count) {
  const std::size_t at = c.r.Offset();
  const std::int32_t index = c.r.I32();
  if (index < -1 || index >= count)
    c.r.Fail(at, std::string(what) + " " + Str(index) + " is outside -1.." + Str(count - 1));
  return index;
}

Vector ReadVector(ReadContext& c) {
  Vector v;
  v.x = c.r.F64();
  v.y = c.r.F64();
  v.z = c.r.F64();
  return v;
}

BaseTime ReadTime(ReadContext& c) {
  const std::size_t at = c.r.Offset();
  BaseTime t;
  t.numerator = c.r.F64();
  t.denominator = c.r.F64();
  if (!std::isfinite(t.numerator) || !std::isfinite(t.denominator) || t.denominator < 1.0)
    c.r.Fail(at, "time " + std::to_string(t.numerator) + "/" + std::to_string(t.denominator) +
                     " needs finite parts and a denominator of at least 1");
  return t;
}

void ReadNodeCommon(ReadContext& c, Node& node, int depth);
void ReadParams(ReadContext& c, ParamSet& params, int depth);

std::unique_ptr<Tag> ReadTag(ReadContext& c, int depth) {
  auto tag = std::make_unique<Tag>(c.r.I32());
  ReadNodeCommon(c, *tag, depth);
  const std::size_t at = c.r.Offset();
  const std::size_t elementSize = static_cast<std::size_t>(tag->elementSize);
  const std::uint32_t count = c.r.Count("tag element", elementSize);
  if (count > INT32_MAX || (elementSize == 0 && count != 0))
    c.r.Fail(at, "tag of type " + Str(tag->type) + " cannot hold " + Str(count) + " elements");
  tag->Resize(static_cast<std::int32_t>(count));
  c.r.Bytes(tag->data.data(), tag->data.size(), "tag element");
  return tag;
}

std::unique_ptr<Tag> ReadTagOfType(ReadContext& c, std::int32_t type, int depth) {
  const std::size_t at = c.r.Offset();
  std::unique_ptr<Tag> tag = ReadTag(c, depth);
  if (tag->type != type) c.r.Fail(at, "tag of type " + Str(tag->type) + " where type " + Str(type) + " belongs");
  return tag;
}

void ReadLink(ReadContext& c, std::uint64_t& slot) {
  slot = c.r.U64();
  c.linkSlots.push_back(&slot);
}

void ReadValue(ReadContext& c, DataValue& value, int depth) {
  CheckDepth(c, depth);
  const std::size_t at = c.r.Offset();
  const std::int32_t kind = c.r.I32();
  switch (kind) {
    case DataKind_Empty: FreeData(value); return;
    case DataKind_Int32: SetInt32(value, c.r.I32()); return;
    case DataKind_Float: SetFloat(value, c.r.F64()); return;
    case DataKind_Bool: {
      const std::uint8_t flag = c.r.U8();
      if (flag > 1) c.r.Fail(at + 4, "truth value " + Str(flag) + " is neither 0 nor 1");
      SetBool(value, flag == 1);
      return;
    }
    case DataKind_Int64: SetInt64(value, c.r.I64()); return;
    case DataKind_Vector: SetVector(value, ReadVector(c)); return;
    case DataKind_Time: SetTime(value, ReadTime(c)); return;
    case DataKind_String: SetText(value, c.r.String16("text")); return;
    case DataKind_Filename: SetPath(value, c.r.String("file name")); return;
    case DataKind_Link:
      SetLinkId(value, 0);
      ReadLink(c, static_cast<LinkData*>(value.payload.object)->targetId);
      return;
    case DataKind_Priority: {
      const std::uint32_t count = c.r.Count("priority entry", kMinValueBytes);
      InitCustom(value, kind);
      std::vector<Value>& entries = AsPriority(value)->entries;
      entries.resize(count);
      for (Value& entry : entries) ReadValue(c, entry.raw, depth + 1);
      return;
    }
    case DataKind_Container:
      if (c.version < kFormatVersion) c.r.Fail(at, "value kind " + Str(kind) + " is unknown in version 1");
      InitCustom(value, kind);
      ReadParams(c, AsContainer(value)->entries, depth + 1);
      return;
    case DataKind_Font:
      InitCustom(value, kind);
      ReadParams(c, AsFont(value)->description, depth + 1);
      return;
    case DataKind_SplineKey: {
      InitCustom(value, kind);
      SplineKeyData& key = *AsSplineKey(value);
      key.points = ReadTagOfType(c, TagType_Points, depth + 1);
      key.tangents = ReadTagOfType(c, TagType_Tangents, depth + 1);
      return;
    }
    default: c.r.Fail(at, "value kind " + Str(kind) + " is unknown");
  }
}

void ReadParams(ReadContext& c, ParamSet& params, int depth) {
  CheckDepth(c, depth);
  const std::uint32_t count = c.r.Count("parameter", kMinParamBytes);
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::size_t at = c.r.Offset();
    const std::int32_t id = c.r.I32();
    if (!params.empty() && id <= params.rbegin()->first)
      c.r.Fail(at, "parameter id " + Str(id) + " does not rise above " + Str(params.rbegin()->first));
    Value value;
    ReadValue(c, value.raw, depth);
    params.emplace_hint(params.end(), id, std::move(value));
  }
}

std::uint64_t LittleEndian64(const std::uint8_t* p) {
  std::uint64_t v = 0;
  for (int i = 7; i >= 0; --i) v = (v << 8) | p[i];
  return v;
}

// The key of a baked track, 37 bytes: a time, a value, bits and no data. When the buffer holds
// that many and they are such a key, it is taken at once; anything else (a time that is not
// valid, other parts, data, the key out of order) is left to the full reading, which names it.
bool ReadBakedKey(ReadContext& c, KeyStore& keys, std::int32_t index) {
  constexpr std::size_t kBakedKeyBytes = 8 + 8 + 8 + 1 + 8 + 4;
  const std::uint8_t* p = c.r.AtHand(kBakedKeyBytes);
  if (!p || p[24] != NodePart_Bits || p[33] != 0 || p[34] != 0 || p[35] != 0 || p[36] != 0) return false;
  BaseTime time;
  time.numerator = std::bit_cast<double>(LittleEndian64(p));
  time.denominator = std::bit_cast<double>(LittleEndian64(p + 8));
  if (!std::isfinite(time.numerator) || !std::isfinite(time.denominator) || time.denominator < 1.0) return false;
  if (index > 0 && !(keys.timeAt(index - 1) < time)) return false;
  keys.insert(index, time, std::bit_cast<double>(LittleEndian64(p + 16)), LittleEndian64(p + 25));
  c.r.Skip(kBakedKeyBytes);
  return true;
}

// Appends key `index` to the curve. Most keys are time, value and bits alone: those go
// straight into the curve's arrays, and only a key with more gets a node.
void ReadKey(ReadContext& c, KeyStore& keys, std::int32_t index, int depth) {
  if (depth <= kMaxDepth && ReadBakedKey(c, keys, index)) return;
  const std::size_t at = c.r.Offset();
  const BaseTime time = ReadTime(c);
  const double value = c.r.F64();
  std::unique_ptr<Key> key;
  std::uint64_t bits = 0;
  CheckDepth(c, depth);
  if ((c.r.PeekU8() & ~NodePart_Bits) != 0) {
    key = std::make_unique<Key>();
    ReadNodeCommon(c, *key, depth);
  } else if (c.r.U8() == NodePart_Bits) {
    bits = c.r.U64();
  }
  CheckDepth(c, depth);
  if (!key && c.r.PeekU32() != DataKind_Empty) {
    key = std::make_unique<Key>();
    key->bits = std::bitset<64>(bits);
  }
  if (key) {
    ReadValue(c, key->data.raw, depth);
  } else {
    c.r.U32();
  }
  if (index > 0 && !(keys.timeAt(index - 1) < time))
    c.r.Fail(at, "key " + Str(index) + " does not come after the key before it");
  if (!key) {
    keys.insert(index, time, value, bits);
    return;
  }
  key->time = time;
  key->value = value;
  keys.insert(index, std::move(key));
}

void ReadCurve(ReadContext& c, Track& track, int depth) {
  track.curve = std::make_unique<Curve>();
  Curve& curve = *track.curve;
  curve.track = &track;
  ReadNodeCommon(c, curve, depth);
  const std::uint32_t count = c.r.Count("key", kMinKeyBytes);
  curve.keys.reserve(count);
  for (std::uint32_t i = 0; i < count; ++i) ReadKey(c, curve.keys, static_cast<std::int32_t>(i), depth);
}

std::unique_ptr<Track> ReadTrack(ReadContext& c, int depth) {
  const std::size_t at = c.r.Offset();
  const std::uint32_t levels = c.r.Count("parameter level", kParamLevelBytes);
  if (levels == 0) c.r.Fail(at, "track path has no level");
  std::vector<ParamLevel> path(levels);
  for (ParamLevel& level : path) {
    level.id = c.r.I32();
    level.kind = c.r.I32();
    level.creator = c.r.I32();
  }
  auto track = std::make_unique<Track>(std::move(path));
  track->kind = c.r.I32();
  ReadNodeCommon(c, *track, depth);
  const std::size_t flagAt = c.r.Offset();
  const std::uint8_t hasCurve = c.r.U8();
  if (hasCurve > 1) c.r.Fail(flagAt, "curve flag " + Str(hasCurve) + " is neither 0 nor 1");
  if (hasCurve) ReadCurve(c, *track, depth);
  return track;
}

void ReadNodeCommon(ReadContext& c, Node& node, int depth) {
  CheckDepth(c, depth);
  const std::size_t at = c.r.Offset();
  const std::uint8_t parts = c.r.U8();
  const std::uint8_t known = c.version >= kFormatVersion ? kAllNodeParts | kNodePartIdentity : kAllNodeParts;
  if (parts & ~known) c.r.Fail(at, "node part flags " + Str(parts) + " name parts that do not exist");
  if (parts & NodePart_Name) node.name = c.r.String16("node name");
  if (parts & NodePart_Bits) node.bits = std::bitset<64>(c.r.U64());
  if (parts & NodePart_InfoBits) node.infoBits = c.r.U32();
  if (parts & NodePart_LinkId) {
    const std::size_t idAt = c.r.Offset();
    const std::uint64_t id = c.r.U64();
    if (id == 0 || !c.nodesByFileId.emplace(id, &node).second)
      c.r.Fail(idAt, "link id " + std::to_string(id) + " is zero or names a second node");
  }
  if (parts & NodePart_LayerId) ReadLink(c, node.layerId);
  if (parts & NodePart_Params) ReadParams(c, node.params, depth + 1);
  if (parts & NodePart_Tracks) {
    const std::uint32_t count = c.r.Count("track", kMinTrackBytes);
    for (std::uint32_t i = 0; i < count; ++i) InsertLastUnder(ReadTrack(c, depth + 1).release(), node.trackList());
  }
  node.identity = parts & kNodePartIdentity ? ReadIdentity(c.r, at) : NodeIdentity{};
}

// The counterpart of the writer's lists: a count, then each record followed by the list
// of its own children.
template <typename ReadRecord>
void ReadTree(ReadContext& c, Node& parent, std::size_t minItemBytes, int depth, ReadRecord readRecord) {
  CheckDepth(c, depth);
  const std::uint32_t count = c.r.Count("list entry", minItemBytes);
  for (std::uint32_t i = 0; i < count; ++i) {
    Node* child = readRecord(depth).release();
    InsertLastUnder(child, &parent);
    ReadTree(c, *child, minItemBytes, depth + 1, readRecord);
  }
}

std::unique_ptr<Object> ReadObject(ReadContext& c, int depth) {
  auto object = std::make_unique<Object>(c.r.I32());
  ReadNodeCommon(c, *object, depth);
  const std::size_t at = c.r.Offset();
  object->rotationOrder = c.r.I32();
  if (object->rotationOrder < 0 || object->rotationOrder > 6)
    c.r.Fail(at, "rotation order " + Str(object->rotationOrder) + " is outside 0..6");
  object->offsetPosition = ReadVector(c);
  for (std::int32_t& mode : object->modes) mode = c.r.I32();
  const std::uint32_t tags = c.r.Count("tag", kMinTagBytes);
  for (std::uint32_t i = 0; i < tags; ++i) InsertLastUnder(ReadTag(c, depth).release(), object->tagRoot.get());
  return object;
}

void ReadObjectTree(ReadContext& c, Node& parent, int depth) {
  ReadTree(c, parent, kMinObjectBytes, depth, [&c](int d) { return ReadObject(c, d); });
}

void ReadPlainTree(ReadContext& c, Node& parent, NodeClass nodeClass, std::int32_t type) {
  ReadTree(c, parent, kMinListItemBytes, 0, [&](int d) {
    auto node = std::make_unique<Node>(nodeClass, type);
    ReadNodeCommon(c, *node, d);
    return node;
  });
}

void ReadMaterialTree(ReadContext& c, Node& parent) {
  ReadTree(c, parent, kMinTypedItemBytes + 4, 0, [&c](int d) {
    std::unique_ptr<Node> material = NewMaterial(c.r.I32());
    ReadNodeCommon(c, *material, d);
    ReadTree(c, *ShaderList(*material), kMinTypedItemBytes, d + 1, [&c](int sd) {
      std::unique_ptr<Node> shader = NewShader(c.r.I32());
      ReadNodeCommon(c, *shader, sd);
      return shader;
    });
    return material;
  });
}

Node* ReadActiveSettings(ReadContext& c, Document& document) {
  const std::vector<Node*> settings = ChildrenOf(document.settings.get());
  const std::int32_t index = ReadIndex(c, "active settings index", static_cast<std::int32_t>(settings.size()));
  return index < 0 ? nullptr : settings[static_cast<std::size_t>(index)];
}

void ReadViews(ReadContext& c, Document& document) {
  const std::uint32_t count = c.r.Count("view", kMinViewBytes);
  for (std::uint32_t i = 0; i < count; ++i) {
    auto view = std::make_unique<View>();
    ReadLink(c, view->sceneCameraId);
    const std::size_t at = c.r.Offset();
    const std::uint8_t hasCamera = c.r.U8();
    if (hasCamera > 1) c.r.Fail(at, "editor camera flag " + Str(hasCamera) + " is neither 0 nor 1");
    view->editorCamera.reset();
    if (hasCamera) {
      view->editorCamera = ReadObject(c, 0);
      ReadObjectTree(c, *view->editorCamera, 1);
    }
    document.views.push_back(std::move(view));
  }
  const auto views = static_cast<std::int32_t>(document.views.size());
  document.activeView = ReadIndex(c, "active view index", views);
  document.renderView = ReadIndex(c, "render view index", views);
}

void ReadStates(ReadContext& c, Document& document) {
  ReadPlainTree(c, *document.states, NodeClass::State, NodeType_State);
  const std::vector<Node*> states = StatesInOrder(document);
  const std::int32_t index = ReadIndex(c, "current state index", static_cast<std::int32_t>(states.size()));
  if (index >= 0) MakeStateCurrent(document, states[static_cast<std::size_t>(index)]);
}

// Every node that carried a link id gets one again, and the links, which hold the file's
// numbers of their targets, get the targets' new ids; numbers of no node link to nothing.
void RestoreLinks(ReadContext& c) {
  for (auto& [number, node] : c.nodesByFileId) LinkIdOf(node);
  for (std::uint64_t* slot : c.linkSlots) {
    auto found = c.nodesByFileId.find(*slot);
    *slot = found == c.nodesByFileId.end() ? 0 : found->second->linkId;
  }
}

}  // namespace

void ReadDocumentBody(ByteReader& r, Document& document, std::uint32_t version) {
  ReadContext c{r, {}, {}, version};
  ReadNodeCommon(c, document, 0);
  document.currentTime = ReadTime(c);
  ReadObjectTree(c, *document.objects, 0);
  ReadMaterialTree(c, *document.materials);
  ReadPlainTree(c, *document.layers, NodeClass::Layer, NodeType_Layer);
  ReadPlainTree(c, *document.settings, NodeClass::RenderSettings, NodeType_RenderSettings);
  document.activeSettings = ReadActiveSettings(c, document);
  ReadPlainTree(c, *document.markers, NodeClass::Marker, NodeType_Marker);
  ReadViews(c, document);
  if (version >= kFormatVersion) ReadStates(c, document);
  if (r.Remaining() != 0)
    r.Fail(r.Offset(), Str(static_cast<std::int64_t>(r.Remaining())) + " bytes follow the end of the document");
  RestoreLinks(c);
}

}  // namespace quillon::format
