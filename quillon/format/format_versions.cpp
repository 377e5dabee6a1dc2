#include "quillon/format/format_versions.h"

#include "quillon/format/file_frame.h"
#include "quillon/format/ory_format.h"
#include "quillon/model/animation.h"
#include "quillon/model/node_walk.h"

namespace quillon::format {
namespace {

constexpr std::size_t kVersionOffset = 8;

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

// What a version 1 file cannot hold: identities and containers.
void KeepToVersionOne(Document& doc) {
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

// A body without identities and containers is the same in both versions: an older
// file is the current encoding of a copy that has none, under the older version
// number, which the checksum (of the body alone) does not cover.
bool EncodeDocumentAs(const Document& doc, std::uint32_t version, std::vector<std::uint8_t>& bytes,
                      std::string* error) {
  if (!EncodeDocument(doc, bytes, error)) return false;
  if (version == kFormatVersion) return true;
  Document copy;
  if (!DecodeDocument(bytes.data(), bytes.size(), copy, error)) return false;
  KeepToVersionOne(copy);
  if (!EncodeDocument(copy, bytes, error)) return false;
  for (std::size_t i = 0; i < 4; ++i) bytes[kVersionOffset + i] = static_cast<std::uint8_t>(version >> (8 * i));
  return true;
}

std::uint32_t FormatVersionOf(const std::uint8_t* data, std::size_t size) {
  if (size < kVersionOffset + 4) return 0;
  std::uint32_t version = 0;
  for (std::size_t i = 0; i < 4; ++i) version |= std::uint32_t{data[kVersionOffset + i]} << (8 * i);
  return version;
}

}  // namespace quillon::format
