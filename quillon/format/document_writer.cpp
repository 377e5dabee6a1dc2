#include "quillon/format/document_writer.h"

#include <bit>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

#include "plugin/exporter/scene_ids.h"
#include "quillon/format/identity_record.h"
#include "quillon/format/record_layout.h"
#include "quillon/model/animation.h"
#include "quillon/model/scene_states.h"
#include "quillon/model/tag.h"

namespace quillon::format {
namespace {

// Link ids are process-wide numbers; the file numbers the nodes that carry one by their
// order in the file instead, so that the same document always gives the same bytes. A link
// to a node that comes later is written as 0 and filled in at the end, when all numbers are
// known, since the bytes before may have gone to the file by then.
struct WriteContext : ByteWriter {
  struct PendingLink {
    std::uint64_t offset;
    std::uint64_t linkId;
  };
  std::unordered_map<std::uint64_t, std::uint64_t> ordinals;  // link id -> number in the file
  std::vector<PendingLink> pendingLinks;

  void NodeId(std::uint64_t linkId) {
    const auto ordinal = static_cast<std::uint64_t>(ordinals.size() + 1);
    ordinals.emplace(linkId, ordinal);
    U64(ordinal);
  }
  void LinkRef(std::uint64_t linkId) {
    const auto found = ordinals.find(linkId);
    if (found != ordinals.end()) {
      U64(found->second);
      return;
    }
    if (linkId != 0) pendingLinks.push_back({Size(), linkId});
    U64(0);
  }
  // Links to nodes that the file does not hold stay 0.
  void NumberLinks() {
    for (const PendingLink& link : pendingLinks) {
      const auto found = ordinals.find(link.linkId);
      if (found != ordinals.end()) PatchU64(link.offset, found->second);
    }
  }
};

void WriteNodeCommon(WriteContext& w, const Node& node, int depth);

void CheckDepth(int depth) {
  if (depth > kMaxDepth)
    throw std::runtime_error("the document nests deeper than " + std::to_string(kMaxDepth) + " levels");
}

std::uint32_t CountOf(std::size_t n) {
  if (n > UINT32_MAX) throw std::runtime_error("a list holds more than 4294967295 entries");
  return static_cast<std::uint32_t>(n);
}

std::uint32_t ChildCount(const Node& parent) {
  std::size_t n = 0;
  for (const Node* child = parent.firstChild; child; child = child->next) ++n;
  return CountOf(n);
}

void WriteVector(WriteContext& w, const Vector& v) {
  w.F64(v.x);
  w.F64(v.y);
  w.F64(v.z);
}

void WriteTime(WriteContext& w, const BaseTime& t) {
  w.F64(t.numerator);
  w.F64(t.denominator);
}

void WriteParams(WriteContext& w, const ParamSet& params, int depth);

void WriteTag(WriteContext& w, const Tag& tag, int depth) {
  w.I32(tag.type);
  WriteNodeCommon(w, tag, depth);
  w.I32(tag.count);
  w.Raw(tag.data.data(), tag.data.size());
}

void WriteValue(WriteContext& w, const DataValue& value, int depth) {
  CheckDepth(depth);
  w.I32(value.kind);
  switch (value.kind) {
    case DataKind_Empty: return;
    case DataKind_Int32: w.I32(value.payload.int32); return;
    case DataKind_Float: w.F64(value.payload.float64); return;
    case DataKind_Bool: w.U8(value.payload.int64 != 0); return;
    case DataKind_Int64: w.I64(value.payload.int64); return;
    case DataKind_Vector: WriteVector(w, *AsVector(value)); return;
    case DataKind_Time: WriteTime(w, *AsTime(value)); return;
    case DataKind_String: w.String16(AsText(value)); return;
    case DataKind_Filename: w.String(PathOf(*AsFilename(value))); return;
    case DataKind_Link: w.LinkRef(AsLink(value)->targetId); return;
    case DataKind_Priority: {
      const PriorityData& priority = *AsPriority(value);
      w.U32(CountOf(priority.entries.size()));
      for (const Value& entry : priority.entries) WriteValue(w, entry.raw, depth + 1);
      return;
    }
    case DataKind_Font: WriteParams(w, AsFont(value)->description, depth + 1); return;
    case DataKind_Container: WriteParams(w, AsContainer(value)->entries, depth + 1); return;
    case DataKind_SplineKey: {
      const SplineKeyData& key = *AsSplineKey(value);
      WriteTag(w, *key.points, depth + 1);
      WriteTag(w, *key.tangents, depth + 1);
      return;
    }
    default: throw std::runtime_error("a value of kind " + std::to_string(value.kind) + " has no file form");
  }
}

void WriteParams(WriteContext& w, const ParamSet& params, int depth) {
  w.U32(CountOf(params.size()));
  for (const auto& [id, value] : params) {
    w.I32(id);
    WriteValue(w, value.raw, depth);
  }
}

void WriteKey(WriteContext& w, const Key& key, int depth) {
  WriteTime(w, key.time);
  w.F64(key.value);
  WriteNodeCommon(w, key, depth);
  WriteValue(w, key.data.raw, depth);
}

// A key without a node of its own: what WriteKey gives for a node that holds nothing but
// time, value and bits, put together first and appended at once, since a file holds millions.
void WritePlainKey(WriteContext& w, const KeyStore& keys, std::int32_t index, int depth) {
  CheckDepth(depth);
  std::uint8_t record[8 + 8 + 8 + 1 + 8 + 4];
  std::uint8_t* end = record;
  const BaseTime& time = keys.timeAt(index);
  StoreLittleEndian(end, std::bit_cast<std::uint64_t>(time.numerator));
  StoreLittleEndian(end, std::bit_cast<std::uint64_t>(time.denominator));
  StoreLittleEndian(end, std::bit_cast<std::uint64_t>(keys.valueAt(index)));
  const std::uint64_t bits = keys.bitsAt(index);
  *end++ = bits != 0 ? NodePart_Bits : 0;
  if (bits != 0) StoreLittleEndian(end, bits);
  StoreLittleEndian(end, static_cast<std::uint32_t>(DataKind_Empty));
  w.Raw(record, static_cast<std::size_t>(end - record));
}

void WriteTrack(WriteContext& w, const Track& track, int depth) {
  w.U32(CountOf(track.path.size()));
  for (const ParamLevel& level : track.path) {
    w.I32(level.id);
    w.I32(level.kind);
    w.I32(level.creator);
  }
  w.I32(track.kind);
  WriteNodeCommon(w, track, depth);
  w.U8(track.curve != nullptr);
  if (!track.curve) return;
  const Curve& curve = *track.curve;
  WriteNodeCommon(w, curve, depth);
  const KeyStore& keys = curve.keys;
  w.I32(keys.size());
  for (std::int32_t i = 0; i < keys.size(); ++i) {
    if (const Key* key = keys.nodeAt(i)) {
      WriteKey(w, *key, depth);
    } else {
      WritePlainKey(w, keys, i, depth);
    }
  }
}

std::uint8_t PresenceOf(const Node& node) {
  std::uint8_t parts = 0;
  if (!node.name.empty()) parts |= NodePart_Name;
  if (node.bits.any()) parts |= NodePart_Bits;
  if (node.infoBits != 0) parts |= NodePart_InfoBits;
  if (node.linkId != 0) parts |= NodePart_LinkId;
  if (node.layerId != 0) parts |= NodePart_LayerId;
  if (!node.params.empty()) parts |= NodePart_Params;
  if (node.trackRoot && node.trackRoot->firstChild) parts |= NodePart_Tracks;
  if (HasIdentity(node.identity)) parts |= kNodePartIdentity;
  return parts;
}

void WriteNodeCommon(WriteContext& w, const Node& node, int depth) {
  CheckDepth(depth);
  const std::uint8_t parts = PresenceOf(node);
  w.U8(parts);
  if (parts & NodePart_Name) w.String16(node.name);
  if (parts & NodePart_Bits) w.U64(node.bits.to_ullong());
  if (parts & NodePart_InfoBits) w.U32(node.infoBits);
  if (parts & NodePart_LinkId) w.NodeId(node.linkId);
  if (parts & NodePart_LayerId) w.LinkRef(node.layerId);
  if (parts & NodePart_Params) WriteParams(w, node.params, depth + 1);
  if (parts & NodePart_Tracks) {
    w.U32(ChildCount(*node.trackRoot));
    for (const Node* track = node.trackRoot->firstChild; track; track = track->next)
      WriteTrack(w, *AsTrack(track), depth + 1);
  }
  if (parts & kNodePartIdentity) WriteIdentity(w, node.identity);
}

// A list: the count of the parent's children, then each child's record followed by the
// list of its own children.
template <typename WriteRecord>
void WriteTree(WriteContext& w, const Node& parent, int depth, WriteRecord writeRecord) {
  CheckDepth(depth);
  w.U32(ChildCount(parent));
  for (const Node* child = parent.firstChild; child; child = child->next) {
    writeRecord(*child, depth);
    WriteTree(w, *child, depth + 1, writeRecord);
  }
}

void WriteObject(WriteContext& w, const Object& object, int depth) {
  w.I32(object.type);
  WriteNodeCommon(w, object, depth);
  w.I32(object.rotationOrder);
  WriteVector(w, object.offsetPosition);
  for (std::int32_t mode : object.modes) w.I32(mode);
  const std::vector<Tag*> tags = TagsOf(object);
  w.U32(CountOf(tags.size()));
  for (const Tag* tag : tags) WriteTag(w, *tag, depth);
}

void WriteObjectTree(WriteContext& w, const Node& parent, int depth) {
  WriteTree(w, parent, depth, [&w](const Node& node, int d) { WriteObject(w, *AsObject(&node), d); });
}

void WritePlainTree(WriteContext& w, const Node& parent) {
  WriteTree(w, parent, 0, [&w](const Node& node, int d) { WriteNodeCommon(w, node, d); });
}

void WriteMaterialTree(WriteContext& w, const Node& parent) {
  WriteTree(w, parent, 0, [&w](const Node& node, int d) {
    w.I32(node.type);
    WriteNodeCommon(w, node, d);
    WriteTree(w, *ShaderList(const_cast<Node&>(node)), d + 1, [&w](const Node& shader, int sd) {
      w.I32(shader.type);
      WriteNodeCommon(w, shader, sd);
    });
  });
}

// Index of the active settings among the top-level settings; -1 for none.
std::int32_t ActiveSettingsIndex(const Document& document) {
  std::int32_t index = 0;
  for (const Node* node = document.settings->firstChild; node; node = node->next, ++index)
    if (node == document.activeSettings) return index;
  return -1;
}

void WriteViews(WriteContext& w, const Document& document) {
  w.U32(CountOf(document.views.size()));
  for (const auto& view : document.views) {
    w.LinkRef(view->sceneCameraId);
    w.U8(view->editorCamera != nullptr);
    if (view->editorCamera) {
      WriteObject(w, *view->editorCamera, 0);
      WriteObjectTree(w, *view->editorCamera, 1);
    }
  }
  w.I32(document.activeView);
  w.I32(document.renderView);
}

}  // namespace

void WriteDocumentBody(ByteWriter& out, const Document& document) {
  WriteContext w;
  static_cast<ByteWriter&>(w) = std::move(out);
  WriteNodeCommon(w, document, 0);
  WriteTime(w, document.currentTime);
  WriteObjectTree(w, *document.objects, 0);
  WriteMaterialTree(w, *document.materials);
  WritePlainTree(w, *document.layers);
  WritePlainTree(w, *document.settings);
  w.I32(ActiveSettingsIndex(document));
  WritePlainTree(w, *document.markers);
  WriteViews(w, document);
  WritePlainTree(w, *document.states);
  w.I32(CurrentStateIndex(document));
  w.NumberLinks();
  out = std::move(static_cast<ByteWriter&>(w));
}

}  // namespace quillon::format
