#include "quillon/format/format_versions.h"

#include "quillon/format/file_frame.h"
#include "quillon/format/ory_format.h"
#include "quillon/model/animation.h"
#include "quillon/model/node_walk.h"

namespace quillon::format {
namespace {

constexpr std::size_t kVersionOffset = 8;
constexpr std::size_t kEmptyStateSectionBytes = 4 + 4;

void DropContainers(ParamSet& params);

// Version 1 has no container values: they are left out, also inside other values.
void DropContainer(DataValue& value) {
  if (PriorityData* priority = AsPriority(value)) {
    for (Value& entry : priority->entries) DropContainer(entry.raw);
  } else if (FontData* font = AsFont(value)) {
    DropContainers(font->description);
  } else if (value.kind == DataKind_Container) {
    FreeData(value);
  }
}

void DropContainers(ParamSet& params) {
  std::erase_if(params, [](const auto& entry) { return entry.second.kind() == DataKind_Container; });
  for (auto& [id, value] : params) DropContainer(value.raw);
}

// What a version 1 file cannot hold: identities, containers and scene states.
void KeepToVersionOne(Document& doc) {
  doc.states = MakeListRoot(&doc);
  doc.currentStateId = 0;
  ForEachDocumentNode(doc, [](Node& node) {
    node.identity = NodeIdentity{};
    DropContainers(node.params);
    if (Key* key = AsKey(&node)) DropContainer(key->data.raw);
  });
}

}  // namespace

std::uint32_t FormatVersionFor(std::int32_t applicationVersion) {
  // 0 stands for the writer's default, the current version.
  return applicationVersion == 0 || applicationVersion >= kSceneFileVersionCurrent ? kFormatVersion
                                                                                    : kFormatVersionWithoutIdentity;
}

// A version 1 body is the version 2 body of a copy without identities, containers and
// states, less the empty state section at its end (a count of 0 and no current state),
// under the older version number.
bool EncodeDocumentAs(const Document& doc, std::uint32_t version, std::vector<std::uint8_t>& bytes,
                      std::string* error) {
  if (!EncodeDocument(doc, bytes, error)) return false;
  if (version == kFormatVersion) return true;
  Document copy;
  if (!DecodeDocument(bytes.data(), bytes.size(), copy, error)) return false;
  KeepToVersionOne(copy);
  ByteWriter w;
  if (!EncodeDocument(copy, w.bytes, error)) return false;
  w.bytes.resize(w.bytes.size() - kEmptyStateSectionBytes);
  SealFrame(w);
  for (std::size_t i = 0; i < 4; ++i) w.bytes[kVersionOffset + i] = static_cast<std::uint8_t>(version >> (8 * i));
  bytes = std::move(w.bytes);
  return true;
}

std::uint32_t FormatVersionOf(const std::uint8_t* data, std::size_t size) {
  if (size < kVersionOffset + 4) return 0;
  std::uint32_t version = 0;
  for (std::size_t i = 0; i < 4; ++i) version |= std::uint32_t{data[kVersionOffset + i]} << (8 * i);
  return version;
}

}  // namespace quillon::format
