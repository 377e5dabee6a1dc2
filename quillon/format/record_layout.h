#pragma once
// Numbers shared by the writer and the reader of the document body: the presence bits of
// a node's common block, the limits of nesting, and the smallest size of each record, by
// which a count read from a file is checked against the bytes that remain.
#include <cstddef>
#include <cstdint>

namespace quillon::format {

// Which optional parts of a node's common block follow its presence byte.
enum NodePart : std::uint8_t {
  NodePart_Name = 1 << 0,
  NodePart_Bits = 1 << 1,
  NodePart_InfoBits = 1 << 2,
  NodePart_LinkId = 1 << 3,
  NodePart_LayerId = 1 << 4,
  NodePart_Params = 1 << 5,
  NodePart_Tracks = 1 << 6,
};
inline constexpr std::uint8_t kAllNodeParts = 0x7F;

// Trees (objects, shaders) and values (priorities, fonts) nest at most this deep.
inline constexpr int kMaxDepth = 200;

// Smallest records in bytes: a count is refused when that many of them cannot fit.
inline constexpr std::size_t kMinListItemBytes = 1 + 4;                   // common block, child count
inline constexpr std::size_t kMinTypedItemBytes = 4 + kMinListItemBytes;  // + type
inline constexpr std::size_t kMinObjectBytes = kMinTypedItemBytes + 4 + 24 + 12 + 4;
inline constexpr std::size_t kMinTagBytes = 4 + 1 + 4;
inline constexpr std::size_t kMinValueBytes = 4;
inline constexpr std::size_t kMinParamBytes = 4 + kMinValueBytes;
inline constexpr std::size_t kMinTrackBytes = 4 + 12 + 4 + 1 + 1;
inline constexpr std::size_t kMinKeyBytes = 24 + 1 + kMinValueBytes;
inline constexpr std::size_t kParamLevelBytes = 12;
inline constexpr std::size_t kMinViewBytes = 8 + 1;

}  // namespace quillon::format
